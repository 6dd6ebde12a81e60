# Two forms of one library: pkider (shared) and pkider_static, or one of them. The sources are listed by their rooms.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

set(pkider_forms)
if(PKIDER_BUILD_SHARED)
  add_library(pkider SHARED)
  list(APPEND pkider_forms pkider)
endif()
if(PKIDER_BUILD_STATIC)
  add_library(pkider_static STATIC)
  list(APPEND pkider_forms pkider_static)
endif()
if(NOT pkider_forms)
  message(FATAL_ERROR "No form of the library is built: set PKIDER_BUILD_SHARED or PKIDER_BUILD_STATIC to ON.")
endif()

# RelWithDebInfo optimises like Release, and so does Debian's None, by flags of its own.
set(optimised_configurations Release,RelWithDebInfo)
if(CMAKE_CXX_FLAGS MATCHES "(^| )-O[23]( |$)")
  string(APPEND optimised_configurations ,None)
endif()

set(when_optimised $<AND:$<CONFIG:${optimised_configurations}>,$<NOT:$<BOOL:${MSVC}>>>) # /O2 there, and no more

include(${CMAKE_CURRENT_LIST_DIR}/built_with.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/hardening.cmake)

foreach(form IN LISTS pkider_forms)
  add_library(pkider::${form} ALIAS ${form})
  set_target_properties(${form} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
                                           POSITION_INDEPENDENT_CODE ON)
  target_compile_features(${form} INTERFACE cxx_std_17)
  target_include_directories(${form} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                                            $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
                                            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
                                     PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${form} PRIVATE $<BUILD_INTERFACE:pkider_warnings>)
  # -O3 makes the library larger and few files quicker; those are the hot sources of their rooms.
  target_compile_options(${form} PRIVATE $<${when_optimised}:-O2>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A refusal that is moved out of its function needs a row for unwinding of its own: a larger library, not a quicker one.
    target_compile_options(${form} PRIVATE $<${when_optimised}:-fno-reorder-blocks-and-partition>)
  endif()
  if(PKIDER_SANITIZE)
    target_compile_options(${form} PRIVATE -O1) # tests that walk whole domains spend their time here
  endif()
  if(NOT PROJECT_IS_TOP_LEVEL AND NOT PKIDER_INSTALL)
    set_target_properties(${form} PROPERTIES EXCLUDE_FROM_ALL ON) # a host builds the form that it links
  endif()
endforeach()
pkider_harden(${pkider_forms})

if(PKIDER_BUILD_SHARED)
  include(${CMAKE_CURRENT_LIST_DIR}/shared_library.cmake)
endif()
if(PKIDER_BUILD_STATIC)
  # Not the name of the import library, where both end in .lib.
  set_target_properties(pkider_static PROPERTIES OUTPUT_NAME pkider$<$<BOOL:${MSVC}>:_static>)
  target_compile_definitions(pkider_static PUBLIC PKIDER_STATIC)
  # A module with one symbol that GCC makes unique in the process is never unloaded. In the shared library the version
  # script hides them all.
  target_compile_options(pkider_static PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
endif()

# A room is a folder with a sources.cmake that names its files. Among them are the hot ones, which rows need with -O3.
# Bench: dn/print, dn/print_rdns, pkcs12/write, pkcs8/write, pkcs8/encrypted_write.
function(pkider_add_room room)
  include(${PROJECT_SOURCE_DIR}/${room}/sources.cmake)
  list(TRANSFORM ${room}_sources PREPEND ${PROJECT_SOURCE_DIR}/${room}/)
  foreach(form IN LISTS pkider_forms)
    target_sources(${form} PRIVATE ${${room}_sources})
  endforeach()
  list(TRANSFORM ${room}_hot_sources PREPEND ${PROJECT_SOURCE_DIR}/${room}/)
  set_source_files_properties(${${room}_hot_sources} PROPERTIES COMPILE_OPTIONS $<${when_optimised}:-O3>)
endfunction()

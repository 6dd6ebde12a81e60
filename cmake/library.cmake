# Two forms of one library: pkider (shared) and pkider_static. The sources are listed by their rooms.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

add_library(pkider SHARED)
add_library(pkider_static STATIC)
add_library(pkider::pkider ALIAS pkider)
add_library(pkider::pkider_static ALIAS pkider_static)

foreach(form IN ITEMS pkider pkider_static)
  set_target_properties(${form} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
                                           POSITION_INDEPENDENT_CODE ON)
  target_compile_features(${form} INTERFACE cxx_std_17)
  target_include_directories(${form} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                                            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
                                     PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${form} PRIVATE $<BUILD_INTERFACE:pkider_warnings>)
  # -O3 makes the library larger and few files quicker; those are the hot sources of their rooms.
  target_compile_options(${form} PRIVATE $<$<CONFIG:Release>:-O2>)
  if(PKIDER_SANITIZE)
    target_compile_options(${form} PRIVATE -O1) # tests that walk whole domains spend their time here
  endif()
endforeach()

# Below version 1.0 a new minor version may break hosts, and so it has a name of its own.
set_target_properties(pkider PROPERTIES VERSION ${PROJECT_VERSION}
                                        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
target_compile_definitions(pkider PRIVATE PKIDER_BUILDING)

set_target_properties(pkider_static PROPERTIES OUTPUT_NAME pkider)
target_compile_definitions(pkider_static PUBLIC PKIDER_STATIC)
# A module with one symbol that GCC makes unique in the process is never unloaded. In the shared library the version
# script hides them all.
target_compile_options(pkider_static PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)

if(WIN32)
  set_target_properties(pkider PROPERTIES PREFIX "")
  # A program finds its DLL beside itself.
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set_target_properties(pkider PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
else()
  # Headers of the standard library make their templates visible by attribute; what of them was instantiated here is
  # no part of the interface. Everything else is hidden or shown by PKIDER_API. Never -Bsymbolic: the exported handles
  # are data, and a host built without -fPIE has its own copy of them that the library must see.
  target_link_options(pkider PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/symbols.map)
  set_target_properties(pkider PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/symbols.map)
  if(NOT PKIDER_SANITIZE)
    target_link_options(pkider PRIVATE -Wl,--no-undefined)
  endif()
endif()

# A room is a folder with a sources.cmake that names its files. Among them are the hot ones, which rows need with -O3.
# Bench: dn/print, dn/print_rdns, pkcs12/write, pkcs8/write, pkcs8/encrypted_write.
function(pkider_add_room room)
  include(${PROJECT_SOURCE_DIR}/${room}/sources.cmake)
  list(TRANSFORM ${room}_sources PREPEND ${PROJECT_SOURCE_DIR}/${room}/)
  target_sources(pkider PRIVATE ${${room}_sources})
  target_sources(pkider_static PRIVATE ${${room}_sources})
  list(TRANSFORM ${room}_hot_sources PREPEND ${PROJECT_SOURCE_DIR}/${room}/)
  set_source_files_properties(${${room}_hot_sources} PROPERTIES COMPILE_OPTIONS $<$<CONFIG:Release>:-O3>)
endfunction()

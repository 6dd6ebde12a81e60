# The C interface, in two forms: pkider_c (shared, with the library inside) and pkider_c_static (links pkider_static).
include(${PROJECT_SOURCE_DIR}/c/sources.cmake)
list(TRANSFORM c_sources PREPEND ${PROJECT_SOURCE_DIR}/c/)

add_library(pkider_c SHARED ${c_sources})
add_library(pkider_c_static STATIC ${c_sources})
add_library(pkider::pkider_c ALIAS pkider_c)
add_library(pkider::pkider_c_static ALIAS pkider_c_static)

foreach(form IN ITEMS pkider_c pkider_c_static)
  set_target_properties(${form} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
                                           POSITION_INDEPENDENT_CODE ON)
  target_include_directories(${form} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                                            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
                                     PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_definitions(${form} PRIVATE PKIDER_VERSION="${PROJECT_VERSION}")
  target_link_libraries(${form} PRIVATE $<BUILD_INTERFACE:pkider_warnings>)
endforeach()
pkider_harden(pkider_c pkider_c_static)

set_target_properties(pkider_c PROPERTIES VERSION ${PROJECT_VERSION}
                                          SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
target_compile_definitions(pkider_c PRIVATE PKIDER_C_BUILDING)
target_link_libraries(pkider_c PRIVATE $<BUILD_INTERFACE:pkider_static>)

set_target_properties(pkider_c_static PROPERTIES OUTPUT_NAME pkider_c$<$<BOOL:${MSVC}>:_static>)
target_compile_definitions(pkider_c_static PUBLIC PKIDER_C_STATIC)
target_link_libraries(pkider_c_static PUBLIC pkider_static)
target_compile_options(pkider_c_static PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)

if(WIN32)
  set_target_properties(pkider_c PROPERTIES PREFIX "" RUNTIME_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
endif()
if(MINGW)
  # Hosts of another compiler have no runtime of this one: the DLL brings it along. For link.exe there is a list of the
  # exported names: lib /def:pkider_c.def /machine:x64 makes the import library. It has no ordinals: with one, a host may
  # be bound to the number, which changes with the next function.
  target_link_options(pkider_c PRIVATE -static)
  if(PKIDER_INSTALL)
    install(FILES cmake/pkider_c.def DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  endif()
elseif(NOT WIN32)
  set(pkider_c_symbols ${PROJECT_SOURCE_DIR}/cmake/c_symbols.map)
  target_link_options(pkider_c PRIVATE -Wl,--version-script=${pkider_c_symbols})
  set_target_properties(pkider_c PROPERTIES LINK_DEPENDS ${pkider_c_symbols})
  if(NOT PKIDER_SANITIZE)
    target_link_options(pkider_c PRIVATE -Wl,--no-undefined)
  endif()
endif()

if(PKIDER_INSTALL)
  install(TARGETS pkider_c pkider_c_static EXPORT pkider-targets
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  install(DIRECTORY include/pkider/c DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pkider COMPONENT development)
  configure_file(cmake/pkider_c.pc.in pkider_c.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pkider_c.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development)

  # The Python package.
  set(PKIDER_INSTALL_PYTHONDIR lib/python3/dist-packages CACHE STRING "Folder of the Python package, below the prefix")
  install(DIRECTORY bindings/python/pkider DESTINATION ${PKIDER_INSTALL_PYTHONDIR} COMPONENT python
          FILES_MATCHING PATTERN "*.py" PATTERN py.typed PATTERN __pycache__ EXCLUDE)
endif()

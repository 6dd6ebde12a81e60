# The shared form: its name, and the symbols that it exports.

# Below version 1.0 a new minor version may break hosts, and so it has a name of its own.
set_target_properties(pkider PROPERTIES VERSION ${PROJECT_VERSION}
                                        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
target_compile_definitions(pkider PRIVATE PKIDER_BUILDING)

if(WIN32)
  set_target_properties(pkider PROPERTIES PREFIX "")
  # A program finds its DLL beside itself.
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set_target_properties(pkider PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
else()
  # Headers of the standard library make their templates visible by attribute; what of them was instantiated here is
  # no part of the interface. Everything else is hidden or shown by PKIDER_API. Never -Bsymbolic: the exported handles
  # are data, and a host built without -fPIE has its own copy of them that the library must see.
  #
  # The symbols carry the version, so that two minor versions live in one process and none binds to the other.
  set(symbols_map ${PROJECT_BINARY_DIR}/symbols.map)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/symbols.map.in ${symbols_map} @ONLY)
  target_link_options(pkider PRIVATE -Wl,--version-script=${symbols_map})
  set_target_properties(pkider PROPERTIES LINK_DEPENDS ${symbols_map})
  if(NOT PKIDER_SANITIZE)
    target_link_options(pkider PRIVATE -Wl,--no-undefined)
  endif()
endif()

# What a host finds: find_package(pkider) with pkider::pkider and pkider::pkider_static, as far as they are built, and the
# pkg-config module pkider. Both can be moved to another prefix after installing, unless a folder was given as an absolute
# path.
#
# Components, for packages: runtime (the shared library), development (what else a host needs), python (the package over
# the C interface) and program.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/pkider)

install(TARGETS ${pkider_forms} EXPORT pkider-targets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY include/pkider ${PROJECT_BINARY_DIR}/include/pkider DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        COMPONENT development PATTERN c EXCLUDE) # the C interface installs its own header

write_basic_package_version_file(pkider-config-version.cmake COMPATIBILITY SameMinorVersion)
install(EXPORT pkider-targets NAMESPACE pkider:: DESTINATION ${package_dir} COMPONENT development)
install(FILES cmake/pkider-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/pkider-config-version.cmake
        DESTINATION ${package_dir} COMPONENT development)

# The pkg-config module names its folders from its own place, so far as they are relative.
set(pc_prefix ${CMAKE_INSTALL_PREFIX})
if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  file(RELATIVE_PATH prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
  set(pc_prefix "\${pcfiledir}/${prefix_from_pkgconfig}")
endif()
foreach(dir IN ITEMS LIBDIR INCLUDEDIR)
  set(pc_${dir} ${CMAKE_INSTALL_${dir}})
  if(NOT IS_ABSOLUTE ${pc_${dir}})
    string(PREPEND pc_${dir} "\${prefix}/")
  endif()
endforeach()
set(pc_cflags)
if(NOT PKIDER_BUILD_SHARED)
  set(pc_cflags " -DPKIDER_STATIC")
endif()
# A program in C that links the archive names the C++ library itself.
set(pc_standard_library ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
list(FILTER pc_standard_library INCLUDE REGEX "^(stdc\\+\\+|c\\+\\+|m)$")
list(REMOVE_DUPLICATES pc_standard_library)
list(TRANSFORM pc_standard_library REPLACE "^c\\+\\+$" "c++;c++abi") # the archive of libc++ does not contain the other
list(TRANSFORM pc_standard_library PREPEND -l)
list(JOIN pc_standard_library " " pc_standard_library)
configure_file(cmake/pkider.pc.in pkider.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pkider.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

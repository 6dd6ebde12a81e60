# What a host finds: find_package(pkider) with pkider::pkider and pkider::pkider_static, and the pkg-config module
# pkider. Both can be moved to another prefix after installing.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/pkider)

install(TARGETS pkider pkider_static EXPORT pkider-targets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/pkider DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

write_basic_package_version_file(pkider-config-version.cmake COMPATIBILITY SameMinorVersion)
install(EXPORT pkider-targets NAMESPACE pkider:: DESTINATION ${package_dir})
install(FILES cmake/pkider-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/pkider-config-version.cmake
        DESTINATION ${package_dir})

cmake_path(SET pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${pkgconfig_dir}
           OUTPUT_VARIABLE prefix_from_pkgconfig)
configure_file(cmake/pkider.pc.in pkider.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pkider.pc DESTINATION ${pkgconfig_dir})

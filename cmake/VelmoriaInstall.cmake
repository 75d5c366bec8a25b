# What an installed Velmoria consists of: the library, its public headers, a CMake package and a pkg-config file.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/velmoria)
install(TARGETS velmoria EXPORT velmoria FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT velmoria NAMESPACE velmoria:: FILE velmoria-targets.cmake DESTINATION ${package_dir})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/velmoria-config.cmake.in
  ${PROJECT_BINARY_DIR}/velmoria-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/velmoria-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/velmoria-config.cmake ${PROJECT_BINARY_DIR}/velmoria-config-version.cmake
  DESTINATION ${package_dir})

# Found from the file's own place, so that a moved tree still works.
file(RELATIVE_PATH pkgconfig_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" pkgconfig_prefix ${pkgconfig_prefix})
configure_file(${PROJECT_SOURCE_DIR}/cmake/velmoria.pc.in ${PROJECT_BINARY_DIR}/velmoria.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/velmoria.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

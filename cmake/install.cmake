include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/dataseries)
install(TARGETS dataseries dataseries_engine EXPORT dataseries_targets
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/dataseries)
install(TARGETS dataseries_program)
install(EXPORT dataseries_targets NAMESPACE dataseries:: FILE dataseriesTargets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/dataseriesConfig.cmake.in dataseriesConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(dataseriesConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/dataseriesConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/dataseriesConfigVersion.cmake
    DESTINATION ${package_dir})

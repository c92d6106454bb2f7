# Installs the files that find_package(vw_modelref_info CONFIG) needs.

include(CMakePackageConfigHelpers)
set(directory ${CMAKE_INSTALL_LIBDIR}/cmake/vw_modelref_info)
configure_package_config_file(cmake/vw_modelref_infoConfig.cmake.in ${PROJECT_BINARY_DIR}/vw_modelref_infoConfig.cmake
                              INSTALL_DESTINATION ${directory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vw_modelref_infoConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vw_modelref_infoConfig.cmake
              ${PROJECT_BINARY_DIR}/vw_modelref_infoConfigVersion.cmake
        DESTINATION ${directory})
install(EXPORT vw_modelref_info-targets NAMESPACE vw_modelref_info:: DESTINATION ${directory})

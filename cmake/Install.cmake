# cmake --install: libraries, public headers, resource archives and a package
# config, so that a host can find_package(corr_dialogs2).
include(CMakePackageConfigHelpers)

install(EXPORT corr_dialogs2Targets NAMESPACE corr::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/corr_dialogs2)
configure_package_config_file(cmake/corr_dialogs2Config.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/corr_dialogs2Config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/corr_dialogs2)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/corr_dialogs2ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/corr_dialogs2Config.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/corr_dialogs2ConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/corr_dialogs2)

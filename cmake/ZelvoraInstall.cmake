# What `cmake --install` lays down besides the libraries: the public headers and the package
# ZelvoraSDK, so that another project says find_package(ZelvoraSDK) and links Zelvora::NAME.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(DIRECTORY ZelvoraSDK DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN *.h PATTERN private EXCLUDE)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZelvoraSDK)
install(EXPORT ZelvoraSDK NAMESPACE Zelvora:: DESTINATION ${package_dir} FILE ZelvoraSDKTargets.cmake)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ZelvoraSDKConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
configure_file(cmake/ZelvoraSDKConfig.cmake.in ZelvoraSDKConfig.cmake @ONLY)
install(FILES cmake/ZelvoraDependencies.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/ZelvoraSDKConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/ZelvoraSDKConfigVersion.cmake DESTINATION ${package_dir})

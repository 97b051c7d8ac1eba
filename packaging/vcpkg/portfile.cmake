# The port lies in the tree that it builds.
set(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../..")

vcpkg_check_features(OUT_FEATURE_OPTIONS features FEATURES ui ZELVORA_BUILD_UI)

vcpkg_find_acquire_program(PKGCONFIG)
vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS ${features}
    -DPKG_CONFIG_EXECUTABLE=${PKGCONFIG}
    -DZELVORA_BUILD_HOST=OFF -DZELVORA_BUILD_TOOL=OFF -DZELVORA_BUILD_EXAMPLES=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME ZelvoraSDK CONFIG_PATH lib/cmake/ZelvoraSDK)
vcpkg_fixup_pkgconfig()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE" "${SOURCE_PATH}/NOTICE")

# Debian packages: `./dev package`, or `cpack` in a build with shared libraries.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zelvora)
set(CPACK_PACKAGE_VENDOR ZelvoraSDK)
set(CPACK_PACKAGE_CONTACT "The authors of ZelvoraSDK <authors@zelvora.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/ZelvoraSDK
  ${PROJECT_BINARY_DIR}/ZelvoraSDK/adapters ${PROJECT_BINARY_DIR}/ZelvoraSDK/ui)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# zelvora_package(COMPONENT NAME SECTION DEPENDS SUMMARY)
macro(zelvora_package component name section depends summary)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}
Voice navigation for phone applications, understood on the device: an
utterance, typed or said, ends in exactly one outcome.")
endmacro()

set(same_version "libzelvora0 (= ${PROJECT_VERSION})")
zelvora_package(runtime libzelvora0 libs "" "libraries of voice navigation")
zelvora_package(devel libzelvora-dev libdevel
  "${same_version}, libboost1.81-dev | libboost-dev (>= 1.81)" "headers and CMake package of voice navigation")
zelvora_package(doc zelvora-doc doc "" "documentation and examples of voice navigation")
if(ZELVORA_BUILD_TOOL)
  zelvora_package(tool zelvora utils "" "command-line tool of voice navigation")
endif()
if(ZELVORA_BUILD_UI)
  zelvora_package(qml qml6-module-zelvora libs "${same_version}, qml6-module-qtquick" "views of voice navigation for QML")
endif()
include(CPack)

# Debian packages, one for each component of the installation: `./dev package`, or `cpack` in the build
# directory of the preset `package`.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zelvora)
set(CPACK_PACKAGE_VENDOR ZelvoraSDK)
set(CPACK_PACKAGE_CONTACT "ZelvoraSDK authors <packages@zelvora.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime devel doc)
if(ZELVORA_BUILD_TOOL)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
if(ZELVORA_BUILD_UI)
  list(APPEND CPACK_COMPONENTS_ALL qml)
  if(ZELVORA_BUILD_EXAMPLES)
    list(APPEND CPACK_COMPONENTS_ALL shop)
  endif()
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/ZelvoraSDK ${PROJECT_BINARY_DIR}/ZelvoraSDK/adapters
  ${PROJECT_BINARY_DIR}/ZelvoraSDK/ui ${PROJECT_BINARY_DIR}/ZelvoraSDK/ui/private)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_COMPONENT_DEVEL_DEPENDS runtime)
set(CPACK_COMPONENT_QML_DEPENDS runtime)
set(CPACK_COMPONENT_SHOP_DEPENDS qml doc)

# zelvora_package(COMPONENT NAME SECTION SUMMARY): what else a Debian package must have.
function(zelvora_package component name section summary)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  list(JOIN ARGN "\n" lines)
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${lines}" PARENT_SCOPE)
  install(FILES packaging/debian/copyright ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endfunction()

file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/packaging)
execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/packaging/debian/changelog
  OUTPUT_FILE ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz COMMAND_ERROR_IS_FATAL ANY)

zelvora_package(runtime libzelvora0 libs "voice navigation for applications, libraries"
  "Understands on the device what the user of an application says or types, and"
  "leads to the screen that was meant.")
zelvora_package(devel libzelvora-dev libdevel "voice navigation for applications, headers"
  "What is needed to build an application with ZelvoraSDK: headers, the CMake"
  "package and files for pkg-config.")
zelvora_package(qml qml6-module-zelvora libs "voice navigation for applications, views"
  "The QML module Zelvora: mic button, floating pill, choice sheet and the whole"
  "conversation as one view.")
zelvora_package(tool zelvora utils "command-line tool for specs of voice navigation"
  "Lints, evaluates and tunes specs, routes texts and speech by them, and serves"
  "as a backend to develop against.")
zelvora_package(doc zelvora-doc doc "voice navigation for applications, documentation"
  "The documentation of ZelvoraSDK and its example spec.")
zelvora_package(shop zelvora-shop misc "shop that is used by tapping, typing and talking"
  "The example application of ZelvoraSDK. Nothing can be bought in it.")
set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DEVEL_PACKAGE_DEPENDS "libboost1.81-dev")
# What QML reads when it runs, which no library names; QtQuick itself needs the worker script.
set(CPACK_DEBIAN_QML_PACKAGE_DEPENDS "qml6-module-qtquick, qml6-module-qtquick-layouts, \
qml6-module-qtquick-templates, qml6-module-qtqml-workerscript")
set(CPACK_DEBIAN_QML_PACKAGE_RECOMMENDS "qml6-module-qt5compat-graphicaleffects")
# Authorities for HTTPS, a model of English and a voice.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "ca-certificates, pocketsphinx-en-us, speech-dispatcher")
set(CPACK_DEBIAN_TOOL_PACKAGE_RECOMMENDS "${CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS}")

# Has the system's library cache updated when the libraries are installed.
file(WRITE ${PROJECT_BINARY_DIR}/packaging/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packaging/triggers)

include(CPack)

# What `cmake --install` installs, by component: runtime (libraries), devel (headers, CMake package,
# pkg-config files), qml (the views), tool (the command-line tool), doc, shop (the example application).
# Another project says find_package(ZelvoraSDK) and links Zelvora::NAME.

include(CMakePackageConfigHelpers)
include(ZelvoraHeaders)

foreach(header IN LISTS zelvora_public_headers)
  cmake_path(GET header PARENT_PATH room)
  install(FILES ZelvoraSDK/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZelvoraSDK/${room}
    COMPONENT devel)
endforeach()

# zelvora_install_headers(FOLDER): those of FOLDER that are in no private folder.
function(zelvora_install_headers folder)
  install(DIRECTORY ZelvoraSDK/${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZelvoraSDK
    COMPONENT devel FILES_MATCHING PATTERN *.h PATTERN private EXCLUDE)
endfunction()

zelvora_install_headers(testing)
set(zelvora_components core testing)
if(ZELVORA_BUILD_HOST)
  zelvora_install_headers(adapters)
  list(APPEND zelvora_components host)
  if(ZELVORA_SPEECH)
    list(APPEND zelvora_components speech)
  endif()
endif()
if(ZELVORA_BUILD_UI)
  zelvora_install_headers(ui)
  list(APPEND zelvora_components ui)
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZelvoraSDK)
install(EXPORT ZelvoraSDK NAMESPACE Zelvora:: DESTINATION ${package_dir}
  FILE ZelvoraSDKTargets.cmake COMPONENT devel)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZelvoraSDKConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
configure_file(cmake/ZelvoraSDKConfig.cmake.in ZelvoraSDKConfig.cmake @ONLY)
install(FILES cmake/ZelvoraDependencies.cmake cmake/ZelvoraLint.cmake
  ${PROJECT_BINARY_DIR}/ZelvoraSDKConfig.cmake
  ${PROJECT_BINARY_DIR}/ZelvoraSDKConfigVersion.cmake DESTINATION ${package_dir} COMPONENT devel)

# For builds that ask pkg-config: `pkg-config --cflags --libs zelvora-host`. Users of our archives also link
# the libraries behind them; a shared library has done so itself, and none of them shows in our headers.
file(RELATIVE_PATH up_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
if(NOT BUILD_SHARED_LIBS)
  set(core_libraries "-lboost_json -lpthread")
  set(core_requirements "libutf8proc")
  set(host_requirements ", sqlite3, libplist-2.0, libcurl")
  if(ZELVORA_SPEECH)
    string(APPEND host_requirements ", libpulse, sndfile, speexdsp, pocketsphinx")
    set(host_libraries "-lflite_cmulex -lflite")
  endif()
  if(TARGET Zelvora::sherpa)
    cmake_path(GET ZELVORA_SHERPA_LIBRARY PARENT_PATH sherpa_folder)
    string(APPEND host_libraries " ${ZELVORA_SHERPA_LIBRARY}"
      " -Wl,-rpath,${sherpa_folder} -Wl,-rpath-link,${sherpa_folder}")
  endif()
endif()
foreach(product IN ITEMS zelvora zelvora-host)
  if(product STREQUAL "zelvora" OR ZELVORA_BUILD_HOST)
    configure_file(cmake/${product}.pc.in ${product}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${product}.pc
      DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT devel)
  endif()
endforeach()

install(FILES README.md CHANGELOG.md LICENSE NOTICE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(DIRECTORY examples/shop DESTINATION ${CMAKE_INSTALL_DATADIR}/zelvora/examples COMPONENT doc
  PATTERN app EXCLUDE)

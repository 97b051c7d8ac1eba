# The libraries the core and its adapters stand on; README.md says why each was chosen.
# Read by this project and, once installed, by every project that finds it.

find_package(Threads REQUIRED)
# A Boost from elsewhere is taken with -DBoost_ROOT=DIR.
find_package(Boost 1.81 REQUIRED COMPONENTS json)
find_package(PkgConfig REQUIRED)
pkg_check_modules(utf8proc REQUIRED IMPORTED_TARGET libutf8proc)
pkg_check_modules(sqlite REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(plist REQUIRED IMPORTED_TARGET libplist-2.0)
pkg_check_modules(curl REQUIRED IMPORTED_TARGET libcurl>=7.88)
if(ZELVORA_SPEECH)
  pkg_check_modules(pulse REQUIRED IMPORTED_TARGET libpulse)
  pkg_check_modules(sndfile REQUIRED IMPORTED_TARGET sndfile)
  # Pronunciations come from flite, which says nothing to pkg-config: flite_cmulex and flite.
  pkg_check_modules(pocketsphinx REQUIRED IMPORTED_TARGET pocketsphinx)
  # Debian's description of it names a folder that does not exist, which CMake refuses.
  get_target_property(sphinx_folders PkgConfig::pocketsphinx INTERFACE_INCLUDE_DIRECTORIES)
  foreach(folder IN LISTS sphinx_folders)
    if(NOT IS_DIRECTORY "${folder}")
      list(REMOVE_ITEM sphinx_folders "${folder}")
    endif()
  endforeach()
  set_target_properties(PkgConfig::pocketsphinx PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${sphinx_folders}")
  pkg_check_modules(speexdsp REQUIRED IMPORTED_TARGET speexdsp)
endif()
if(ZELVORA_BUILD_UI)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core Quick Svg)
endif()

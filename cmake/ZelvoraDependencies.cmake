# The libraries that each component needs; README.md says why each was chosen. This project reads the file
# and, once it is installed, so does every project that finds it, so all targets made here carry our prefix.

# zelvora_find(MODULE NAME): NAME as pkg-config knows it, as PkgConfig::zelvora_MODULE. What is missing
# is named in zelvora_missing.
macro(zelvora_find module name)
  find_package(PkgConfig QUIET)
  if(PkgConfig_FOUND)
    pkg_check_modules(zelvora_${module} QUIET IMPORTED_TARGET ${name})
  endif()
  if(NOT TARGET PkgConfig::zelvora_${module})
    list(APPEND zelvora_missing "${name}")
  endif()
endmacro()

# zelvora_find_core(WITH_LIBRARIES): headers for those who include ours, and libraries for those who link them.
macro(zelvora_find_core with_libraries)
  find_package(Threads QUIET)
  if(NOT Threads_FOUND)
    list(APPEND zelvora_missing "threads")
  endif()
  # A Boost from elsewhere is taken with -DBoost_ROOT=DIR.
  if(${with_libraries})
    find_package(Boost 1.81 QUIET COMPONENTS json)
  else()
    find_package(Boost 1.81 QUIET)
  endif()
  if(NOT Boost_FOUND)
    list(APPEND zelvora_missing "Boost 1.81 or later, with Boost.JSON")
  endif()
  if(${with_libraries})
    zelvora_find(utf8proc libutf8proc)
  endif()
endmacro()

macro(zelvora_find_host)
  zelvora_find(sqlite sqlite3)
  zelvora_find(plist libplist-2.0)
  zelvora_find(curl libcurl>=7.88)
endmacro()

macro(zelvora_find_speech)
  zelvora_find(pulse libpulse)
  zelvora_find(sndfile sndfile)
  zelvora_find(speexdsp speexdsp)
  # Pronunciations come from flite, which has no pkg-config file: flite_cmulex and flite.
  zelvora_find(pocketsphinx pocketsphinx)
  if(TARGET PkgConfig::zelvora_pocketsphinx)
    # Debian's description of it names a folder that does not exist, which CMake refuses.
    get_target_property(zelvora_folders PkgConfig::zelvora_pocketsphinx INTERFACE_INCLUDE_DIRECTORIES)
    foreach(zelvora_folder IN LISTS zelvora_folders)
      if(NOT IS_DIRECTORY "${zelvora_folder}")
        list(REMOVE_ITEM zelvora_folders "${zelvora_folder}")
      endif()
    endforeach()
    set_target_properties(PkgConfig::zelvora_pocketsphinx PROPERTIES
      INTERFACE_INCLUDE_DIRECTORIES "${zelvora_folders}")
  endif()
endmacro()

macro(zelvora_find_ui with_libraries)
  if(${with_libraries})
    find_package(Qt6 6.4 QUIET COMPONENTS Core Quick Svg)
  else()
    find_package(Qt6 6.4 QUIET COMPONENTS Core Quick)
  endif()
  if(NOT Qt6_FOUND)
    list(APPEND zelvora_missing "Qt 6.4 or later, with Quick and Svg")
  endif()
endmacro()

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
endif()

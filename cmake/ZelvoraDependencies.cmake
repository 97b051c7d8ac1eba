# The libraries the core and its adapters stand on. See README.md for why each was chosen.

find_package(Threads REQUIRED)
# A Boost from elsewhere is taken with -DBoost_ROOT=DIR.
find_package(Boost 1.81 REQUIRED COMPONENTS json)
find_package(PkgConfig REQUIRED)
pkg_check_modules(utf8proc REQUIRED IMPORTED_TARGET libutf8proc)
pkg_check_modules(sqlite REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(plist REQUIRED IMPORTED_TARGET libplist-2.0)

add_library(zelvora_boost INTERFACE)
target_link_libraries(zelvora_boost INTERFACE Boost::headers Threads::Threads)
target_compile_definitions(zelvora_boost INTERFACE BOOST_ASIO_NO_DEPRECATED)

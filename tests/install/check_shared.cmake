# Builds the libraries anew as shared ones, as Debian's packages have them, looks at the names that they
# show, and builds and runs programs of others on them.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${WORK})
set(PREFIX ${WORK}/prefix)
foreach(command IN ITEMS "-G;${GENERATOR};-S;${ROOT};-B;${WORK}/build;-DBUILD_SHARED_LIBS=ON;\
-DZELVORA_PRECOMPILE_HEADERS=ON;-DZELVORA_BUILD_TOOL=OFF;-DZELVORA_BUILD_UI=OFF;-DCMAKE_BUILD_TYPE=;\
-DCMAKE_CXX_FLAGS=-O0;-DCMAKE_CXX_COMPILER=${COMPILER};-DBoost_DIR=${BOOST};-DZELVORA_SHERPA_ROOT=${SHERPA}"
    "--build;${WORK}/build" "--install;${WORK}/build;--prefix;${PREFIX}")
  execute_process(COMMAND ${CMAKE_COMMAND} ${command} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# Of Boost they show nothing but its types in the names of our own functions.
file(GLOB libraries ${PREFIX}/lib/libzelvora.so.*.* ${PREFIX}/lib/libzelvora-host.so.*.*)
list(LENGTH libraries count)
if(NOT count EQUAL 2)
  message(FATAL_ERROR "installed should be both libraries: ${libraries}")
endif()
find_program(nm nm REQUIRED)
foreach(library IN LISTS libraries)
  execute_process(COMMAND ${nm} -D --defined-only --format=just-symbols ${library}
                  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  if(NOT symbols MATCHES "_ZN7zelvora")
    message(FATAL_ERROR "${library} shows nothing of ours")
  endif()
  string(REGEX REPLACE "_ZNK?7zelvora[^\n]*" "" symbols "\n${symbols}")
  if(symbols MATCHES "\n([^\n]*5boost[^\n]*)")
    message(SEND_ERROR "${library} shows Boost's ${CMAKE_MATCH_1}")
  endif()
endforeach()

set(work ${WORK})
set(WORK ${work}/consumer)
include(${CMAKE_CURRENT_LIST_DIR}/check_consumer.cmake)
# Nothing of what the libraries stand on need be there for developers.
set(ENV{PKG_CONFIG_LIBDIR} ${WORK})
set(WORK ${work}/pkg-config)
include(${CMAKE_CURRENT_LIST_DIR}/check_pkg_config.cmake)

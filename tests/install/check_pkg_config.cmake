# Builds examples/hello with nothing but the compiler and pkg-config, and runs it.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
set(ENV{PKG_CONFIG_PATH} ${PREFIX}/lib/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs zelvora-host OUTPUT_VARIABLE flags
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
cmake_path(GET BOOST PARENT_PATH boost)
cmake_path(SET boost NORMALIZE ${boost}/../..)
execute_process(COMMAND ${COMPILER} -std=c++20 -I${boost}/include ${ROOT}/examples/hello/main.cpp
                        -o ${WORK}/hello ${flags} -L${boost}/lib -Wl,-rpath,${PREFIX}/lib
                COMMAND_ERROR_IS_FATAL ANY)
set(ENV{XDG_DATA_HOME} ${WORK}/data)
execute_process(COMMAND ${WORK}/hello WORKING_DIRECTORY ${ROOT} OUTPUT_VARIABLE said TIMEOUT 60
                COMMAND_ERROR_IS_FATAL ANY)
if(NOT said MATCHES "execute\\(screenId: \"basket\"")
  message(FATAL_ERROR "hello should open the basket; it said: ${said}")
endif()

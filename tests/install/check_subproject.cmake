# Builds the core inside another project with the cross compiler for a phone's processor.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} -G ${GENERATOR} -S ${CMAKE_CURRENT_LIST_DIR}/subproject
    -B ${WORK}/build -DTREE=${ROOT} -DCMAKE_TOOLCHAIN_FILE=${CMAKE_CURRENT_LIST_DIR}/aarch64.cmake
    -DBoost_DIR=${BOOST} -DCMAKE_CXX_FLAGS=-O0
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build --target zelvora_core_product
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE archives ${WORK}/build/*/libzelvora.a)
execute_process(COMMAND aarch64-linux-gnu-readelf -h ${archives} OUTPUT_VARIABLE said
                COMMAND_ERROR_IS_FATAL ANY)
if(NOT said MATCHES "AArch64" OR said MATCHES "X86-64")
  message(FATAL_ERROR "libzelvora.a should be for AArch64")
endif()
# The build machine's folders stay out of what is shipped.
file(STRINGS ${archives} paths REGEX "^${ROOT}/ZelvoraSDK.*\\.(h|cpp)$" LIMIT_COUNT 3)
if(paths)
  message(FATAL_ERROR "libzelvora.a names files of the build machine: ${paths}")
endif()

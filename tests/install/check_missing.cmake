# A missing component or library is named, and does not stop a project that can do without it.
cmake_minimum_required(VERSION 3.25)

# expect(WORDS ARGUMENTS CALL…): what a project that makes CALL prints of the package.
function(expect words arguments call)
  file(REMOVE_RECURSE ${WORK})
  file(WRITE ${WORK}/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)
project(asks LANGUAGES CXX)
${call}
message(STATUS \"found=\${ZelvoraSDK_FOUND}: \${ZelvoraSDK_NOT_FOUND_MESSAGE}\")\n")
  execute_process(COMMAND ${CMAKE_COMMAND} -G ${GENERATOR} -S ${WORK} -B ${WORK}/build
      -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${PREFIX} -DBoost_DIR=${BOOST} ${arguments}
    OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT said MATCHES "${words}")
    message(SEND_ERROR "${call} should say: ${words}\nit said: ${said}")
  endif()
endfunction()

expect("found=1" "" "find_package(ZelvoraSDK 0.1 COMPONENTS core host)")
expect("found=1" "" "find_package(ZelvoraSDK 0.1 COMPONENTS core OPTIONAL_COMPONENTS wings)")
expect("found=0: wings: there is no component of this name" ""
       "find_package(ZelvoraSDK 0.1 QUIET COMPONENTS core wings)")
expect("core: it needs what was not found: Boost 1.81" -DCMAKE_DISABLE_FIND_PACKAGE_Boost=ON
       "find_package(ZelvoraSDK 0.1 REQUIRED)")
expect("found=0" "" "find_package(ZelvoraSDK 0.9 QUIET)")

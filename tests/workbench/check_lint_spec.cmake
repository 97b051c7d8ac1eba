# Lets a project lint its spec in its build, clean and with a fault:
#   cmake -DROOT=DIR -DWORK=DIR -DTOOL=FILE -DGENERATOR=NAME -P check_lint_spec.cmake

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${WORK})
file(WRITE ${WORK}/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)
project(app LANGUAGES NONE)
include(${ROOT}/cmake/ZelvoraLint.cmake)
add_custom_target(app ALL)
zelvora_lint_spec(app \"my spec.json\" STRICT)
")
file(READ ${ROOT}/examples/shop/shop.json spec)

# expect(VERDICT SPEC): whether a build with the spec passes or is refused.
function(expect verdict spec)
  file(WRITE "${WORK}/my spec.json" "${spec}")
  execute_process(COMMAND ${CMAKE_COMMAND} -G ${GENERATOR} -S ${WORK} -B ${WORK}/build -DZELVORA_TOOL=${TOOL}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build
    RESULT_VARIABLE status OUTPUT_VARIABLE words ERROR_VARIABLE words)
  if(status EQUAL 0)
    set(found passes)
  else()
    set(found refused)
  endif()
  if(NOT found STREQUAL verdict)
    message(FATAL_ERROR "a build that should be ${verdict} was ${found}: ${words}")
  endif()
  set(words "${words}" PARENT_SCOPE)
endfunction()

expect(passes "${spec}")
string(REPLACE "\"screenId\": \"main\"" "\"screenIt\": \"main\", \"screenId\": \"main\"" faulty "${spec}")
expect(refused "${faulty}")
if(NOT words MATCHES "my spec.json:[0-9]+:[0-9]+: warning: .*unknown-key")
  message(FATAL_ERROR "the build does not say what is wrong: ${words}")
endif()

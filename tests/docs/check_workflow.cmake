# Runs the steps of the workflow in docs/writing-a-spec.md that call the tool, on the example spec and
# on a faulty one:
#   cmake -DROOT=DIR -DTOOL=FILE -DWORK=DIR -P check_workflow.cmake

cmake_minimum_required(VERSION 3.25)

file(READ ${ROOT}/docs/writing-a-spec.md page)
string(REGEX MATCH "```yaml\njobs:\n[^`]*```" workflow "${page}")
# A step that continues on the next line is one line to the shell.
string(REGEX REPLACE "\n            +" " " workflow "${workflow}")
string(REGEX MATCHALL "- run: zelvora [^\n]+" steps "${workflow}")
list(LENGTH steps count)
if(NOT count EQUAL 2 OR NOT workflow MATCHES "path: ([^ ]+)")
  message(FATAL_ERROR "the workflow should lint, evaluate and keep a report, but it is:\n${workflow}")
endif()
set(report ${CMAKE_MATCH_1})

file(REMOVE_RECURSE ${WORK})
file(COPY ${ROOT}/examples/shop/shop.json ${ROOT}/examples/shop/utterances.tsv DESTINATION ${WORK})
cmake_path(GET TOOL PARENT_PATH folder)
set(ENV{PATH} "${folder}:$ENV{PATH}")

# expect(VERDICT): whether every step passes, or is refused, with status 1, not for being unusable.
function(expect verdict)
  foreach(step IN LISTS steps)
    string(REPLACE "- run: " "" command "${step}")
    execute_process(COMMAND sh -ec "${command}" WORKING_DIRECTORY ${WORK}
      RESULT_VARIABLE status OUTPUT_VARIABLE words ERROR_VARIABLE words)
    if(NOT "${status}" STREQUAL "${verdict}")
      message(FATAL_ERROR "`${command}` ends with ${status}, not ${verdict}:\n${words}")
    endif()
  endforeach()
endfunction()

expect(0)
if(NOT EXISTS ${WORK}/${report})
  message(FATAL_ERROR "no step writes ${report}, which the workflow keeps")
endif()

# Now nothing opens any more, which both steps must refuse.
file(READ ${WORK}/shop.json spec)
string(REGEX REPLACE "\"execute_min_score\": *[0-9.]+" "\"execute_min_score\": 1000" faulty "${spec}")
file(WRITE ${WORK}/shop.json "${faulty}")
expect(1)

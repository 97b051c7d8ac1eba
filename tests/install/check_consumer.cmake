# Builds PROGRAMS of the project in consumer/ on PARTS of the package in PREFIX, runs them, and looks
# at what they print.
cmake_minimum_required(VERSION 3.25)

string(REPLACE "," ";" PROGRAMS ${PROGRAMS})

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${WORK})
file(COPY ${ROOT}/examples/hello ${ROOT}/examples/porting ${ROOT}/examples/testing DESTINATION ${WORK}/sources/examples)
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CMAKE_CURRENT_LIST_DIR}/consumer -B ${WORK}/build
    -DPARTS=${PARTS} -DSOURCES=${WORK}/sources -DVIEWS=${CMAKE_CURRENT_LIST_DIR}/views.cpp
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_STANDARD=${STANDARD}
    -DCMAKE_CXX_STANDARD_REQUIRED=ON -DCMAKE_PREFIX_PATH=${PREFIX} -DBoost_DIR=${BOOST})
run(${CMAKE_COMMAND} --build ${WORK}/build --target ${PROGRAMS})

set(says_porting "screenId: \"parcel\"")
set(says_hello "execute\\(screenId: \"basket\"")
set(says_shop_test "PASSED")
set(says_views_linked "^Say it\n$")
set(says_views_imported "^Say it\n$")
set(takes_porting ${ROOT}/examples/shop)
set(ENV{XDG_DATA_HOME} ${WORK}/data)
set(ENV{QT_QPA_PLATFORM} offscreen)
list(REMOVE_ITEM PROGRAMS alone)
foreach(program IN LISTS PROGRAMS)
  if(program STREQUAL views_imported)
    set(ENV{QML_IMPORT_PATH} ${PREFIX}/lib/qt6/qml)
  endif()
  execute_process(COMMAND ${WORK}/build/${program} ${takes_${program}} WORKING_DIRECTORY ${ROOT}
                  OUTPUT_VARIABLE said TIMEOUT 60 COMMAND_ERROR_IS_FATAL ANY)
  if(NOT said MATCHES "${says_${program}}")
    message(FATAL_ERROR "${program} should say ${says_${program}}; it said: ${said}")
  endif()
endforeach()

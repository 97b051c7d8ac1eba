# Installs the build and lets a project that knows only the installed package build and run
# examples/hello:
#   cmake -DBUILD=DIR -DROOT=DIR -DWORK=DIR -DGENERATOR=NAME -DCOMPILER=CXX -DBOOST=DIR
#         -DUI=BOOL -P check_install.cmake

cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CMAKE_CURRENT_LIST_DIR}/consumer -B ${WORK}/consumer
    -DEXAMPLES=${ROOT}/examples -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/prefix
    -DBoost_DIR=${BOOST})
run(${CMAKE_COMMAND} --build ${WORK}/consumer)

set(ENV{XDG_DATA_HOME} ${WORK}/data)
execute_process(COMMAND ${WORK}/consumer/hello WORKING_DIRECTORY ${ROOT}
                OUTPUT_VARIABLE said TIMEOUT 60 COMMAND_ERROR_IS_FATAL ANY)
if(NOT said MATCHES "execute\\(screenId: \"basket\"")
  message(FATAL_ERROR "hello should open the basket; it said: ${said}")
endif()

set(ENV{QT_QPA_PLATFORM} offscreen)
foreach(program views_linked views_imported)
  if(program STREQUAL views_imported)
    set(ENV{QML_IMPORT_PATH} ${WORK}/prefix/lib/qt6/qml)
  endif()
  if(EXISTS ${WORK}/consumer/${program})
    execute_process(COMMAND ${WORK}/consumer/${program} OUTPUT_VARIABLE said TIMEOUT 60
                    COMMAND_ERROR_IS_FATAL ANY)
    if(NOT said STREQUAL "Say it\n")
      message(FATAL_ERROR "${program} should show the view; it said: ${said}")
    endif()
  elseif(UI)
    message(FATAL_ERROR "${program} was not built")
  endif()
endforeach()

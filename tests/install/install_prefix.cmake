# Installs BUILD below PREFIX.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX} OUTPUT_QUIET
                COMMAND_ERROR_IS_FATAL ANY)

# Of the core exactly the public headers must be installed, and no room's private ones.
include(${ROOT}/cmake/ZelvoraHeaders.cmake)
set(include ${PREFIX}/include/ZelvoraSDK)
file(GLOB_RECURSE installed RELATIVE ${include} ${include}/*)
foreach(header IN LISTS installed)
  if(header MATCHES "/private/" OR NOT (header IN_LIST zelvora_public_headers OR header MATCHES "^(adapters|ui|testing)/"))
    message(SEND_ERROR "installed, and not public: ${header}")
  endif()
endforeach()
foreach(header IN LISTS zelvora_public_headers)
  if(NOT header IN_LIST installed)
    message(SEND_ERROR "public, and not installed: ${header}")
  endif()
endforeach()

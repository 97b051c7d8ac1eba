# Installs BUILD below PREFIX.
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX} OUTPUT_QUIET
                COMMAND_ERROR_IS_FATAL ANY)

# Nothing that belongs to a room alone is laid down.
file(GLOB_RECURSE private RELATIVE ${PREFIX} ${PREFIX}/include/*/private/*)
if(private)
  message(FATAL_ERROR "installed, and private: ${private}")
endif()

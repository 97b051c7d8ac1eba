# zelvora_lint_spec(TARGET FILE [STRICT]): building TARGET lints the spec FILE whenever it has changed;
# errors stop the build, and warnings too with STRICT. The tool is the one that ZELVORA_TOOL names, the
# one of this build, or the installed one; when cross building it must be one of the build machine.

set(zelvora_installed_tools ${CMAKE_CURRENT_LIST_DIR}/../../../bin ${CMAKE_CURRENT_LIST_DIR}/../../../../bin)

function(zelvora_lint_spec target file)
  cmake_parse_arguments(PARSE_ARGV 2 arg "STRICT" "" "")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zelvora_lint_spec: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} NORMALIZE)
  if(NOT ZELVORA_TOOL AND TARGET zelvora AND NOT CMAKE_CROSSCOMPILING)
    set(tool zelvora)
  else()
    find_program(ZELVORA_TOOL zelvora HINTS ${zelvora_installed_tools}
      DOC "The tool of this machine that lints specs")
    if(NOT ZELVORA_TOOL)
      message(FATAL_ERROR "zelvora_lint_spec(${target}): no tool zelvora found; name one with ZELVORA_TOOL")
    endif()
    set(tool ${ZELVORA_TOOL})
  endif()
  set(strict "")
  if(arg_STRICT)
    set(strict --strict)
  endif()
  cmake_path(GET file FILENAME name)
  string(MAKE_C_IDENTIFIER "${target}_lint_${name}" check)
  set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${check}.stamp)
  add_custom_command(OUTPUT ${stamp} DEPENDS ${file} ${tool} VERBATIM
    COMMAND ${tool} lint --quiet ${strict} ${file}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    COMMENT "Linting ${name}")
  add_custom_target(${check} DEPENDS ${stamp})
  add_dependencies(${target} ${check})
endfunction()

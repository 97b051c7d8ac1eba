# Tests check_numbers.cmake on one-file trees, written below WORK:
#   cmake -DWORK=DIR -P check_numbers_test.cmake

cmake_minimum_required(VERSION 3.25)

function(expect verdict line)
  file(REMOVE_RECURSE ${WORK})
  file(WRITE ${WORK}/ZelvoraSDK/base/text.cpp "${line}\n")
  execute_process(
    COMMAND ${CMAKE_COMMAND} -DROOT=${WORK} -P ${CMAKE_CURRENT_LIST_DIR}/check_numbers.cmake
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE words)
  if(status EQUAL 0)
    set(found passes)
  else()
    set(found refused)
  endif()
  if(NOT found STREQUAL verdict)
    message(SEND_ERROR "expected that ${line} ${verdict}; it ${found}: ${words}")
  endif()
endfunction()

expect(refused "std::snprintf(text, 9, \"%.5f\", value)")
expect(refused "std::snprintf(text, 9, \"a %g b\", value)")
expect(refused "std::snprintf(text, 9, \"%.2fs\", value)")
expect(passes  "std::snprintf(text, 9, \"U+%04X\", value)")
expect(passes  "  // as printf's %.2f rounds")
expect(refused "value = std::strtof(rest, &end)")
expect(refused "value = std::stod(text)")
expect(refused "sscanf(text, \"%d\", &value)")
expect(refused "if (std::isalpha(c))")
expect(passes  "if (isAlpha(c) || restod(c))")
expect(refused "#include <sstream>")
expect(passes  "#include <sstream>\ntext.imbue(std::locale::classic())")
expect(passes  "std::from_chars(begin, end, value)")
file(REMOVE_RECURSE ${WORK})

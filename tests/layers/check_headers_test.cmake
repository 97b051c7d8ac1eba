# Tests check_headers.cmake on small trees, written below WORK:
#   cmake -DWORK=DIR -P check_headers_test.cmake

cmake_minimum_required(VERSION 3.25)

# expect(VERDICT FILE LINES …): whether a tree of these files and their lines must pass.
function(expect verdict)
  file(REMOVE_RECURSE ${WORK})
  set(rest ${ARGN})
  while(rest)
    list(POP_FRONT rest file lines)
    file(WRITE ${WORK}/${file} "${lines}\n")
  endwhile()
  execute_process(
    COMMAND ${CMAKE_COMMAND} -DROOT=${WORK} -P ${CMAKE_CURRENT_LIST_DIR}/check_headers.cmake
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE words)
  if(status EQUAL 0)
    set(found passes)
  else()
    set(found refused)
  endif()
  if(NOT found STREQUAL verdict)
    message(SEND_ERROR "expected that ${ARGN} ${verdict}; it ${found}: ${words}")
  endif()
endfunction()

set(one "#include <ZelvoraSDK/routing/word.h>")
expect(passes  ZelvoraSDK/routing/word.h "// word"
               ZelvoraSDK/routing/word.cpp ${one} tests/routing/word_test.cpp ${one})
expect(refused ZelvoraSDK/routing/word.h "// word" ZelvoraSDK/routing/word.cpp ${one})
expect(refused ZelvoraSDK/routing/word.h "// word" ZelvoraSDK/routing/private/words.h "// words"
               ZelvoraSDK/routing/word.cpp "${one}\n#include <ZelvoraSDK/routing/private/words.h>"
               tests/routing/word_test.cpp ${one})
expect(passes  ZelvoraSDK/facade/settings.h "// public" ZelvoraSDK/facade/voice_command.h "// public")
expect(refused ZelvoraSDK/facade/settings.h "// public")
expect(refused ZelvoraSDK/facade/settings.h "#include <ZelvoraSDK/routing/word.h>"
               ZelvoraSDK/facade/voice_command.h "// public" ZelvoraSDK/routing/word.h "// word"
               ZelvoraSDK/routing/word.cpp ${one})
expect(refused ZelvoraSDK/routing/word.h "// word"
               ZelvoraSDK/routing/word.cpp ${one} tests/words/word_test.cpp ${one})
expect(passes  ZelvoraSDK/ui/view.h "  QML_ELEMENT" ZelvoraSDK/ui/view.cpp "#include <ZelvoraSDK/ui/view.h>")
expect(refused ZelvoraSDK/ui/view.h "// view" ZelvoraSDK/ui/view.cpp "#include <ZelvoraSDK/ui/view.h>")
file(REMOVE_RECURSE ${WORK})

# Holds check_layers.cmake to its word on one-file trees, written below WORK:
#   cmake -DWORK=DIR -P check_layers_test.cmake

cmake_minimum_required(VERSION 3.25)

# expect(VERDICT FILE LINE): whether LINE in FILE must pass or be refused.
function(expect verdict file line)
  file(REMOVE_RECURSE ${WORK})
  file(WRITE ${WORK}/${file} "#pragma once\n\n${line}\n")
  execute_process(
    COMMAND ${CMAKE_COMMAND} -DROOT=${WORK} -P ${CMAKE_CURRENT_LIST_DIR}/check_layers.cmake
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE words)
  if(status EQUAL 0)
    set(found passes)
  else()
    set(found refused)
  endif()
  if(NOT found STREQUAL verdict)
    message(SEND_ERROR "expected that ${line} in ${file} ${verdict}; it ${found}: ${words}")
  endif()
endfunction()

expect(passes  ZelvoraSDK/base/text.h            "#include <string_view>")
expect(passes  ZelvoraSDK/base/text.cpp          "#include <utf8proc.h>")
expect(refused ZelvoraSDK/spec/task_spec.cpp     "#include <utf8proc.h>")
expect(passes  ZelvoraSDK/routing/router.h       "#include <ZelvoraSDK/spec/task_spec.h>")
expect(refused ZelvoraSDK/spec/task_spec.h       "#include <ZelvoraSDK/routing/router.h>")
expect(refused ZelvoraSDK/spec/task_spec.cpp     "  #  include <ZelvoraSDK/routing/router.h>")
expect(refused ZelvoraSDK/speech/engine.h        "#include <ZelvoraSDK/outcome/result.h>")
expect(refused ZelvoraSDK/base/text.h            "#include \"error.h\"")
expect(refused ZelvoraSDK/facade/zelvora.h       "#include <adapters/host/host_platform.h>")
expect(refused ZelvoraSDK/platform/url_session.h "#include <curl/curl.h>")
expect(refused ZelvoraSDK/facade/zelvora.h       "#include <QObject>")
expect(passes  ZelvoraSDK/ui/mic_button.h        "#include <QObject>")
expect(refused ZelvoraSDK/ui/mic_button.h        "#include <sqlite3.h>")
expect(refused ZelvoraSDK/elsewhere/thing.h      "#include <string>\n#include <ZelvoraSDK/base/text.h>")
expect(passes  adapters/plist/plist_bundle.cpp   "#include <plist/plist.h>")
expect(refused adapters/plist/plist_bundle.h     "#include <plist/plist.h>")
expect(passes  adapters/curl/private/handle.h    "#include <curl/curl.h>")
expect(refused adapters/curl/curl_session.cpp    "#include <ZelvoraSDK/facade/zelvora.h>")
expect(refused adapters/curl/curl_session.cpp    "#include <adapters/plist/plist_bundle.h>")
expect(passes  adapters/host/host_platform.cpp   "#include <adapters/plist/plist_bundle.h>")
expect(refused adapters/host/host_platform.cpp   "#include <ZelvoraSDK/facade/zelvora.h>")
file(REMOVE_RECURSE ${WORK})

// Any text is sent as one text: it ends at its one lone dot, and no part of it is a command.

#include <fuzz/input.h>

#include <ZelvoraSDK/adapters/speechd/private/conversation.h>
#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvora;
  const std::string_view text = fuzz::textOf(data, size);
  const std::string framed = speechd::framedText(speechd::filteredText(text));
  fuzz::require(isValidUtf8(framed) && framed.find('\0') == framed.npos);
  const std::string lines = "\r\n" + framed;
  fuzz::require(lines.find("\r\n.\r\n") == lines.size() - 5);
  for (std::size_t at = framed.find('\r'); at != framed.npos; at = framed.find('\r', at + 1))
    fuzz::require(framed[at + 1] == '\n');
  const std::string code = speechd::languageCode(text);
  fuzz::require(code.size() <= kMaxLanguageCodeBytes);
  fuzz::require(code.find_first_of("\r\n \t") == code.npos);
  return 0;
}

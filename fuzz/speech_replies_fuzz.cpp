// For anything that a speech daemon sends, at any time, a conversation ends each text at most once,
// sends no command out of a text, and is silent once it is closed.

#include <algorithm>
#include <set>

#include <fuzz/input.h>

#include <ZelvoraSDK/adapters/speechd/private/conversation.h>

namespace {

using namespace zelvora;
using speechd::Actions;
using speechd::Conversation;

class Run {
 public:
  void perform(const Actions& actions) {
    fuzz::require(!isClosed_);
    for (const Actions::End& end : actions.ended)
      fuzz::require(end.number <= last_ && ended_.insert(end.number).second);
    constexpr std::string_view kLastLine = "INJECTED\r\n";
    for (std::size_t at = 0; (at = actions.bytes.find(kLastLine, at)) != std::string::npos;) {
      at += kLastLine.size();
      fuzz::require(actions.bytes.compare(at, 3, ".\r\n") == 0);
    }
    isClosed_ = actions.hangUp;
    fuzz::require(isClosed_ == (conversation_.state() == Conversation::State::closed));
  }
  void say(std::string_view language) {
    perform(conversation_.say(
        {.number = ++last_, .text = "a\n.\r\nINJECTED", .language = std::string(language)}));
  }

  /// Each of "!@#$%^" is an event; the bytes between them come from the daemon.
  void take(std::string_view events) {
    while (!events.empty() && !isClosed_) {
      const char event = events.front();
      switch (event) {
        case '!': perform(conversation_.cancel()); break;
        case '@': say("de"); break;
        case '#': say("xx"); break;
        case '$': say(""); break;
        case '%': conversation_.forget(last_); break;
        case '^': perform(conversation_.close()); break;
        default: {
          const std::size_t length = std::min(events.find_first_of("!@#$%^"), events.size());
          perform(conversation_.take(events.substr(0, length)));
          events.remove_prefix(length);
          continue;
        }
      }
      events.remove_prefix(1);
    }
  }

  void run(std::string_view events) {
    perform(conversation_.begin());
    take(events);
    fuzz::require(!isClosed_ || conversation_.take("230 OK\r\n").bytes.empty());
  }

 private:
  Conversation conversation_;
  speechd::TextNumber last_ = 0;
  std::set<speechd::TextNumber> ended_;
  bool isClosed_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Run().run(fuzz::textOf(data, size));
  return 0;
}

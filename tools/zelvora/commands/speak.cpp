#include <unistd.h>

#include <boost/asio/post.hpp>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/speech/voice_speaker.h>

#include "../application.h"
#include "../commands.h"

namespace zelvora::tool {
namespace {

/// How long the adapter waits for the end of a short text.
constexpr std::chrono::seconds kPatience{15};

struct SpeakOptions {
  CommonOptions common;
  std::vector<std::string> texts;
};

bool isOnPath(const char* program) {
  const char* path = std::getenv("PATH");
  for (const std::string_view folder : splitWords(path ? path : "/usr/bin:/bin", ':'))
    if (::access((std::string(folder) + "/" + program).c_str(), X_OK) == 0) return true;
  return false;
}

/// Why a text was not said. The synthesiser's port only says that it was not, so this looks for
/// what a user can fix: first a daemon that is not there, then one that gave up at once, then one
/// without sound, for which the adapter waits.
std::string causeOfSilence(std::chrono::steady_clock::duration waited) {
  const char* address = std::getenv("SPEECHD_ADDRESS");
  if (waited >= kPatience)
    return "speech-dispatcher took the text and did not end it in time; is there a sound server?";
  if (!isOnPath("speech-dispatcher") && (!address || !*address))
    return "speech-dispatcher is not installed";
  return "speech-dispatcher can't be reached or started" +
         (address && *address ? " at SPEECHD_ADDRESS, " + std::string(address) : std::string()) +
         ", or refused the text";
}

/// Says `text` and waits until it has been said.
void say(Application& application, VoiceSpeaker& speaker, const std::string& text) {
  bool wasSaid = false;
  MainLoop& loop = application.loop();
  const auto begin = std::chrono::steady_clock::now();
  speaker.speak(text, application.settings().locale, [&](bool said) {
    asio::post(loop.executor(), [&wasSaid, &loop, said] {
      wasSaid = said;
      loop.stop();
    });
  });
  loop.run();
  if (!wasSaid)
    throw UsageError("could not be said: " + text + ": " +
                     causeOfSilence(std::chrono::steady_clock::now() - begin));
}

int runSpeak(const SpeakOptions& options) {
  Application application(options.common);
  SpeechdSynthesizerFactory synthesizers;
  VoiceSpeaker speaker(synthesizers);
  for (const std::string& text : options.texts)
    if (!isBlank(text)) say(application, speaker, text);
  return kAnswered;
}

}  // namespace

Command speakCommand() {
  const auto options = std::make_shared<SpeakOptions>();
  Command command{
      .name = "speak",
      .summary = "say each text in the locale's voice",
      .about =
          "Says each text in the locale's voice, through speech-dispatcher, and returns when it "
          "has been said. Blank texts are passed over. A text that could not be said ends the "
          "tool with status 2 and the cause; without a sound server that takes a while to "
          "find out.",
      .operands = {.shown = "TEXT…",
                   .missing = "what is to be said?",
                   .least = 1,
                   .take = [options](std::vector<std::string> texts) {
                     options->texts = std::move(texts);
                   }}};
  addCommonOptions(command, options->common);
  command.run = [options](Output&) { return runSpeak(*options); };
  return command;
}

}  // namespace zelvora::tool

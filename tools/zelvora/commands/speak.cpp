#include <boost/asio/post.hpp>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/speech/voice_speaker.h>

#include "../application.h"
#include "../commands.h"

namespace zelvora::tool {
namespace {

struct SpeakOptions {
  CommonOptions common;
  std::vector<std::string> texts;
};

/// Says `text` and waits until it has been said.
void say(Application& application, VoiceSpeaker& speaker, const std::string& text) {
  bool wasSaid = false;
  MainLoop& loop = application.loop();
  speaker.speak(text, application.settings().locale, [&](bool said) {
    asio::post(loop.executor(), [&wasSaid, &loop, said] {
      wasSaid = said;
      loop.stop();
    });
  });
  loop.run();
  if (!wasSaid) throw UsageError("could not be said: " + text);
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

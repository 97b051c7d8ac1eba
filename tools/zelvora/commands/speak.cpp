#include <CLI/CLI.hpp>
#include <boost/asio/post.hpp>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/speech/voice_speaker.h>

#include "../application.h"
#include "../commands.h"
#include "../usage_error.h"

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

void addSpeakCommand(CLI::App& tool, Run& run) {
  auto options = std::make_shared<SpeakOptions>();
  CLI::App* command = tool.add_subcommand("speak", "Say each text in the locale's voice");
  addCommonOptions(*command, options->common);
  command->add_option("text", options->texts, "What is to be said")->required();
  command->callback([options, &run] { run = [options] { return runSpeak(*options); }; });
}

}  // namespace zelvora::tool

// An application on a phone system of its own: every port is implemented here. It routes a typed
// command, then a spoken one, and says the answer. usage: porting BUNDLE

#include <cstdio>

#include <ZelvoraSDK/zelvora.h>

#include "speech_ports.h"
#include "system_ports.h"

namespace porting {

zelvora::Platform phone(zelvora::asio::any_io_executor main, const std::string& bundle) {
  return {.executors = std::make_shared<PhoneExecutors>(std::move(main)),
          .clock = std::make_shared<zelvora::SystemClock>(),
          .log = std::make_shared<PhoneLog>(),
          .defaults = std::make_shared<PhoneDefaults>(),
          .bundle = std::make_shared<PhoneBundle>(bundle),
          .urlSession = std::make_shared<zelvora::NoNetworkSession>("You are offline"),
          .speech = zelvora::SpeechPlatform{.audioSession = std::make_shared<PhoneSession>(),
                                            .audioEngines = std::make_shared<PhoneMicrophones>(),
                                            .audioFiles = std::make_shared<PhoneRecordings>(),
                                            .recognizers = std::make_shared<PhoneRecognizers>(),
                                            .permissions = std::make_shared<PhonePermissions>(),
                                            .synthesizers = std::make_shared<PhoneVoices>()}};
}

}  // namespace porting

int main(int, char** arguments) {
  zelvora::MainLoop loop;  // on a phone, the user interface's own
  const zelvora::Platform platform = porting::phone(loop.executor(), arguments[1]);
  zelvora::Zelvora zelvora(platform, zelvora::Zelvora::SpecResource{"shop"});
  zelvora::VoiceSpeaker speaker(*platform.speech->synthesizers);
  zelvora.onResult = [&](const zelvora::ZelvoraResult& outcome) {
    std::printf("%s\n", describe(outcome).c_str());
    loop.stop();
  };

  zelvora.routeAndCallback("track my order");
  loop.run();

  zelvora::VoiceCommand command(zelvora);  // ends when the speaker is done
  command.tap();
  loop.run();
  speaker.speak("Navigating to: Cart", "en-US");
}

// Does each thing thousands of times and checks that memory, descriptors and threads stay flat:
//   zelvora_endurance serve URL PID | routes | captures | texts  [COUNT]

#include <dirent.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_future.hpp>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/adapters/host.h>
#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>
#include <ZelvoraSDK/adapters/sndfile/file_microphone.h>
#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/speech/speech_engine.h>
#include <ZelvoraSDK/zelvora.h>
#include <tests/support/sound_server.h>
#include <tests/support/speech_server.h>
#include <tests/support/synthetic_voice.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::bench {
namespace {

/// What a process holds.
struct Footprint {
  long kilobytes = 0;
  long descriptors = 0;
  long threads = 0;
};

Footprint footprintOf(const std::string& process) {
  Footprint footprint;
  std::ifstream status("/proc/" + process + "/status");
  for (std::string line; std::getline(status, line);) {
    const auto read = [&](std::string_view name, long& into) {
      if (!line.starts_with(name)) return;
      const std::size_t digit = line.find_first_of("0123456789");
      std::from_chars(line.data() + digit, line.data() + line.size(), into);
    };
    read("VmRSS:", footprint.kilobytes);
    read("Threads:", footprint.threads);
  }
  DIR* const folder = ::opendir(("/proc/" + process + "/fd").c_str());
  while (folder && ::readdir(folder)) ++footprint.descriptors;
  if (folder) ::closedir(folder);
  return footprint;
}

/// Runs `once` `count` times and prints the footprint of `process` at each tenth. The first half
/// may fill caches; after that nothing may grow. Returns whether nothing did.
bool staysFlat(std::string_view what, std::size_t count, const std::string& process,
               const std::function<void(std::size_t)>& once) {
  constexpr long kNoise = 2048;  // Kilobytes: what an allocator keeps or gives back by chance.
  constexpr long kClosing = 1;   // A connection that the server is about to close.
  Footprint middle, last;
  for (std::size_t i = 0; i < count; ++i) {
    once(i);
    if ((i + 1) % std::max<std::size_t>(count / 10, 1) != 0) continue;
    if (process == "self") ::malloc_trim(0);
    last = footprintOf(process);
    if (i + 1 <= count / 2) middle = last;
    std::cout << what << ' ' << i + 1 << ": " << last.kilobytes << " kB, " << last.descriptors
              << " descriptors, " << last.threads << " threads" << std::endl;
  }
  const bool isFlat = last.kilobytes <= middle.kilobytes + kNoise &&
                      last.descriptors <= middle.descriptors + kClosing &&
                      last.threads <= middle.threads;
  std::cout << what << (isFlat ? ": flat\n" : ": GROWS\n");
  return isFlat;
}

bool serve(const std::string& url, const std::string& process, std::size_t count) {
  const std::pair<const char*, const char*> requests[] = {
      {"/api/interpret", R"({"text":"open my cart","locale":"en-US","spec":{"tasks":[]}})"},
      {"/api/semantic/resolve", R"({"text":"what do customers say","top_k":3})"},
      {"/api/semanticCatalog/resolve", R"({"query":"something for the rain"})"},
      {"/api/interpret", "{"},
      {"/nowhere", "{}"}};
  WorkerPool pool(1);
  CurlUrlSession session;
  std::map<int, int> statuses;
  const bool isFlat = staysFlat("request", count, process, [&](std::size_t i) {
    const auto& [path, body] = requests[i % std::size(requests)];
    UrlRequest request{.url = url + path,
                       .headers = {{"Content-Type", "application/json"},
                                   {"Authorization", i % 7 == 0 ? "Basic x" : "Bearer t"}},
                       .body = body};
    auto answer =
        asio::co_spawn(pool.executor(), session.send(std::move(request)), asio::use_future);
    ++statuses[answer.get().status.value_or(0)];
  });
  for (const auto& [status, times] : statuses) std::cout << times << " × " << status << '\n';
  return isFlat;
}

bool routes(std::size_t count) {
  const testing::TemporaryFolder folder;
  asio::io_context context{1};
  const HostPlatform host(context.get_executor(), {.bundle = ZELVORA_SOURCE_DIR "/examples/shop",
                                                   .dataFolder = folder.path(),
                                                   .log = std::make_shared<SilentLogSink>()});
  Platform platform = host.platform();
  platform.urlSession = std::make_shared<NoNetworkSession>();
  const char* const texts[] = {"open my cart", "show me the size guide", "orders",
                               "what is the weather on mars", "and the returns"};
  Zelvora shop(platform, Zelvora::SpecResource{"shop"});
  return staysFlat("route", count, "self", [&](std::size_t i) {
    context.restart();
    auto outcome =
        asio::co_spawn(context, shop.route(texts[i % std::size(texts)]), asio::use_future);
    context.run();
    try {
      static_cast<void>(outcome.get());
    } catch (const Error&) {
      // The device does not settle it, and there is no backend.
    }
  });
}

/// As fast as the file can be read, for as many buffers as it has.
class FastPace final : public Pace {
 public:
  FastPace(asio::any_io_executor threads, int buffers)
      : threads_(std::move(threads)), buffers_(buffers) {}
  std::shared_ptr<void> start(Seconds /*period*/, std::function<void()> tick) override {
    auto shared = std::make_shared<std::function<void()>>(std::move(tick));
    asio::post(threads_, [weak = std::weak_ptr(shared), buffers = buffers_, over = &over] {
      for (int i = 0; i < buffers; ++i)
        if (const auto call = weak.lock()) (*call)();
      over->set_value();
    });
    return shared;
  }

  std::promise<void> over;

 private:
  asio::any_io_executor threads_;
  int buffers_;
};

class NoSession final : public AudioSession {
 public:
  void configure(Category /*category*/, Mode /*mode*/, std::uint32_t /*options*/) override {}
  void setActive(bool /*active*/) override {}
};

bool captures(std::size_t count) {
  constexpr AudioFormat kFormat{.sampleRate = 16000, .channels = 1};
  const testing::TemporaryFolder folder;
  const auto file = folder.path() / "command.caf";
  const std::vector<std::int16_t> sound = testing::spoken("open my cart");
  SndfileRecordings()
      .create(file, kFormat)
      ->write({.format = kFormat, .frames = sound.size(), .samples = std::span(sound)});
  const auto recognizers =
      std::make_shared<PocketsphinxRecognizerFactory>(std::vector<std::string>{"open my cart"});
  recognizers->preload();
  WorkerPool threads(2);
  std::size_t understood = 0;
  const bool isFlat = staysFlat("capture", count, "self", [&](std::size_t) {
    const auto pace =
        std::make_shared<FastPace>(threads.executor(), static_cast<int>(sound.size() / 1024 + 1));
    ZelvoraSpeechEngine::Parts parts;
    parts.log = std::make_shared<SilentLogSink>();
    parts.speech.audioSession = std::make_shared<NoSession>();
    parts.speech.audioEngines = std::make_shared<FileMicrophone>(file, pace);
    parts.speech.audioFiles = std::make_shared<SndfileRecordings>();
    parts.speech.recognizers = recognizers;
    parts.temporaryDirectory = folder.path();
    ZelvoraSpeechEngine engine("en-US", parts);
    std::promise<CaptureOutcome> ended;
    engine.onCaptureEnded = [&](CaptureOutcome outcome) { ended.set_value(std::move(outcome)); };
    engine.start();
    pace->over.get_future().wait();
    engine.stop();
    if (ended.get_future().get().transcript == "open my cart") ++understood;
  });
  std::cout << understood << " of " << count << " understood\n";
  return isFlat && understood == count;
}

bool texts(std::size_t count) {
  const testing::SoundServer sound;
  const testing::SpeechServer speech;
  const auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  std::size_t said = 0;
  const bool isFlat = staysFlat("text", count, "self", [&](std::size_t i) {
    std::promise<bool> ended;
    synthesizer->speak({.text = "ok " + std::to_string(i % 10),
                        .language = i % 50 == 0 ? "de" : "en-US",
                        .rate = 1,
                        .onEnd = [&](bool wasSaid) { ended.set_value(wasSaid); }});
    if (ended.get_future().get()) ++said;
  });
  std::cout << said << " of " << count << " said\n";
  return isFlat && said == count;
}

bool run(const std::vector<std::string>& words) {
  const auto countAt = [&](std::size_t place, std::size_t otherwise) {
    std::size_t count = otherwise;
    if (place < words.size())
      std::from_chars(words[place].data(), words[place].data() + words[place].size(), count);
    return count;
  };
  if (words.size() >= 3 && words[0] == "serve")
    return serve(words[1], words[2], countAt(3, 10'000));
  if (!words.empty() && words[0] == "routes") return routes(countAt(1, 1'000'000));
  if (!words.empty() && words[0] == "captures") return captures(countAt(1, 300));
  if (!words.empty() && words[0] == "texts") return texts(countAt(1, 500));
  std::cerr << "usage: zelvora_endurance serve URL PID | routes | captures | texts  [COUNT]\n";
  return false;
}

}  // namespace
}  // namespace zelvora::bench

int main(int argc, char** argv) { return zelvora::bench::run({argv + 1, argv + argc}) ? 0 : 1; }

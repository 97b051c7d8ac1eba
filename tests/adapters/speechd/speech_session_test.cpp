#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include <ZelvoraSDK/base/limits.h>
#include <tests/adapters/speechd/speech_relay.h>
#include <tests/support/sound_server.h>
#include <tests/support/speech_server.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using namespace std::chrono_literals;
using testing::ScriptedSpeechDaemon;
using testing::SoundServer;
using testing::SpeechRelay;
using testing::SpeechServer;
using testing::TemporaryFolder;
using SteadyClock = std::chrono::steady_clock;

constexpr auto kDaemonPatience = 60s;

/// Texts, and how they ended.
class Texts {
 public:
  SpeechUtterance next(std::string text, std::string language = "en") {
    auto& ended = ended_.at(begun_++);
    return {.text = std::move(text), .language = std::move(language), .onEnd = [&](bool said) {
              ended.set_value(said);  // Throws the second time.
            }};
  }
  /// Absent when it does not end.
  std::optional<bool> end(std::size_t which) {
    auto end = ended_.at(which).get_future();
    if (end.wait_for(kDaemonPatience) != std::future_status::ready) return std::nullopt;
    return end.get();
  }

 private:
  std::size_t begun_ = 0;
  std::array<std::promise<bool>, 3> ended_;
};

using Synthesizer = std::unique_ptr<SpeechSynthesizer>;

Synthesizer speaking(Texts& texts) {
  auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  synthesizer->speak(texts.next("one", "de"));
  synthesizer->speak(texts.next("two", "xx"));
  return synthesizer;
}

/// Runs `interfere` at the n-th line of the daemon at `path`, for each n, while two texts are said.
void atEachLine(const std::filesystem::path& path, bool daemonVanishes,
                const std::function<void(Synthesizer& synthesizer, Texts& texts)>& interfere) {
  std::size_t lines = 0;
  {
    const SpeechRelay relay(path, [](std::size_t) { return true; });
    Texts texts;
    const auto synthesizer = speaking(texts);
    ASSERT_EQ(texts.end(0), true);
    ASSERT_EQ(texts.end(1), true);
    lines = relay.lines();
  }
  ASSERT_GT(lines, 20U);
  for (std::size_t n = 1; n <= lines; ++n) {
    std::promise<void> reached;
    const SpeechRelay relay(path, [&](std::size_t line) {
      if (line == n) reached.set_value();
      return line != n || !daemonVanishes;
    });
    Texts texts;
    auto synthesizer = speaking(texts);
    ASSERT_EQ(reached.get_future().wait_for(kDaemonPatience), std::future_status::ready) << n;
    interfere(synthesizer, texts);
    const auto begin = SteadyClock::now();
    synthesizer.reset();
    EXPECT_LT(SteadyClock::now() - begin, kMaxSpeechClose) << "line " << n;
  }
}

void release(Synthesizer& synthesizer, Texts& texts) {
  synthesizer.reset();
  EXPECT_TRUE(texts.end(0).has_value());
  EXPECT_TRUE(texts.end(1).has_value());
}

TEST(SpeechSession, IsReleasedAfterEachLineOfAScriptedDaemon) {
  const ScriptedSpeechDaemon daemon;
  atEachLine(daemon.path(), false, release);
}

TEST(SpeechSession, IsReleasedAfterEachLineOfTheRealDaemon) {
  const SoundServer sound;
  const SpeechServer speech;
  atEachLine(speech.socket(), false, release);
}

TEST(SpeechSession, NeverSendsTheRealDaemonACommandFromAText) {
  const SoundServer sound;
  const SpeechServer speech;
  const auto linesFor = [&](const std::string& text) {
    const SpeechRelay relay(speech.socket(), [](std::size_t) { return true; });
    Texts texts;
    const auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
    synthesizer->speak(texts.next(text));
    EXPECT_EQ(texts.end(0), true);
    synthesizer->speak(texts.next("and on"));
    EXPECT_EQ(texts.end(1), true);
    return relay.lines();
  };
  const std::size_t lines = linesFor("plain");
  for (const std::string text :
       {"a\n\r.\nSET SELF RATE 0", "\r.\nSET SELF RATE 0", "a\xFF", "a\n.\r\r\nSET SELF RATE 0"})
    EXPECT_EQ(linesFor(text), lines) << ::testing::PrintToString(text);
}

TEST(SpeechSession, SpeaksAgainAfterAStopAtEachLine) {
  const ScriptedSpeechDaemon daemon;
  atEachLine(daemon.path(), false, [](Synthesizer& synthesizer, Texts& texts) {
    synthesizer->stopSpeaking();
    synthesizer->speak(texts.next("three"));
    EXPECT_EQ(texts.end(2), true);
  });
}

TEST(SpeechSession, LosesItsDaemonAtEachLineAndFindsItAgain) {
  const ScriptedSpeechDaemon daemon;
  atEachLine(daemon.path(), true, [](Synthesizer& synthesizer, Texts& texts) {
    EXPECT_TRUE(texts.end(0).has_value());
    EXPECT_TRUE(texts.end(1).has_value());
    synthesizer->speak(texts.next("three"));
    EXPECT_EQ(texts.end(2), true);
  });
}

TEST(SpeechSession, MayBeReleasedWhenATextEnds) {
  const ScriptedSpeechDaemon daemon;
  auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  std::promise<std::chrono::nanoseconds> released;
  synthesizer->speak({.text = "goodbye", .language = "en", .onEnd = [&](bool) {
                        const auto begin = SteadyClock::now();
                        synthesizer.reset();
                        released.set_value(SteadyClock::now() - begin);
                      }});
  EXPECT_LT(released.get_future().get(), 500ms);
}

TEST(SpeechSession, HangsUpOnADaemonThatPassesALimit) {
  const testing::SpeechSocket flood([](int client, int) {
    testing::sendAll(client, std::string(kMaxSpeechReplyLineBytes + 1, 'x'));
    char byte = 0;
    while (::recv(client, &byte, 1, 0) > 0) {
    }
  });
  Texts texts;
  const auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  synthesizer->speak(texts.next("one"));
  EXPECT_EQ(texts.end(0), false);
}

TEST(SpeechSession, IsReleasedInTimeWhenItsDaemonStopsReading) {
  std::promise<void> begun;
  const testing::SpeechSocket deaf([&](int client, int stop) {
    testing::sendAll(client, "208 OK\r\n202 OK\r\n220 OK\r\n220 OK\r\n251-en\r\n251 OK\r\n");
    testing::sendAll(client, "203 OK\r\n230 OK\r\n");
    int waiting = 0;
    while (waiting < 10'000) ::ioctl(client, FIONREAD, &waiting);
    begun.set_value();
    testing::pump({}, stop, [](int, std::string_view) { return true; });
  });
  Texts texts;
  auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  synthesizer->speak(texts.next(std::string(1 << 20, 'a')));
  begun.get_future().wait();
  const auto begin = SteadyClock::now();
  synthesizer.reset();
  EXPECT_GE(SteadyClock::now() - begin, kMaxSpeechFarewell);
  EXPECT_LT(SteadyClock::now() - begin, kMaxSpeechClose);
  EXPECT_EQ(texts.end(0), false);
}

/// A program "speech-dispatcher", first in PATH, that replaces the daemon's launcher.
class FakeLauncher {
 public:
  explicit FakeLauncher(const std::string& script) {
    folder_.write("speech-dispatcher", "#!/bin/sh\n" + script);
    ::chmod((folder_.path() / "speech-dispatcher").c_str(), 0755);
    ::setenv("PATH", (folder_.path().string() + ":" + path_).c_str(), 1);
    ::setenv("OUT", (folder_.path() / "out").c_str(), 1);
    ::setenv("SPEECHD_ADDRESS", ("unix_socket:" + (folder_.path() / "none").string()).c_str(), 1);
  }
  ~FakeLauncher() { ::setenv("PATH", path_.c_str(), 1); }
  FakeLauncher(const FakeLauncher&) = delete;
  FakeLauncher& operator=(const FakeLauncher&) = delete;

  [[nodiscard]] std::string output() const {
    std::ifstream file(folder_.path() / "out");
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  TemporaryFolder folder_;
  std::string path_ = ::getenv("PATH");
};

TEST(SpeechStart, PassesNothingOfThisProcessToItsDaemon) {
  sigset_t blocked, before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  ::sigprocmask(SIG_BLOCK, &blocked, &before);
  ::signal(SIGPIPE, SIG_IGN);
  const int inherited = ::dup2(STDERR_FILENO, 777);  // Without O_CLOEXEC.
  // The shell reads the file itself: it blocks signals while it starts another program.
  const FakeLauncher launcher(
      "ls /proc/$$/fd >$OUT\n"
      "while read -r line; do\n"
      "  case $line in SigBlk* | SigIgn*) echo \"$line\" >>$OUT ;; esac\n"
      "done </proc/$$/status\n");
  Texts texts;
  SpeechdSynthesizerFactory().makeSynthesizer()->speak(texts.next("released at once"));
  const auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  synthesizer->speak(texts.next("nobody says this"));
  EXPECT_EQ(texts.end(1), false);
  ::close(inherited);
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  const std::string output = launcher.output();
  EXPECT_TRUE(output.starts_with("0\n1\n")) << output;
  EXPECT_EQ(output.find("777"), std::string::npos) << output;
  EXPECT_NE(output.find("SigBlk:\t0000000000000000"), std::string::npos) << output;
  // The signals above 31 belong to the C library.
  EXPECT_TRUE(output.ends_with("00000000\n") || output.ends_with("80000000\n")) << output;
}

TEST(SpeechStart, WaitsForAHungLauncherOnlySoLong) {
  const FakeLauncher launcher("echo $$ >$OUT; exec sleep 600\n");
  Texts texts;
  auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  const auto begin = SteadyClock::now();
  synthesizer->speak(texts.next("nobody says this"));
  EXPECT_EQ(texts.end(0), false);
  EXPECT_GE(SteadyClock::now() - begin, kMaxSpeechStart);
  EXPECT_LT(SteadyClock::now() - begin, kMaxSpeechStart + 3s);
  EXPECT_NE(::kill(std::stoi(launcher.output()), 0), 0) << "the launcher still runs";

  synthesizer->speak(texts.next("released while starting"));
  while (launcher.output().empty()) std::this_thread::yield();
  const auto release = SteadyClock::now();
  synthesizer.reset();
  EXPECT_LT(SteadyClock::now() - release, kMaxSpeechClose);
  EXPECT_EQ(texts.end(1), false);
}

}  // namespace
}  // namespace zelvora

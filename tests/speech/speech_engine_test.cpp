#include <ZelvoraSDK/speech/speech_engine.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <mutex>

#include <tests/speech/engine_fixture.h>

namespace zelvora {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::heard;
using ::testing::IsEmpty;
using ::testing::StartsWith;

const std::vector<float> kVoice(1024, 0.5F);
const std::vector<float> kQuiet(1024, 0.001F);

class SpeechEngine : public ::testing::Test {
 protected:
  SpeechEngine() {
    const auto journal = lab_.standIns.journal;
    engine_->onRecordingChanged = [journal](bool on) {
      journal->note(on ? "recording on" : "recording off");
    };
    engine_->onPartialText = [journal](const std::string& text) {
      journal->note("partial '" + text + "'");
    };
    engine_->onFinalText = [journal](const std::string& text) {
      journal->note("final '" + text + "'");
    };
    engine_->onError = [journal](const std::string& message) {
      journal->note("error: " + message);
    };
    engine_->onAudioDataReady = [journal](const std::optional<AudioData>& recording) {
      journal->note(recording ? "audio " + std::to_string(recording->size()) : "no audio");
    };
  }

  /// Waits until the engine has finished everything queued so far.
  void settle() { static_cast<void>(engine_->getLastAverageConfidence()); }
  std::vector<std::string> whatHappened() {
    settle();
    return lab_.standIns.journal->take();
  }
  void begin() {
    engine_->start();
    static_cast<void>(whatHappened());
  }
  /// Lets time pass. Stay clear of the exact limits: there the rounding of the summed ticks
  /// decides.
  void pass(Seconds duration) {
    lab_.time->pass(duration, [this] { settle(); });
  }

  testing::SpeechLab lab_;
  std::unique_ptr<ZelvoraSpeechEngine> engine_ =
      std::make_unique<ZelvoraSpeechEngine>("en-US", lab_.engineParts());
};

TEST_F(SpeechEngine, OpensAndClosesACaptureInItsOrder) {
  engine_->start();
  EXPECT_THAT(
      whatHappened(),
      ElementsAre("🎙️ start() t0", "recording off", "no audio", "session: listen 10", "session: on",
                  "🎙️ audio session active dt=0", "task: partial results", "tap on 1024",
                  "microphone on", "🎙️ audioEngine started dt=0", "recording on"));
  lab_.standIns.microphone->play(kVoice);
  lab_.standIns.microphone->play(kQuiet);
  lab_.standIns.recognizer->lateResult = heard("open my cart", {0.7, 0.9}, true);
  engine_->stop();
  EXPECT_THAT(whatHappened(),
              ElementsAre("microphone off", "tap off", "task: end of audio", "task: finish",
                          "partial 'open my cart'", "final 'open my cart'", "file flushed",
                          "session: off", "recording off", "audio 8192"));
  EXPECT_EQ(lab_.standIns.recognizer->heardFrames(), 2048U);
  EXPECT_EQ(engine_->getLastAverageConfidence(), 0.8) << "a result that comes with the end counts";
  EXPECT_EQ(lab_.recordingsLeft(), 0U);
}

TEST_F(SpeechEngine, ReportsWhyACaptureDoesNotBegin) {
  const Error no("Test", 1, "no");
  const auto& ports = lab_.standIns;
  const struct {
    const char* name;
    std::function<void()> arrange;
    std::vector<std::string> afterHead;
  } rows[] = {
      {"unknown locale",
       [&] { ports.recognizer->known = false; },
       {"error: Speech recognizer not available"}},
      {"recogniser busy",
       [&] { ports.recognizer->known = true, ports.recognizer->available = false; },
       {"error: Speech recognizer not available"}},
      {"session refuses",
       [&] { ports.recognizer->available = true, ports.session->refusal = no; },
       {"session: listen 10", "error: no", "recording off", "no audio"}},
      {"no microphone",
       [&] { ports.session->refusal.reset(), ports.microphone->format.channels = 0; },
       {"session: listen 10", "session: on", "🎙️ audio session active dt=0",
        "error: No mic input"}},
      {"no file",
       [&] { ports.microphone->format.channels = 1, ports.files->createFailure = no; },
       {"session: listen 10", "session: on", "🎙️ audio session active dt=0", "error: no",
        "session: off", "recording off", "no audio"}},
      {"microphone fails",
       [&] { ports.files->createFailure.reset(), ports.microphone->startFailure = no; },
       {"session: listen 10", "session: on", "🎙️ audio session active dt=0",
        "task: partial results", "tap on 1024", "error: no", "tap off", "task: end of audio",
        "task: finish", "file flushed", "session: off", "recording off", "audio 0"}},
  };
  for (const auto& row : rows) {
    settle();
    row.arrange();
    engine_->start();
    auto lines = whatHappened();
    const auto head = std::ranges::find(lines, "no audio");
    ASSERT_NE(head, lines.end()) << row.name;
    lines.erase(lines.begin(), head + 1);
    EXPECT_THAT(lines, ElementsAreArray(row.afterHead)) << row.name;
    EXPECT_EQ(lab_.recordingsLeft(), 0U) << row.name;
  }
}

TEST_F(SpeechEngine, EndsACaptureWhenNobodySpeaks) {
  begin();
  pass(Seconds{4.9});
  EXPECT_THAT(whatHappened(), IsEmpty());
  lab_.standIns.microphone->play(kVoice);
  pass(Seconds{0.4});
  EXPECT_THAT(whatHappened(), ElementsAre("error: No speech detected", "microphone off", "tap off",
                                          "task: end of audio", "task: finish", "file flushed",
                                          "session: off", "recording off", "audio 4096"));
}

TEST_F(SpeechEngine, EndsACaptureOnSilence) {
  begin();
  lab_.standIns.recognizer->say(heard("open", {}));
  pass(Seconds{1.1});
  lab_.standIns.microphone->play(kVoice);  // keeps the capture open without new text
  pass(Seconds{1.0});
  lab_.standIns.recognizer->say(heard("open my", {}));  // and so does new text
  lab_.standIns.microphone->play(kQuiet);
  lab_.standIns.recognizer->say(heard(" ", {}));  // but neither quiet nor blanks do
  EXPECT_THAT(whatHappened(), ElementsAre("partial 'open'", "partial 'open my'", "partial ' '"));
  pass(Seconds{1.1});
  EXPECT_THAT(whatHappened(), IsEmpty());
  pass(Seconds{0.25});
  EXPECT_THAT(whatHappened(), Contains("🎙️ auto-stop (silence=1.30s)"));
  EXPECT_EQ(engine_->bestTranscript(" \n"), "open my");
  EXPECT_EQ(engine_->bestTranscript(" hi "), "hi");
}

TEST_F(SpeechEngine, CutsAnEndlessSpeakerShort) {
  begin();
  lab_.standIns.recognizer->say(heard("and", {}));
  for (int i = 0; i < 11; ++i) {
    lab_.standIns.microphone->play(kVoice);
    pass(Seconds{0.7});
  }
  EXPECT_THAT(whatHappened(), ElementsAre("partial 'and'"));
  lab_.standIns.microphone->play(kVoice);
  pass(Seconds{0.7});
  EXPECT_THAT(whatHappened(), Contains("🎙️ auto-stop (maxListen reached)"));
}

TEST_F(SpeechEngine, EndsWithTheFinalResultOrAnError) {
  const struct {
    const char* name;
    std::function<void()> happen;
    std::vector<std::string> told;
    bool ends;
  } rows[] = {
      {"final result",
       [&] { lab_.standIns.recognizer->say(heard("cart", {1}, true)); },
       {"partial 'cart'", "final 'cart'"},
       true},
      {"recogniser's error",
       [&] { lab_.standIns.recognizer->fail(Error("T", 1, "out of order")); },
       {"error: out of order"},
       true},
      {"cancellation",
       [&] { lab_.standIns.recognizer->fail(Error("T", 1, "task CANCELLED")); },
       {},
       false},
      {"vanished microphone",
       [&] { lab_.standIns.microphone->vanish(Error("T", 1, "unplugged")); },
       {"error: unplugged"},
       true},
  };
  for (const auto& row : rows) {
    begin();
    row.happen();
    auto lines = whatHappened();
    const bool ended = std::ranges::find(lines, "recording off") != lines.end();
    EXPECT_EQ(ended, row.ends) << row.name;
    lines.resize(std::min(lines.size(), row.told.size()));
    EXPECT_EQ(lines, row.told) << row.name;
    engine_->stop();
    static_cast<void>(whatHappened());
  }
}

TEST_F(SpeechEngine, AveragesTheConfidencesOfTheLastResult) {
  begin();
  EXPECT_EQ(engine_->getLastAverageConfidence(), std::nullopt);
  lab_.standIns.recognizer->say(heard("open it", {0.5, 1.0}));
  EXPECT_EQ(engine_->getLastAverageConfidence(), 0.75);
  lab_.standIns.recognizer->say(heard("open it", {}));
  EXPECT_EQ(engine_->getLastAverageConfidence(), std::nullopt);
  lab_.standIns.recognizer->say(heard("open it", {1.0}));
  engine_->stop();
  EXPECT_EQ(engine_->getLastAverageConfidence(), std::nullopt) << "the end clears it";
}

TEST_F(SpeechEngine, IgnoresASecondStartAndAnIdleStop) {
  engine_->stop();
  EXPECT_THAT(whatHappened(), IsEmpty());
  begin();
  engine_->start();
  EXPECT_THAT(whatHappened(), IsEmpty());
}

TEST_F(SpeechEngine, ResetReportsTheEndAndForgetsTheText) {
  begin();
  lab_.standIns.recognizer->say(heard("cart", {}));
  engine_->stop();
  static_cast<void>(whatHappened());
  engine_->reset();
  EXPECT_THAT(whatHappened(), ElementsAre("recording off", "no audio"));
  EXPECT_EQ(engine_->bestTranscript(""), "");
}

TEST_F(SpeechEngine, LeftoversOfACaptureDoNotTouchTheNext) {
  begin();
  lab_.standIns.recognizer->lateResult = heard("late", {0.9}, true);
  engine_->stop();
  engine_->start();
  settle();
  lab_.standIns.recognizer->lateResult.reset();
  EXPECT_THAT(whatHappened(), Contains("recording on"));
  pass(Seconds{2});
  EXPECT_THAT(whatHappened(), IsEmpty()) << "neither stopped nor ended by another's result";
}

TEST_F(SpeechEngine, GoesOnWithoutARecordingThatCannotBeWritten) {
  lab_.standIns.files->writeFailure = Error("Test", 28, "disk full");
  begin();
  lab_.standIns.microphone->play(kVoice);
  lab_.standIns.recognizer->say(heard("cart", {}));
  engine_->stop();
  EXPECT_THAT(whatHappened(), Contains("audio 0"));
  EXPECT_EQ(engine_->bestTranscript(""), "cart");
}

TEST_F(SpeechEngine, ReleasedInMidCaptureItLetsGoOfEverything) {
  begin();
  lab_.standIns.microphone->play(kVoice);
  lab_.standIns.recognizer->lateResult = heard("late", {0.9}, true);
  engine_.reset();
  lab_.standIns.microphone->play(kVoice);
  const SerialQueue barrier("barrier", lab_.pool.executor());
  std::vector<std::string> lines;
  while (std::ranges::find(lines, "session: off") == lines.end())
    for (auto& line : barrier.wait([&] { return lab_.standIns.journal->take(); }))
      lines.push_back(std::move(line));
  EXPECT_THAT(lines, ElementsAre("microphone off", "tap off", "session: off"));
  while (lab_.recordingsLeft() != 0) barrier.wait([] {});
}

TEST(AbandonedRecordings, AreSweptByNameAndAgeOrWhenThePlatformSaysSo) {
  const std::string uuid = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";
  testing::SpeechLab lab;
  const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::seconds(61);
  const auto abandoned = lab.folder.write("zelvora-0" + uuid.substr(1) + ".caf", "x");
  const auto stale = lab.folder.write("zelvora-" + uuid + ".caf", "x");
  const auto running = lab.folder.write("zelvora-1" + uuid.substr(1) + ".caf", "x");
  const auto foreign = lab.folder.write("zelvora-notes.caf", "x");
  std::filesystem::last_write_time(stale, old);
  std::filesystem::last_write_time(foreign, old);
  lab.standIns.files->abandoned = abandoned;

  ZelvoraSpeechEngine engine("en-US", lab.engineParts());
  static_cast<void>(engine.getLastAverageConfidence());
  EXPECT_FALSE(exists(abandoned));
  EXPECT_FALSE(exists(stale));
  EXPECT_TRUE(exists(running)) << "another process is at it";
  EXPECT_TRUE(exists(foreign)) << "not ours";
}

}  // namespace
}  // namespace zelvora

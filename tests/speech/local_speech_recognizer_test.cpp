#include <ZelvoraSDK/speech/local_speech_recognizer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/use_future.hpp>

#include <ZelvoraSDK/speech/voice_speaker.h>
#include <tests/speech/engine_fixture.h>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using testing::heard;

const std::vector<float> kBuffer(1024, 0.5F);

class LocalSpeechRecognizer : public ::testing::Test {
 protected:
  /// Lets the engine finish its queue, then runs what it posted to the main executor.
  void settle() {
    static_cast<void>(recognizer_->engine().getLastAverageConfidence());
    main_.restart();
    main_.poll();
  }
  template <class Value>
  std::future<Value> begin(asio::awaitable<Value> task) {
    auto value = asio::co_spawn(main_, std::move(task), asio::use_future);
    main_.restart();
    main_.poll();
    return value;
  }
  void authorize() { begin(recognizer_->requestPermissions()).get(); }
  void record() {
    recognizer_->start();
    settle();
    ASSERT_TRUE(recognizer_->isRecording());
    lab_.standIns.microphone->play(kBuffer);
  }

  testing::SpeechLab lab_;
  asio::io_context main_{1};
  std::shared_ptr<ZelvoraLocalSpeechRecognizer> recognizer_ = ZelvoraLocalSpeechRecognizer::make(
      "en-US", {.main = main_.get_executor(), .engine = lab_.engineParts()});
};

TEST_F(LocalSpeechRecognizer, AsksForSpeechThenForTheMicrophone) {
  using Status = Permissions::SpeechStatus;
  const struct {
    const char* name;
    Status speech;
    bool microphone;
    std::vector<std::string> asked;
    bool authorized;
    std::optional<std::string> message;
  } rows[] = {
      {"nothing granted",
       Status::denied,
       false,
       {"speech"},
       false,
       "Speech permission not granted"},
      {"restricted", Status::restricted, true, {"speech"}, false, "Speech permission not granted"},
      {"no microphone",
       Status::authorized,
       false,
       {"speech", "microphone"},
       false,
       "Microphone permission not granted"},
      {"all granted", Status::authorized, true, {"speech", "microphone"}, true, std::nullopt},
      {"taken back",
       Status::notDetermined,
       true,
       {"speech"},
       false,
       "Speech permission not granted"},
  };
  for (const auto& row : rows) {
    const auto before = lab_.standIns.permissions->asked().size();
    lab_.standIns.permissions->speech = row.speech;
    lab_.standIns.permissions->microphone = row.microphone;
    recognizer_->reset();
    authorize();
    auto asked = lab_.standIns.permissions->asked();
    asked.erase(asked.begin(), asked.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(asked, row.asked) << row.name;
    EXPECT_EQ(recognizer_->isAuthorized(), row.authorized) << row.name;
    EXPECT_EQ(recognizer_->errorMessage(), row.message) << row.name;
  }
}

TEST_F(LocalSpeechRecognizer, DoesNotListenWithoutPermission) {
  settle();
  recognizer_->start();
  settle();
  EXPECT_EQ(recognizer_->errorMessage(), "Permissions not granted");
  EXPECT_THAT(lab_.standIns.journal->take(), ElementsAre());
}

TEST_F(LocalSpeechRecognizer, ShowsWhatTheEngineHears) {
  authorize();
  record();
  lab_.standIns.recognizer->say(heard("open my cart ", {0.5}));
  settle();
  EXPECT_EQ(recognizer_->transcript(), "open my cart ");
  lab_.standIns.recognizer->say(heard("  ", {}));
  settle();
  EXPECT_EQ(recognizer_->transcript(), "  ");
  EXPECT_EQ(recognizer_->bestTranscript(), "open my cart") << "blanks do not hide what was heard";
  lab_.standIns.recognizer->fail(Error("Test", 1, "out of order"));
  settle();
  EXPECT_EQ(recognizer_->transcript(), "open my cart ") << "an error brings it back";
  EXPECT_EQ(recognizer_->errorMessage(), "out of order");
  settle();
  EXPECT_FALSE(recognizer_->isRecording());

  recognizer_->reset();
  settle();
  EXPECT_EQ(recognizer_->bestTranscript(), "");
  EXPECT_EQ(recognizer_->errorMessage(), std::nullopt);
  EXPECT_EQ(recognizer_->takeRecordedAudioData(), std::nullopt);
}

TEST_F(LocalSpeechRecognizer, ReadsTheConfidenceOfAFinalResultThatComesWithTheEnd) {
  authorize();
  record();
  lab_.standIns.recognizer->lateResult = heard("open my cart", {0.9}, true);
  recognizer_->stop();
  auto audio = begin(recognizer_->waitForAudioData(Seconds{60}));
  settle();
  settle();
  ASSERT_TRUE(audio.get().has_value());
  EXPECT_EQ(recognizer_->bestTranscript(), "open my cart");
  EXPECT_EQ(recognizer_->bestTranscriptConfidence(), 0.9);
}

TEST_F(LocalSpeechRecognizer, HandsTheRecordingToEveryWaiterAndOnceToATaker) {
  authorize();
  record();
  auto first = begin(recognizer_->waitForAudioData(Seconds{60}));
  auto second = begin(recognizer_->waitForAudioData(Seconds{60}));
  auto notYetAwaited = recognizer_->waitForAudioData(Seconds{60});
  recognizer_->stop();
  settle();
  settle();
  EXPECT_EQ(first.get().value().size(), 4096U);
  EXPECT_EQ(second.get().value().size(), 4096U);
  EXPECT_EQ(begin(std::move(notYetAwaited)).get().value().size(), 4096U);
  EXPECT_EQ(recognizer_->takeRecordedAudioData().value().size(), 4096U);
  EXPECT_EQ(recognizer_->takeRecordedAudioData(), std::nullopt);
}

TEST_F(LocalSpeechRecognizer, ForgetsACaptureThatIsResetWhileItRuns) {
  authorize();
  record();
  lab_.standIns.recognizer->say(heard("open", {}));
  lab_.standIns.recognizer->lateResult = heard("open my cart", {0.9}, true);
  recognizer_->reset();
  settle();
  settle();
  EXPECT_EQ(recognizer_->transcript(), "");
  EXPECT_EQ(recognizer_->bestTranscript(), "");
  EXPECT_EQ(recognizer_->bestTranscriptConfidence(), std::nullopt);
  EXPECT_EQ(begin(recognizer_->endCapture(Seconds{60})).get(), std::nullopt);
}

TEST_F(LocalSpeechRecognizer, HandsOverOneOutcomeForEachCapture) {
  authorize();
  record();
  lab_.standIns.recognizer->lateResult = heard("open my cart", {0.9}, true);
  auto outcome = begin(recognizer_->endCapture(Seconds{60}));
  settle();
  settle();
  const auto first = outcome.get();
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first->transcript, "open my cart");
  EXPECT_EQ(first->confidence, 0.9);
  EXPECT_EQ(first->recording.value().size(), 4096U);
  EXPECT_EQ(first->end.kind, CaptureEnd::Kind::stopped);
  EXPECT_EQ(begin(recognizer_->endCapture(Seconds{60})).get(), std::nullopt) << "only once";

  lab_.standIns.recognizer->lateResult.reset();
  recognizer_->start();
  settle();
  lab_.standIns.microphone->vanish(Error("Test", 1, "unplugged"));
  settle();
  settle();
  const auto second = begin(recognizer_->endCapture(Seconds{60})).get();
  ASSERT_TRUE(second.has_value()) << "a capture that ended on its own is there at once";
  EXPECT_EQ(second->transcript, "") << "nothing of the first one";
  EXPECT_EQ(second->recording, std::nullopt) << "not a single frame";
  EXPECT_EQ(second->end, (CaptureEnd{CaptureEnd::Kind::interrupted, "unplugged"}));
  EXPECT_GT(second->number, first->number);
}

TEST_F(LocalSpeechRecognizer, GivesUpWaitingForTheRecording) {
  auto nothing =
      asio::co_spawn(main_, recognizer_->waitForAudioData(Seconds{0.01}), asio::use_future);
  recognizer_.reset();  // the wait does not need the recogniser any more
  main_.run();
  EXPECT_EQ(nothing.get(), std::nullopt);
}

TEST_F(LocalSpeechRecognizer, NotifiesEveryAssignment) {
  authorize();
  settle();
  std::vector<bool> recording;
  auto subscription =
      recognizer_->changes().subscribe([&] { recording.push_back(recognizer_->isRecording()); });
  recognizer_->start();
  settle();
  EXPECT_THAT(recording, ElementsAre(false, false, true)) << "message, end of the last, begin";
  subscription = {};
  recognizer_->stop();
  settle();
  EXPECT_EQ(recording.size(), 3U);
}

TEST(VoiceSpeaker, InterruptsItselfAndSaysNothingForBlanks) {
  testing::SpeechStandIns standIns;
  VoiceSpeaker speaker(*standIns.synthesizers);
  std::vector<bool> ends;
  speaker.speak("  Navigating to: Cart\n", "en-US", [&](bool said) { ends.push_back(said); });
  speaker.speak(" \n", "en-US", [&](bool said) { ends.push_back(said); });
  speaker.speak("Checkout", "xx");
  EXPECT_THAT(standIns.journal->take(), ElementsAre("silence", "say en-US 'Navigating to: Cart'",
                                                    "silence", "say xx 'Checkout'"));
  EXPECT_THAT(ends, ElementsAre(true, false));
}

}  // namespace
}  // namespace zelvora

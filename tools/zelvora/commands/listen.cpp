#include <unistd.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <cmath>
#include <csignal>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <ZelvoraSDK/adapters/host.h>
#include <ZelvoraSDK/facade/voice_command.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/audio.h>

#include "../application.h"
#include "../commands.h"
#include "../result_output.h"

namespace zelvora::tool {
namespace {

namespace fs = std::filesystem;

struct ListenOptions {
  CommonOptions common;
  std::optional<fs::path> audio;
  std::optional<fs::path> saveAudio;
  std::optional<fs::path> model;
  std::optional<std::string> recogniser;
};

/// The result of one spoken command.
struct Heard {
  VoiceCommand::Outcome command;
  ZelvoraResult result;
  std::optional<AudioData> recording;
};

/// `level`, 1 for full scale, as a bar of `width` characters. At 60 dB below full scale and less
/// the bar is empty.
std::string levelBar(float level, int width) {
  constexpr double kSoftest = -60;
  const double decibels = level > 0 ? 20 * std::log10(static_cast<double>(level)) : kSoftest;
  const double share = std::clamp(1 - decibels / kSoftest, 0.0, 1.0);
  const auto filled = static_cast<int>(std::lround(share * width));
  std::string bar;
  for (int i = 0; i < width; ++i) bar += i < filled ? "▮" : "▯";
  return bar;
}

/// One line on standard error that shows what is going on while someone speaks: the state, how loud
/// it is and the text so far. Nothing where standard error is no terminal.
class LiveLine {
 public:
  LiveLine() = default;
  ~LiveLine() {
    if (isOnTerminal_) printRaw("\r\033[K");
  }
  LiveLine(const LiveLine&) = delete;
  LiveLine& operator=(const LiveLine&) = delete;

  void showLevel(float level) {
    level_ = level;
    draw();
  }
  void showState(VoiceCommand::Phase phase, const std::string& text) {
    if (phase == VoiceCommand::Phase::listening) {
      state_ = "listening";
      text_ = text;
    }
    if (phase == VoiceCommand::Phase::processing) {
      state_ = "thinking";
      level_ = 0;
    }
    draw();
  }

 private:
  void draw() const {
    if (!isOnTerminal_) return;
    const Style style = Style::forDescriptor(STDERR_FILENO);
    printRaw("\r\033[K" + style.notice(state_ + "…") + " " + style.good(levelBar(level_, 12)) +
             " " + style.errorText(text_));
  }

  bool isOnTerminal_ = errorsGoToTerminal();
  std::string state_ = "starting";
  std::string text_;
  float level_ = 0;
};

/// Callbacks during a spoken command, on the application's main loop; any may be unset.
struct ListeningObserver {
  std::function<void(ZelvoraAuditEvent)> onAuditEvent;
  std::function<void(float level)> onLevel;
  /// How far the command is, and the text so far.
  std::function<void(VoiceCommand::Phase phase, const std::string& text)> onChange;
  std::function<void(const std::string& problem)> onProblem;
};

/// One spoken command. An interrupt from the keyboard means that the speaker is done; a second one
/// ends the program.
class Listening {
 public:
  Listening(Application& application, const ListeningObserver& observer)
      : application_(application),
        observer_(observer),
        interrupts_(application.loop().executor(), SIGINT, SIGTERM) {}

  Heard run() {
    if (observer_.onLevel) showLevels();
    application_.facade().onAuditEvent = observer_.onAuditEvent;
    command_.emplace(application_.facade());
    interrupts_.async_wait([this](const boost::system::error_code& error, int) {
      if (error) return;
      interrupts_.clear();
      command_->stop();
    });
    const auto watching = command_->changes().subscribe([this] { look(); });
    command_->tap();
    application_.loop().run();
    return std::move(heard_);
  }

 private:
  void showLevels() {
    auto& engines = application_.speech().audioEngines;
    engines = std::make_shared<MeteredAudioEngineFactory>(
        engines, [main = application_.loop().executor(), show = observer_.onLevel](float level) {
          asio::post(main, [show, level] { show(level); });
        });
  }

  void look() {
    if (observer_.onChange) observer_.onChange(command_->phase(), command_->partialText());
    if (command_->phase() != VoiceCommand::Phase::idle || !command_->lastOutcome()) return;
    heard_.command = *command_->lastOutcome();
    if (!heard_.command.problem.empty() && observer_.onProblem)
      observer_.onProblem(heard_.command.problem);
    if (heard_.command.result) return end(*heard_.command.result);
    // There is an outcome even without a capture.
    application_.facade().onResult = [this](ZelvoraResult result) { end(std::move(result)); };
    application_.facade().stopVoice();
  }

  void end(ZelvoraResult result) {
    heard_.result = std::move(result);
    heard_.recording = application_.facade().lastRecordedAudio();
    // After the audit events that are still queued.
    asio::post(application_.loop().executor(), [this] { application_.loop().stop(); });
  }

  Application& application_;
  const ListeningObserver& observer_;
  asio::signal_set interrupts_;
  std::optional<VoiceCommand> command_;
  Heard heard_;
};

struct AuditWriter {
  JsonWriter& out;

  void operator()(const LocalSTTUsed& event) const {
    out.member("case", "localSTTUsed");
    out.member("transcriptLength", event.transcriptLength);
  }
  void operator()(const CloudSTTRequested& event) const {
    out.member("case", "cloudSTTRequested");
    out.member("audioBytes", event.audioBytes);
  }
  void operator()(const CloudSTTUsed& event) const {
    out.member("case", "cloudSTTUsed");
    out.member("transcriptLength", event.transcriptLength);
  }
  void operator()(const CloudSTTFailed& event) const {
    out.member("case", "cloudSTTFailed");
    out.member("message", event.message);
  }
};

/// `{"auditEvent":{"case":…}}` on one line, without a line end.
std::string auditEventLine(const ZelvoraAuditEvent& event) {
  return jsonObject([&](JsonWriter& out) {
    out.key("auditEvent");
    out.object([&](JsonWriter& fields) { std::visit(AuditWriter{fields}, event); });
  });
}

ListeningObserver observerFor(const ListenOptions& options, const std::string& locale,
                              LiveLine& live, Output& out) {
  ListeningObserver observer{
      .onLevel = [&](float level) { live.showLevel(level); },
      .onChange = [&](VoiceCommand::Phase phase,
                      const std::string& text) { live.showState(phase, text); },
      .onProblem =
          [locale](const std::string& message) {
            const bool isAboutLocale = message == "Speech recognizer not available";
            complain(message + (isAboutLocale ? " for the locale " + locale : ""));
          }};
  if (options.common.json)
    observer.onAuditEvent = [&out](const ZelvoraAuditEvent& event) {
      out.jsonLine(auditEventLine(event));
    };
  return observer;
}

/// The text that was routed, or that was too unclear for that.
std::string friendlyTranscript(const Heard& heard, const Style& style) {
  const VoiceCommand::Outcome& command = heard.command;
  if (!command.transcript.empty()) return style.strong(command.transcript);
  if (command.heard.empty()) return style.faint("(nothing)");
  return style.faint(command.heard + " (not routed; confidence " +
                     fixed2(command.confidence.value_or(0)) + ")");
}

void print(const Heard& heard, bool json, Output& out) {
  if (json) {
    std::optional<std::string> routed;
    if (!heard.command.transcript.empty()) routed = heard.command.transcript;
    return out.jsonLine(routedLine(routed, heard.result));
  }
  const Style style = Style::forOutput();
  out.write(friendlyTranscript(heard, style) + "\n  " + friendlyResult(heard.result, style));
  out.flush();
}

/// Refuses to overwrite a file that the call reads, even under another name.
void checkFiles(const ListenOptions& options, const fs::path& spec) {
  if (options.audio == fs::path("-"))
    throw UsageError("--audio: standard input can't be heard; name a file");
  if (!options.saveAudio) return;
  for (const auto& read : {options.audio, std::optional(spec)}) {
    std::error_code notThere;
    if (read && fs::equivalent(*read, *options.saveAudio, notThere))
      throw UsageError("--save-audio: " + options.saveAudio->string() +
                       " is being read, and is not overwritten");
  }
}

void save(const std::optional<AudioData>& recording, const fs::path& path) {
  if (!recording) throw UsageError(path.string() + ": nothing was recorded");
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(recording->data()),
             static_cast<std::streamsize>(recording->size()));
  if (!file.flush()) throw UsageError(path.string() + ": the recording could not be written");
}

int runListen(const ListenOptions& options, Output& out) {
  Application application(options.common);
  checkFiles(options, application.specFile());
  application.enableSpeech({.soundFile = options.audio,
                            .model = options.model,
                            .modelAlone = options.recogniser == "model"});
  Heard heard;
  {
    LiveLine live;
    const ListeningObserver observer =
        observerFor(options, application.settings().locale, live, out);
    heard = Listening(application, observer).run();
  }
  print(heard, options.common.json, out);
  if (options.saveAudio) save(heard.recording, *options.saveAudio);
  return kAnswered;
}

std::string namesOf(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
  return all.empty() ? "none" : all;
}

}  // namespace

Command listenCommand() {
  const auto options = std::make_shared<ListenOptions>();
  Command command{
      .name = "listen",
      .summary = "hear one spoken command and route it",
      .about =
          "Hears one spoken command, routes it and prints its outcome. The capture ends by itself "
          "after a silence; Ctrl-C ends it at once, and a second Ctrl-C ends the tool. On a "
          "terminal, standard error shows the state, how loud it is and the text so far. A locale "
          "without a recogniser and a missing microphone are reported in one line on standard "
          "error, beside the outcome.",
      .ofThisBuild = "This build has these recognisers: " + namesOf(hostRecognizers()) + ".",
  };
  command.options = {
      {.name = "--audio",
       .value = "FILE",
       .meaning = "a sound file of any format that libsndfile reads, heard in real time",
       .otherwise = "the microphone",
       .take = into(options->audio),
       .completes = Completes::files},
      {.name = "--save-audio",
       .value = "FILE",
       .meaning = "where to keep what was recorded, in Core Audio Format; never a file being read",
       .otherwise = "nowhere",
       .take = into(options->saveAudio),
       .completes = Completes::files},
      {.name = "--model",
       .value = "DIR",
       .meaning = "a folder with a streaming transducer for sherpa-onnx, to hear with",
       .otherwise = "none",
       .take = into(options->model),
       .completes = Completes::files},
      choiceOption("--recogniser", "KIND", {"both", "model"},
                   "with --model, what hears: `both` the system's recogniser and the model, or the "
                   "`model` alone",
                   "`both`", into(options->recogniser)),
      choiceOption("--stt-mode", "MODE", {"localOnly", "hybrid", "cloudOnly", "disabled"},
                   "who recognises speech: `localOnly`, `hybrid`, `cloudOnly` or `disabled`",
                   "the bundle's, else `localOnly`", into(options->common.sttMode))};
  addCommonOptions(command, options->common);
  command.run = [options](Output& out) { return runListen(*options, out); };
  return command;
}

}  // namespace zelvora::tool

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>

#include "../application.h"
#include "../audit_output.h"
#include "../commands.h"
#include "../listening.h"
#include "../live_line.h"
#include "../result_output.h"
#include "../usage_error.h"

namespace zelvora::tool {
namespace {

struct ListenOptions {
  CommonOptions common;
  std::optional<std::filesystem::path> audio;
  std::optional<std::filesystem::path> saveAudio;
};

ListeningObserver observerFor(const ListenOptions& options, LiveLine& live) {
  ListeningObserver observer{
      .onLevel = [&](float level) { live.showLevel(level); },
      .onChange = [&](bool isRecording,
                      const std::string& text) { live.showState(isRecording, text); },
      .onError =
          [&](const std::string& message) {
            live.clear();
            std::cerr << "zelvora: " + message + "\n";
          }};
  if (options.common.json)
    observer.onAuditEvent = [](const ZelvoraAuditEvent& event) {
      std::cout << auditEventLine(event) << std::endl;
    };
  return observer;
}

/// What was routed, or what was understood too badly to be.
std::string friendlyTranscript(const Heard& heard, const Style& style) {
  if (heard.transcript) return style.strong(*heard.transcript);
  if (heard.deviceTranscript.empty()) return style.faint("(nothing)");
  return style.faint(heard.deviceTranscript + " (not routed; confidence " +
                     fixed2(heard.deviceConfidence.value_or(0)) + ")");
}

void print(const Heard& heard, bool json) {
  const Style style = Style::forDescriptor(STDOUT_FILENO);
  if (json)
    std::cout << routedLine(heard.transcript, heard.result) << std::endl;
  else
    std::cout << friendlyTranscript(heard, style) << "\n  " << friendlyResult(heard.result, style)
              << std::flush;
}

void save(const std::optional<AudioData>& recording, const std::filesystem::path& path) {
  if (!recording) throw UsageError(path.string() + ": nothing was recorded");
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(recording->data()),
             static_cast<std::streamsize>(recording->size()));
  if (!file.flush()) throw UsageError(path.string() + ": the recording could not be written");
}

int runListen(const ListenOptions& options) {
  Application application(options.common);
  application.enableSpeech(options.audio);
  Heard heard;
  {
    LiveLine live;
    heard = listen(application, observerFor(options, live));
  }
  print(heard, options.common.json);
  if (options.saveAudio) save(heard.recording, *options.saveAudio);
  return kAnswered;
}

}  // namespace

void addListenCommand(CLI::App& tool, Run& run) {
  auto options = std::make_shared<ListenOptions>();
  CLI::App* command = tool.add_subcommand("listen", "Hear one spoken command and route it");
  addCommonOptions(*command, options->common);
  command->add_option("--audio", options->audio, "A sound file, heard instead of the microphone")
      ->type_name("FILE");
  command->add_option("--save-audio", options->saveAudio, "Where to keep what was recorded")
      ->type_name("FILE");
  command->add_option("--stt-mode", options->common.sttMode, "Who recognises speech")
      ->type_name("MODE")
      ->check(CLI::IsMember({"localOnly", "hybrid", "cloudOnly", "disabled"}));
  command->callback([options, &run] { run = [options] { return runListen(*options); }; });
}

}  // namespace zelvora::tool

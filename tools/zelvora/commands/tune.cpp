#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/workbench/lint.h>

#include "../application.h"
#include "../commands.h"
#include "../evaluation/output_file.h"
#include "../evaluation/progress.h"
#include "../evaluation/tuning.h"

namespace zelvora::tool {
namespace {

struct TuneOptions {
  CommonOptions common;
  std::vector<std::string> files;
  TuningLimits limits;
  std::optional<std::filesystem::path> write;
  int threads = 0;  ///< 0: one per core.
};

using Thresholds = RuntimeSpec::Thresholds;

/// What tuning found.
struct Tuning {
  bool isMet = false;
  Thresholds before;
  Thresholds after;  ///< Today's when no choice meets the limits.
  Evaluation reportBefore;
  Evaluation reportAfter;
};

Tuning tune(const std::vector<LabelledUtterance>& utterances, const PreparedSpec& spec,
            const TuneOptions& options) {
  const Rescoring rescoring(utterances, spec);
  const Halves halves = halvesOf(utterances);
  const unsigned threads = options.threads > 0 ? static_cast<unsigned>(options.threads)
                                               : std::max(1u, std::thread::hardware_concurrency());
  Tuning tuning{.before = spec.thresholds(), .after = spec.thresholds()};
  ProgressBar bar("tuning");
  if (const auto best = tuned(rescoring, halves.odd, tuning.before, options.limits, threads,
                              [&](double share) { bar.show(share); })) {
    tuning.isMet = true;
    tuning.after = *best;
  }
  tuning.reportBefore = rescoring.evaluate(halves.even, tuning.before);
  tuning.reportAfter = rescoring.evaluate(halves.even, tuning.after);
  return tuning;
}

std::vector<SpecEdit> editsOf(const Tuning& tuning) {
  std::vector<SpecEdit> edits;
  const auto before = tunedThresholds(tuning.before);
  const auto after = tunedThresholds(tuning.after);
  for (std::size_t i = 0; i < before.size(); ++i)
    if (before[i].second != after[i].second)
      edits.push_back({SpecEdit::Kind::set, "routing.thresholds", after[i].first,
                       shortestDecimal(after[i].second)});
  return edits;
}

std::string jsonOf(const Tuning& tuning) {
  return jsonObject([&](JsonWriter& out) {
    out.member("met", tuning.isMet);
    out.key("thresholds");
    out.object([&](JsonWriter& thresholds) {
      for (const auto& [key, value] : tunedThresholds(tuning.after)) thresholds.member(key, value);
    });
    out.member("before", tuning.reportBefore);
    out.member("after", tuning.reportAfter);
  });
}

std::string figureLine(const char* what, std::size_t before, std::size_t after, std::size_t all) {
  const auto shown = [&](std::size_t count) {
    const double share = all == 0 ? 0 : static_cast<double>(count) / static_cast<double>(all);
    return padded(
        std::to_string(count) + " (" + shortestDecimal(std::round(share * 1000) / 10) + " %)", 16);
  };
  return "  " + padded(what, 28) + shown(before) + shown(after) + "\n";
}

std::string readable(const Tuning& tuning, const Style& style) {
  const Counts& before = tuning.reportBefore;
  const Counts& after = tuning.reportAfter;
  std::string text =
      style.strong(std::to_string(before.inScope) + " utterances in scope, " +
                   std::to_string(before.outOfScope) + " out of scope that chose nothing") +
      "\n  " + padded("", 28) + padded("before", 16) + "after\n";
  text += figureLine("right", before.right, after.right, before.inScope);
  text += figureLine("wrong", before.wrong, after.wrong, before.inScope);
  text += figureLine("choices with the right task", before.choicesWith, after.choicesWith,
                     before.inScope);
  text += figureLine("opened out of scope", before.outOfScopeOpened, after.outOfScopeOpened,
                     before.outOfScope);
  text += figureLine("choices out of scope", before.outOfScopeChoices, after.outOfScopeChoices,
                     before.outOfScope);
  const std::vector<SpecEdit> edits = editsOf(tuning);
  text += edits.empty() ? "nothing to change\n"
                        : style.strong("lines to change, in routing.thresholds") + "\n";
  for (const SpecEdit& edit : edits) text += "  \"" + edit.key + "\": " + edit.json + "\n";
  return text;
}

int runTune(const TuneOptions& options, Output& out) {
  const Application application(options.common);
  const PreparedSpec spec(application.spec());
  if (!spec.tasks()) throw UsageError("the spec has no task that could be opened");
  const LabelRules rules{.taskIds = Judge(spec).taskIds(), .locale = application.settings().locale};
  const std::vector<LabelledUtterance> utterances = readLabelled(options.files, rules);
  const Tuning tuning = tune(utterances, spec, options);
  if (options.write && tuning.isMet)
    writeOutputFile(*options.write,
                    withEdits(readInputFile(application.specFile()), editsOf(tuning)));
  if (options.common.json)
    out.jsonLine(jsonOf(tuning));
  else if (tuning.isMet)
    out.write(readable(tuning, Style::forOutput()));
  if (!tuning.isMet)
    printError("no choice of thresholds keeps wrong ones within " +
               shortestDecimal(options.limits.maxWrong) + " % and openings out of scope within " +
               shortestDecimal(options.limits.maxOpenedOutOfScope) + " %: nothing is changed");
  return tuning.isMet ? kAnswered : kAnswerIsNo;
}

Option percentOption(const char* name, const char* meaning, double& limit) {
  return {.name = name,
          .value = "P",
          .meaning = meaning,
          .otherwise = "5",
          .take = into(limit, 0, 100)};
}

}  // namespace

Command tuneCommand() {
  const auto options = std::make_shared<TuneOptions>();
  Command command{
      .name = "tune",
      .summary = "find the best thresholds for labelled utterances",
      .about =
          "Searches the five routing thresholds for the utterances of each FILE, in the format of "
          "`zelvora eval`. The odd utterances of each task and locale choose, the even ones "
          "report: the figures come from utterances that nobody looked at. Within the limits the "
          "most right ones win, then the most choices with the right task, the fewest choices out "
          "of scope, which never rise, and the smallest change.\n\nPrints both figures and the "
          "lines to change. When no choice meets the limits, nothing changes and the exit status "
          "is 1.",
      .operands = {
          .shown = "FILE…",
          .missing = "no file of utterances",
          .least = 1,
          .take = [options](std::vector<std::string> files) { options->files = std::move(files); },
          .completes = Completes::files}};
  addCommonOptions(command, options->common);
  command.options.push_back(
      percentOption("--max-wrong", "largest share of wrong ones, in per cent of those in scope",
                    options->limits.maxWrong));
  command.options.push_back(percentOption("--max-opened-out-of-scope",
                                          "largest share of those out of scope that open something",
                                          options->limits.maxOpenedOutOfScope));
  command.options.push_back({.name = "--write",
                             .value = "FILE",
                             .meaning = "write the spec with these numbers; every other byte stays",
                             .take = into(options->write),
                             .completes = Completes::files});
  command.options.push_back({.name = "--threads",
                             .value = "N",
                             .meaning = "how many threads search; the result is the same",
                             .otherwise = "one a core",
                             .take = into(options->threads, 1, 1024)});
  command.run = [options](Output& out) { return runTune(*options, out); };
  return command;
}

}  // namespace zelvora::tool

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/transcript_decision.h>

#include "../application.h"
#include "../commands.h"
#include "../evaluation/evaluation.h"
#include "../evaluation/labelled.h"
#include "../evaluation/output_file.h"
#include "../evaluation/progress.h"
#include "../evaluation/recordings.h"
#include "../evaluation/report.h"

namespace zelvora::tool {
namespace {

struct EvalOptions {
  CommonOptions common;
  std::vector<std::string> files;
  std::optional<double> minRight;
  std::optional<double> maxWrong;
  std::optional<double> maxOpenedOutOfScope;
  std::optional<std::filesystem::path> compare;
  std::optional<std::filesystem::path> html;
  int threads = 0;  ///< 0: one per core.
  bool audio = false;
};

/// One spec and its results.
struct Evaluated {
  std::vector<LabelledUtterance> utterances;  ///< As they were routed.
  std::optional<SpeechFigures> speech;        ///< Of recordings.
  std::vector<Judged> judged;
  Evaluation evaluation;
};

unsigned threadsFor(const EvalOptions& options) {
  return options.threads > 0 ? static_cast<unsigned>(options.threads)
                             : std::max(1u, std::thread::hardware_concurrency());
}

/// The backend's answer to what the device does not settle, from a façade of its own.
ZelvoraResult askBackend(Application& application, const std::string& text,
                         const std::string& locale) {
  ZelvoraSettings settings = application.settings();
  settings.locale = locale;
  Zelvora facade(application.platform(), settings, application.spec(), application.hooks());
  ZelvoraResult outcome;
  facade.onResult = [&](ZelvoraResult result) {
    outcome = std::move(result);
    application.loop().stop();
  };
  facade.routeAndCallback(text);
  application.loop().run();
  return outcome;
}

/// Replaces recordings by what was heard in them, or by nothing when it is not believed.
void hearRecordings(Evaluated& run, const StoredSpec& spec, const EvalOptions& options,
                    double minimumConfidence) {
#ifdef ZELVORA_SPEECH
  std::vector<HeardRecording> heard;
  {
    ProgressBar bar("listening");
    heard =
        hearAll(run.utterances, spec, threadsFor(options), [&](double share) { bar.show(share); });
  }
  run.speech = figuresOf(run.utterances, heard);
  for (std::size_t i = 0; i < heard.size(); ++i) {
    const auto decision =
        judgeLocal({.transcript = heard[i].transcript, .confidence = heard[i].confidence},
                   minimumConfidence, ZelvoraSTTMode::localOnly);
    const auto* use = std::get_if<UseTranscript>(&decision);
    LabelledUtterance& utterance = run.utterances[i];
    utterance.recording = std::exchange(utterance.text, use ? use->transcript : "");
  }
#else
  static_cast<void>(run);
  static_cast<void>(spec);
  static_cast<void>(options);
  static_cast<void>(minimumConfidence);
  throw UsageError("--audio: this build can't hear");
#endif
}

Evaluated evaluate(std::vector<LabelledUtterance> all, const StoredSpec& stored,
                   const EvalOptions& options, Application& application, bool asksBackend) {
  Evaluated run;
  run.utterances = std::move(all);
  if (options.audio)
    hearRecordings(run, stored, options, minimumLocalConfidence(*application.platform().bundle));
  const std::vector<LabelledUtterance>& utterances = run.utterances;
  const PreparedSpec spec(stored);
  std::vector<ZelvoraResult> results;
  {
    ProgressBar bar("evaluating");
    results =
        answerAll(utterances, spec, threadsFor(options), [&](double share) { bar.show(share); });
    if (asksBackend)
      for (std::size_t i = 0; i < results.size(); ++i) {
        bar.show(static_cast<double>(i) / static_cast<double>(results.size()));
        if (std::holds_alternative<ZelvoraUnsupported>(results[i]) && !utterances[i].text.empty())
          results[i] = askBackend(application, utterances[i].text, utterances[i].locale);
      }
  }
  const Judge judge(spec);
  for (std::size_t i = 0; i < results.size(); ++i)
    run.judged.push_back(judge.judge(utterances[i], results[i]));
  run.evaluation = count(utterances, run.judged, judge.taskIds());
  return run;
}

// The readable form.

std::string percent(double share) { return shortestDecimal(std::round(share * 1000) / 10) + " %"; }

std::string countLine(const char* what, std::size_t count, std::size_t all) {
  std::string line = "  " + padded(what, 28);
  std::string number = std::to_string(count);
  line += std::string(number.size() < 6 ? 6 - number.size() : 0, ' ') + number;
  if (all == 0) return line + "\n";
  const Share share = shareOf(count, all);
  return line + "  " + padded(percent(share.share), 8) + "(" + percent(share.low) + " to " +
         percent(share.high) + ")\n";
}

std::string summaryOf(const Counts& it, const Style& style) {
  std::string text = style.strong(std::to_string(it.inScope) + " utterances in scope") + "\n";
  text += countLine("right", it.right, it.inScope);
  text += countLine("wrong", it.wrong, it.inScope);
  text += countLine("choices with the right task", it.choicesWith, it.inScope);
  text += countLine("choices without it", it.choicesWithout, it.inScope);
  text += countLine("missed", it.missed, it.inScope);
  text += style.strong(std::to_string(it.outOfScope) + " out of scope") + "\n";
  text += countLine("opened something", it.outOfScopeOpened, it.outOfScope);
  text += countLine("choices", it.outOfScopeChoices, it.outOfScope);
  return text + countLine("nothing, as is right", it.outOfScopeMissed, it.outOfScope);
}

std::string speechOf(const std::optional<SpeechFigures>& it, const Style& style) {
  if (!it || it->references == 0) return {};
  std::string text =
      style.strong(std::to_string(it->references) + " recordings with a reference") + "\n";
  text += "  " + padded("word errors", 28) + "        " + percent(it->wordErrorRate()) + " of " +
          std::to_string(it->words) + " words\n";
  return text + countLine("word for word", it->exact, it->references);
}

std::string troubleOf(const Evaluation& it, const Style& style) {
  std::vector<Evaluation::Task> tasks;
  for (const Evaluation::Task& task : it.tasks)
    if (task.right < task.expected) tasks.push_back(task);
  std::ranges::stable_sort(tasks, std::ranges::greater{},
                           [](const Evaluation::Task& task) { return task.expected - task.right; });
  constexpr std::size_t kShown = 10;
  std::string text;
  if (!tasks.empty()) text += style.strong("tasks with most trouble") + "\n";
  for (std::size_t i = 0; i < std::min(tasks.size(), kShown); ++i)
    text += "  " + padded(style.text(tasks[i].id), 28) + " " + std::to_string(tasks[i].right) +
            " of " + std::to_string(tasks[i].expected) + " right, opened " +
            std::to_string(tasks[i].opened) + " times\n";
  if (!it.confusions.empty()) text += style.strong("taken for another") + "\n";
  for (std::size_t i = 0; i < std::min(it.confusions.size(), kShown); ++i)
    text += "  " + style.text(it.confusions[i].expected) + " opened " +
            style.text(it.confusions[i].opened) + " " + std::to_string(it.confusions[i].count) +
            (it.confusions[i].count == 1 ? " time\n" : " times\n");
  return text;
}

// Two specs.

/// Higher is better.
int worthOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::right:
    case Verdict::outOfScopeMissed: return 3;
    case Verdict::choicesWith:
    case Verdict::outOfScopeChoices: return 2;
    case Verdict::choicesWithout:
    case Verdict::missed: return 1;
    case Verdict::wrong:
    case Verdict::outOfScopeOpened: return 0;
  }
  return 0;
}

std::vector<std::size_t> changedIn(const Evaluated& before, const Evaluated& after) {
  std::vector<std::size_t> changed;
  for (std::size_t i = 0; i < before.judged.size(); ++i)
    if (before.judged[i].outcome != after.judged[i].outcome) changed.push_back(i);
  return changed;
}

std::string changesOf(const Evaluated& before, const Evaluated& after, const Style& style) {
  std::string better;
  std::string worse;
  std::string same;
  for (const std::size_t i : changedIn(before, after)) {
    const int change = worthOf(after.judged[i].verdict) - worthOf(before.judged[i].verdict);
    (change > 0   ? better
     : change < 0 ? worse
                  : same) += "  " + style.text(before.utterances[i].name()) + ": " +
                             style.text(before.judged[i].outcome) + " -> " +
                             style.text(after.judged[i].outcome) + "\n";
  }
  std::string text;
  if (!better.empty()) text += style.good("better") + "\n" + better;
  if (!worse.empty()) text += style.bad("worse") + "\n" + worse;
  if (!same.empty()) text += style.strong("changed, neither better nor worse") + "\n" + same;
  return text.empty() ? "nothing changed\n" : text;
}

void writeMembers(JsonWriter& out, const Evaluated& run) {
  writeMembers(out, run.evaluation);
  if (!run.speech) return;
  out.member("wordErrorRate", run.speech->wordErrorRate());
  out.member("exact", run.speech->exact);
}

std::string jsonOf(const Evaluated& run, const std::optional<Evaluated>& compared) {
  return jsonObject([&](JsonWriter& out) {
    writeMembers(out, run);
    if (!compared) return;
    out.key("compared");
    out.object([&](JsonWriter& members) { writeMembers(members, *compared); });
    out.key("changed");
    out.beginArray();
    for (const std::size_t i : changedIn(run, *compared))
      out.object([&](JsonWriter& change) {
        change.member("text", run.utterances[i].name());
        change.member("before", run.judged[i].outcome);
        change.member("after", compared->judged[i].outcome);
      });
    out.endArray();
  });
}

/// Whether the figures are within the limits; says which are not.
bool meetsLimits(const Counts& it, const EvalOptions& options) {
  bool isMet = true;
  const auto refuse = [&](const char* what, double share, const char* beyond, double limit) {
    isMet = false;
    printError(std::string(what) + ": " + percent(share) + ", " + beyond + " " +
               shortestDecimal(limit) + " %");
  };
  const double right = shareOf(it.right, it.inScope).share;
  const double wrong = shareOf(it.wrong, it.inScope).share;
  const double opened = shareOf(it.outOfScopeOpened, it.outOfScope).share;
  if (options.minRight && it.inScope > 0 && right * 100 < *options.minRight)
    refuse("right", right, "under", *options.minRight);
  if (options.maxWrong && wrong * 100 > *options.maxWrong)
    refuse("wrong", wrong, "over", *options.maxWrong);
  if (options.maxOpenedOutOfScope && opened * 100 > *options.maxOpenedOutOfScope)
    refuse("opened out of scope", opened, "over", *options.maxOpenedOutOfScope);
  return isMet;
}

int runEval(const EvalOptions& options, Output& out) {
  Application application(options.common);
  const PreparedSpec spec(application.spec());
  const LabelRules rules{.taskIds = Judge(spec).taskIds(),
                         .locale = application.settings().locale,
                         .areRecordings = options.audio};
  const std::vector<LabelledUtterance> utterances = readLabelled(options.files, rules);
  const Evaluated run = evaluate(utterances, application.spec(), options, application,
                                 options.common.baseURL.has_value());
  std::optional<Evaluated> compared;
  if (options.compare)
    compared = evaluate(utterances, specInFile(*options.compare), options, application, false);

  if (options.html)
    writeOutputFile(*options.html, htmlReport({.title = application.specFile().filename().string(),
                                               .utterances = run.utterances,
                                               .judged = run.judged,
                                               .evaluation = run.evaluation,
                                               .spec = spec,
                                               .speech = run.speech}));
  if (options.common.json) {
    out.jsonLine(jsonOf(run, compared));
  } else {
    const Style style = Style::forOutput();
    out.write(summaryOf(run.evaluation, style) + speechOf(run.speech, style) +
              troubleOf(run.evaluation, style));
    if (compared)
      out.write("\n" + style.strong("on " + style.text(options.compare->string())) + "\n" +
                summaryOf(compared->evaluation, style) + speechOf(compared->speech, style) +
                changesOf(run, *compared, style));
    out.flush();
  }
  return meetsLimits(run.evaluation, options) ? kAnswered : kAnswerIsNo;
}

Option limitOption(const char* name, const char* meaning, std::optional<double>& limit) {
  return {.name = name, .value = "P", .meaning = meaning, .take = into(limit, 0, 100)};
}

}  // namespace

Command evalCommand() {
  const auto options = std::make_shared<EvalOptions>();
  Command command{
      .name = "eval",
      .summary = "say how good a spec is for labelled utterances",
      .about =
          "Routes the utterances of each FILE and counts what comes of them, with 95 % intervals. "
          "FILE is UTF-8 text, a line an utterance: `UTTERANCE<TAB>EXPECTED[<TAB>LOCALE]`. "
          "EXPECTED is a task id, several joined by `|` (any of them is right), `?` before them "
          "(choices that contain all of them are right too), or `-` for an utterance out of "
          "scope. Blank lines and lines that begin with `# ` are skipped.\n\nWith `--audio` the "
          "utterance is the name of a sound file, relative to FILE, and a fourth column may hold "
          "what is said in it. What this system's recogniser hears is routed when it is sure "
          "enough of it, and missed otherwise; how many words it gets wrong is counted "
          "before that.\n\nEach utterance has "
          "a fresh memory and no learning. What the device does not settle is missed, or goes to "
          "the backend with `--base-url`. The exit status is 1 when a limit given is not met.",
      .operands = {
          .shown = "FILE…",
          .missing = "no file of utterances",
          .least = 1,
          .take = [options](std::vector<std::string> files) { options->files = std::move(files); },
          .completes = Completes::files}};
  addCommonOptions(command, options->common);
  command.options.push_back(limitOption("--min-right",
                                        "least share of right ones, in per cent of those in scope",
                                        options->minRight));
  command.options.push_back(
      limitOption("--max-wrong", "largest share of wrong ones, in per cent of those in scope",
                  options->maxWrong));
  command.options.push_back(limitOption("--max-opened-out-of-scope",
                                        "largest share of those out of scope that open something",
                                        options->maxOpenedOutOfScope));
  command.options.push_back({.name = "--compare",
                             .value = "SPEC",
                             .meaning = "the same on a second spec, and what changes",
                             .take = into(options->compare),
                             .completes = Completes::files});
  command.options.push_back({.name = "--html",
                             .value = "FILE",
                             .meaning = "write a report to read in a browser",
                             .take = into(options->html),
                             .completes = Completes::files});
  command.options.push_back({.name = "--audio",
                             .meaning = "the utterances are sound files, to be heard",
                             .take = into(options->audio)});
  command.options.push_back({.name = "--threads",
                             .value = "N",
                             .meaning = "how many threads work; the figures are the same",
                             .otherwise = "one a core",
                             .take = into(options->threads, 1, 1024)});
  command.run = [options](Output& out) { return runEval(*options, out); };
  return command;
}

}  // namespace zelvora::tool

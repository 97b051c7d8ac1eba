// Any utterance against any tasks: cleaned, expanded and routed, with the same results, scores and
// order as the literal router.
//
// The first byte sets the thresholds, the rest is lines: the utterance, then the tasks. A line that
// starts with '#' is a keyword of the current task, one with '>' an example, one with '=' a synonym
// of the whole app for the keyword before it; any other starts a task with that title.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/routing/context_engine.h>
#include <ZelvoraSDK/routing/local_router.h>
#include <ZelvoraSDK/routing/normalizer.h>
#include <tests/support/reference_router.h>

namespace zelvora {
namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

struct App {
  std::string utterance;
  std::vector<ZelvoraTaskSpec> tasks;
  std::vector<std::string> stopwords;
  RuntimeSpec::Context context;
  RuntimeSpec::Thresholds thresholds;
};

RuntimeSpec::Thresholds thresholdsOf(std::uint8_t bits) {
  return {.execute_min_score = bits & 1 ? 0.0 : 6.0,
          .execute_min_conf = bits & 2 ? 0.0 : 0.75,
          .choices_min_score = bits & 4 ? 0.0 : 3.0,
          .choices_min_conf = bits & 8 ? -1.0 : 0.45,
          .close_to_second_delta = bits & 16 ? 0.0 : 2.0,
          .max_choices = (bits >> 5) - 1};
}

void addLine(App& app, OrderedMap<std::vector<std::string>>& synonyms, std::string_view line) {
  const std::string rest(line.substr(line.empty() ? 0 : 1));
  if (app.tasks.empty() ||
      !(line.starts_with('#') || line.starts_with('>') || line.starts_with('=')))
    app.tasks.emplace_back().title = line;
  else if (line.starts_with('#'))
    app.tasks.back().keywords.push_back(rest);
  else if (line.starts_with('>'))
    app.tasks.back().examples.push_back(rest);
  else if (!app.tasks.back().keywords.empty())
    synonyms.set(app.tasks.back().keywords.back(), {rest, ""});
}

App readApp(std::uint8_t bits, std::string_view text) {
  App app{.thresholds = thresholdsOf(bits)};
  OrderedMap<std::vector<std::string>> synonyms;
  const std::vector<std::string_view> lines = splitWords(text, '\n');
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i == 0)
      app.utterance = lines[i];
    else
      addLine(app, synonyms, lines[i]);
  }
  for (const ZelvoraTaskSpec& task : app.tasks) app.stopwords.push_back(task.title);
  app.context.synonymsByLocale = {{"en", std::move(synonyms)}};
  app.context.memory = RuntimeSpec::ContextMemory{};
  return app;
}

void route(const App& app, const CompiledTasks& compiled, std::string_view utterance) {
  require(normalizeForMatch(utterance) == reference::normalizeForMatch(utterance));
  require(compiled.route(utterance, app.thresholds) ==
          reference::route(utterance, app.tasks, app.thresholds));
  const std::vector<ScoredTask> ranked = compiled.rank(utterance);
  const auto expected = reference::rank(utterance, app.tasks);
  require(ranked.size() == expected.size());
  for (std::size_t i = 0; i < ranked.size(); ++i) {
    const auto task = static_cast<std::size_t>(ranked[i].task - compiled.tasks().data());
    require(&app.tasks[task] == expected[i].task && ranked[i].score == expected[i].score);
    require(compiled.explain(utterance, task).score == ranked[i].score);
  }
}

void exercise(const App& app) {
  const CompiledTasks compiled(app.tasks);
  route(app, compiled, app.utterance);
  const NormalizedCommand command =
      Normalizer::normalize(app.utterance, std::nullopt, app.stopwords);
  const ExpansionMoment moment{
      .lastResult = SessionMemory::LastResult{.screenId = "Orders", .timestamp = Timestamp()}};
  const auto candidates =
      SpecContextEngine::expand(command.normalizedText, "en", app.context, moment);
  require(candidates.size() <= 8);
  for (const ExpandedCandidate& candidate : candidates) route(app, compiled, candidate.text);
}

}  // namespace
}  // namespace zelvora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  zelvora::exercise(zelvora::readApp(data[0], {reinterpret_cast<const char*>(data + 1), size - 1}));
  return 0;
}

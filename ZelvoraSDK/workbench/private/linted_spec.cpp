#include <ZelvoraSDK/workbench/private/checks.h>

#include <algorithm>
#include <utility>
#include <variant>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/routing/normalizer.h>
#include <ZelvoraSDK/spec/json_value.h>

namespace zelvora::workbench {

namespace {

/// The record of a minimal task as the library makes it, except for its examples, and unchecked: a
/// blank would break the constructor's preconditions. Empty for a task that is left out.
std::optional<ZelvoraTaskSpec> uncheckedRecord(const MinimalRuntimeSpec::MinimalTask& task) {
  ZelvoraTaskSpec record;
  record.taskId = task.id ? *task.id : task.taskId.value_or("");
  record.title = task.title.value_or("");
  record.screenId = task.screenId ? *task.screenId : task.screen_id.value_or("");
  record.keywords = task.keywords.value_or(std::vector<std::string>{});
  for (const std::string& word : task.synonyms.value_or(std::vector<std::string>{}))
    record.keywords.push_back(word);
  if (record.keywords.empty() && !record.title.empty()) record.keywords.push_back(record.title);
  record.defaultParams = task.defaultParams.value_or(Params{});
  if (record.keywords.empty() || record.taskId.empty() || record.title.empty() ||
      record.screenId.empty())
    return std::nullopt;
  return record;
}

}  // namespace

LintedSpec::LintedSpec(std::string_view text) : document_(parseJson(text)) {
  decode();
  if (full_)
    prepareFull();
  else if (minimal_)
    prepareMinimal();
}

void LintedSpec::decode() {
  try {
    full_ = JsonCursor(document_.root()).as<RuntimeSpec>();
    locale_ = full_->locale();
  } catch (const Error& error) {
    whyNotFull_ = error.description();
  }
  if (full_) return;
  try {
    minimal_ = JsonCursor(document_.root()).as<MinimalRuntimeSpec>();
    locale_ = minimal_->locale();
  } catch (const Error&) {
    // It is neither: nothing can be routed.
  }
}

void LintedSpec::prepareFull() {
  const std::vector<ZelvoraTaskSpec> records = UncheckedSpec(*full_).tasks();
  std::vector<std::size_t> dropped;
  for (std::size_t i = 0; i < records.size(); ++i)
    if (records[i].validate().empty())
      rawIndex_.push_back(i);
    else
      dropped.push_back(i);
  prepare(dropped);
  collectFull();
}

void LintedSpec::prepareMinimal() {
  if (!minimal_->tasksRaw) return;
  std::vector<std::size_t> dropped;
  for (std::size_t i = 0; i < minimal_->tasksRaw->size(); ++i) {
    const auto record = uncheckedRecord((*minimal_->tasksRaw)[i]);
    if (record && record->validate().empty())
      rawIndex_.push_back(i);
    else
      dropped.push_back(i);
    skippedTasks_ += !record;
  }
  if (rawIndex_.empty()) return;
  prepare(dropped);
  collectMinimal();
}

void LintedSpec::prepare(const std::vector<std::size_t>& dropped) {
  boost::json::value usable = document_.root();
  boost::json::array& tasks = usable.as_object()["tasks"].as_array();
  for (auto index = dropped.rbegin(); index != dropped.rend(); ++index)
    tasks.erase(tasks.begin() + static_cast<std::ptrdiff_t>(*index));
  prepared_ = std::make_unique<const PreparedSpec>(AnyEncodable(JSONValue::from(usable)));
}

std::string LintedSpec::taskPath(std::uint32_t task) const {
  return "tasks[" + std::to_string(rawIndex_[task]) + "]";
}

std::vector<std::string> LintedSpec::taskProblems() const {
  if (full_) return {};  // validation reports them
  std::vector<std::string> problems;
  if (!minimal_ || !minimal_->tasksRaw) return problems;
  for (const auto& task : *minimal_->tasksRaw) {
    std::string& problem = problems.emplace_back();
    const auto record = uncheckedRecord(task);
    if (!record) continue;
    for (const std::string& each : record->validate())
      problem += (problem.empty() ? "Task " + record->taskId + ": " : ", ") + each;
  }
  return problems;
}

void LintedSpec::collect(std::uint32_t task, OwnText::Kind kind,
                         const std::vector<std::string>& texts, const std::string& arrayPath,
                         const std::string& locale, bool isOfLocale) {
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (!isBlank(texts[i]))
      ownTexts_.push_back({.task = task,
                           .kind = kind,
                           .isOfLocale = isOfLocale,
                           .text = texts[i],
                           .locale = locale,
                           .path = arrayPath + "[" + std::to_string(i) + "]"});
}

void LintedSpec::collectFull() {
  using enum OwnText::Kind;
  for (std::uint32_t task = 0; task < rawIndex_.size(); ++task) {
    const RuntimeSpec::Task& raw = full_->tasksRaw[rawIndex_[task]];
    const std::string at = taskPath(task);
    ownTexts_.push_back({task, title, false, raw.title, locale_, at + ".title"});
    collect(task, keyword, raw.keywords, at + ".keywords", locale_, false);
    collect(task, example, raw.examples, at + ".examples", locale_, false);
    const auto collectLocales = [&](OwnText::Kind kind, const auto& lists, const char* key) {
      if (!lists) return;
      for (const auto& [locale, texts] : *lists)
        collect(task, kind, texts, at + "." + key + "." + locale, locale, true);
    };
    collectLocales(keyword, raw.keywordsByLocale, "keywordsByLocale");
    collectLocales(example, raw.examplesByLocale, "examplesByLocale");
  }
}

void LintedSpec::collectMinimal() {
  using enum OwnText::Kind;
  for (std::uint32_t task = 0; task < rawIndex_.size(); ++task) {
    const auto& raw = (*minimal_->tasksRaw)[rawIndex_[task]];
    const std::string at = taskPath(task);
    const std::vector<std::string> none;
    ownTexts_.push_back({task, title, false, *raw.title, locale_, at + ".title"});
    collect(task, keyword, raw.keywords.value_or(none), at + ".keywords", locale_, false);
    collect(task, keyword, raw.synonyms.value_or(none), at + ".synonyms", locale_, false);
    collect(task, example, raw.examples.value_or(none), at + ".examples", locale_, false);
  }
}

RoutedTexts::RoutedTexts(const LintedSpec& spec, const LintProgress& progress) : spec_(spec) {
  for (std::uint32_t task = 0; task < spec.tasks().size(); ++task)
    taskById_.emplace(spec.tasks()[task].taskId, task);
  const std::size_t count = spec.ownTexts().size();
  routed_.reserve(count);
  for (const OwnText& own : spec.ownTexts()) {
    routed_.push_back(route(own));
    if (progress) progress(routed_.size(), count);
  }
}

Lead RoutedTexts::leadOf(const ZelvoraResult& result) const {
  using enum Lead::Kind;
  const auto taskOf = [&](const std::string& id) { return taskById_.at(id); };
  if (const auto* it = std::get_if<ZelvoraExecute>(&result)) return {opens, taskOf(*it->taskId)};
  if (const auto* it = std::get_if<ZelvoraPresent>(&result)) return {opens, taskOf(*it->taskId)};
  if (const auto* it = std::get_if<ZelvoraShowChoices>(&result))
    return {offers, taskOf(it->choices.front().taskId)};
  return {};
}

Lead RoutedTexts::leadOf(const std::string& normalized, const std::string& locale,
                         const RouteLocally& route) const {
  return leadOf(answerLocally(normalized, *spec_.prepared(), locale, route, {}).result);
}

RoutedTexts::Routed RoutedTexts::route(const OwnText& own) const {
  const PreparedSpec& spec = *spec_.prepared();
  Routed routed;
  routed.normalized = cleanUtterance(own.text, spec, own.locale).normalized;
  if (routed.normalized.empty()) return routed;
  routed.canonical = normalizeForMatch(routed.normalized);
  const RouteLocally route = [&](std::string_view text) {
    return spec.tasks()->route(text, spec.thresholds());
  };
  const LocalAnswer answer = answerLocally(routed.normalized, spec, own.locale, route, {});
  routed.searchable = routed.canonical;
  for (const ExpandedCandidate& candidate : answer.candidates)
    routed.searchable += '\n' + normalizeForMatch(candidate.text);
  routed.lead = leadOf(answer.result);
  return routed;
}

}  // namespace zelvora::workbench

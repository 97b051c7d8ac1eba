#include <ZelvoraSDK/spec/minimal_spec.h>

#include <utility>

#include <ZelvoraSDK/spec/private/spec_fields.h>

namespace zelvora {
namespace {

/// The first of the spellings that is present, else empty.
std::string firstPresent(const std::optional<std::string>& preferred,
                         const std::optional<std::string>& alternative = {}) {
  return preferred ? *preferred : alternative.value_or("");
}

std::vector<std::string> keywordsOf(const MinimalRuntimeSpec::MinimalTask& task) {
  std::vector<std::string> keywords = task.keywords.value_or(std::vector<std::string>{});
  if (task.synonyms) keywords.insert(keywords.end(), task.synonyms->begin(), task.synonyms->end());
  if (keywords.empty() && task.title && !task.title->empty()) keywords.push_back(*task.title);
  return keywords;
}

/// Absent for a task that has too little to be one. Only the empty string counts as too little.
std::optional<ZelvoraTaskSpec> toRecord(const MinimalRuntimeSpec::MinimalTask& task) {
  std::string id = firstPresent(task.id, task.taskId);
  std::string title = firstPresent(task.title);
  std::string screen = firstPresent(task.screenId, task.screen_id);
  std::vector<std::string> keywords = keywordsOf(task);
  if (keywords.empty() || id.empty() || title.empty() || screen.empty()) return std::nullopt;
  return ZelvoraTaskSpec(std::move(id), std::move(title), std::move(screen), std::move(keywords),
                         task.examples.value_or(std::vector<std::string>{}),
                         task.defaultParams.value_or(Params{}));
}

}  // namespace

RuntimeSpec::Thresholds MinimalRuntimeSpec::MinimalThresholds::toRuntimeSpecThresholds() const {
  RuntimeSpec::Thresholds full;
  full.execute_min_score = execute_min_score.value_or(full.execute_min_score);
  full.execute_min_conf = execute_min_conf.value_or(full.execute_min_conf);
  full.choices_min_score = choices_min_score.value_or(full.choices_min_score);
  full.choices_min_conf = choices_min_conf.value_or(full.choices_min_conf);
  full.close_to_second_delta = close_to_second_delta.value_or(full.close_to_second_delta);
  full.max_choices = max_choices.value_or(full.max_choices);
  return full;
}

std::string MinimalRuntimeSpec::appId() const { return app ? firstPresent(app->id) : ""; }

std::string MinimalRuntimeSpec::locale() const {
  return app ? app->default_locale.value_or("en-US") : "en-US";
}

std::vector<ZelvoraTaskSpec> MinimalRuntimeSpec::tasks() const {
  std::vector<ZelvoraTaskSpec> records;
  if (!tasksRaw) return records;
  for (const MinimalTask& task : *tasksRaw)
    if (auto record = toRecord(task)) records.push_back(*std::move(record));
  return records;
}

void readJson(const JsonCursor& in, MinimalRuntimeSpec& spec) { readFields(in, spec); }

}  // namespace zelvora

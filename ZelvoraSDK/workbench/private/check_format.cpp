#include <ZelvoraSDK/workbench/private/checks.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/workbench/spec_schema.h>

namespace zelvora::workbench {
namespace {

namespace json = boost::json;
using EditKind = SpecEdit::Kind;

std::string_view asView(json::string_view text) { return {text.data(), text.size()}; }

std::string memberPath(const std::string& path, std::string_view key) {
  return path.empty() ? std::string(key) : path + "." + std::string(key);
}

// Validation.

/// The path that a message about the whole spec refers to.
std::string pathOf(const std::string& problem, const RuntimeSpec& spec) {
  if (problem.starts_with("appId")) return "app.id";
  if (problem.starts_with("locale")) return "app.default_locale";
  if (problem.starts_with("tasks")) return "tasks";
  std::map<std::string_view, int> seen;
  for (std::size_t i = 0; i < spec.tasksRaw.size(); ++i)
    if (++seen[spec.tasksRaw[i].id] == 2) return "tasks[" + std::to_string(i) + "].id";
  return "tasks";
}

void addInvalid(Findings& findings, std::string path, const std::string& problem,
                std::string hint) {
  findings.add({.code = "invalid",
                .severity = LintSeverity::error,
                .path = std::move(path),
                .message = problem,
                .hint = std::move(hint),
                .cause = problem});
}

std::string hintOf(const std::string& problem) {
  if (problem.starts_with("Task "))
    return "fill in what is empty or leave the task out; the application stops when it reads it";
  if (problem.starts_with("Duplicate")) return "give each task an id of its own";
  if (problem.starts_with("tasks")) return "add a task; without any nothing can be opened";
  return "fill it in";
}

void checkValidation(const LintedSpec& spec, Findings& findings) {
  const std::vector<std::string> minimalProblems = spec.taskProblems();
  for (std::size_t i = 0; i < minimalProblems.size(); ++i)
    if (!minimalProblems[i].empty())
      addInvalid(findings, "tasks[" + std::to_string(i) + "]", minimalProblems[i],
                 hintOf(minimalProblems[i]));
  if (!spec.full()) return;

  // The messages of single tasks come last, in the order of the tasks.
  const UncheckedSpec unchecked(*spec.full());
  const std::vector<std::string> problems = unchecked.validateSpec();
  const std::vector<ZelvoraTaskSpec> records = unchecked.tasks();
  std::size_t task = 0;
  const std::size_t broken = static_cast<std::size_t>(
      std::ranges::count_if(records, [](const auto& each) { return !each.validate().empty(); }));
  for (std::size_t i = 0; i < problems.size(); ++i) {
    const bool isOfTask = i + broken >= problems.size();
    std::string path = isOfTask ? "" : pathOf(problems[i], *spec.full());
    if (isOfTask) {
      while (records[task].validate().empty()) ++task;
      path = "tasks[" + std::to_string(task++) + "]";
    }
    addInvalid(findings, std::move(path), problems[i], hintOf(problems[i]));
  }
}

// Decoding.

/// A key's standard value as JSON. A section gets its required keys with their standard values.
std::string standardJson(const SpecKey& key) {
  if (!key.standard.empty()) return std::string(key.standard);
  switch (key.type) {
    case SpecType::object: {
      std::string members;
      for (const SpecKey& member : key.keys)
        if (member.isRequired)
          members +=
              (members.empty() ? "" : ", ") + toJson(member.name) + ": " + standardJson(member);
      return "{ " + members + " }";
    }
    case SpecType::objects:
    case SpecType::texts: return "[]";
    case SpecType::text: return key.name == "default_locale" ? "\"en-US\"" : toJson(key.name);
    default: return "{}";
  }
}

/// The key of the full format at a coding path, or null below a table of free names.
const SpecKey* keyAt(std::string_view path) {
  std::span<const SpecKey> keys = fullSpecKeys();
  const SpecKey* found = nullptr;
  for (std::string_view step : splitWords(path, '.')) {
    step = step.substr(0, step.find('['));
    const auto key = std::ranges::find(keys, step, &SpecKey::name);
    if (key == keys.end()) return nullptr;
    found = &*key;
    keys = key->keys;
  }
  return found;
}

/// A decoding error, taken apart.
struct DecodingProblem {
  std::string path;  ///< Of the value that is wrong or missing.
  bool isMissing = false;
  const SpecKey* key = nullptr;  ///< Null where no single key is at fault.
};

DecodingProblem problemOf(const std::string& description) {
  DecodingProblem problem;
  problem.path = description.substr(0, description.find(": "));
  if (problem.path == "the document") problem.path.clear();
  problem.isMissing = description.ends_with("required, but absent");
  constexpr std::string_view kForKey = "for key '";
  if (const std::size_t at = description.find(kForKey); at != description.npos) {
    const std::size_t begin = at + kForKey.size();
    problem.path += "." + description.substr(begin, description.find('\'', begin) - begin);
  }
  // An element of an array is not a key.
  if (!problem.path.ends_with(']')) problem.key = keyAt(problem.path);
  return problem;
}

SpecEdit settingAt(const std::string& path, std::string json) {
  const std::size_t dot = path.rfind('.');
  if (dot == path.npos) return {EditKind::set, "", path, std::move(json)};
  return {EditKind::set, path.substr(0, dot), path.substr(dot + 1), std::move(json)};
}

bool isMinimalOnPurpose(const LintedSpec& spec) {
  const json::object* root = spec.root().if_object();
  return root && !root->contains("app") && !root->contains("routing") &&
         !root->contains("learning");
}

std::string countOf(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string howItIsRead(const LintedSpec& spec) {
  if (!spec.prepared())
    return spec.minimal() ? "and no task of it can be used: the device answers nothing"
                          : "nor as a minimal spec: the device answers nothing";
  std::string text = "it is read as a minimal spec of " + countOf(spec.tasks().size(), "task");
  if (spec.skippedTasks() > 0)
    text += ", and " + countOf(spec.skippedTasks(), "task") + " left out";
  return text + ", without stopwords, context, actions and speech settings";
}

void checkFallback(const LintedSpec& spec, Findings& findings) {
  if (spec.full()) return;
  const bool onPurpose = isMinimalOnPurpose(spec) && spec.minimal();
  const DecodingProblem problem = problemOf(spec.whyNotFull());
  LintFinding finding{.code = "falls-back", .path = problem.path, .cause = problem.path};
  finding.severity = !spec.prepared() ? LintSeverity::error
                     : onPurpose      ? LintSeverity::note
                                      : LintSeverity::warning;
  finding.message = onPurpose && spec.prepared()
                        ? howItIsRead(spec)
                        : "not a full spec (" + spec.whyNotFull() + "); " + howItIsRead(spec);
  if (onPurpose && spec.prepared()) {
    finding.path.clear();
    finding.hint =
        "nothing to do if that is what you want; a full spec also has app, routing and "
        "learning";
  } else if (problem.key) {
    const std::string value = standardJson(*problem.key);
    finding.hint =
        (problem.isMissing ? "add " : "write ") + inQuotes(problem.key->name) + ": " + value;
    finding.edits = {settingAt(problem.path, value)};
  } else {
    finding.hint = "write what the format asks for at " + inQuotes(problem.path);
  }
  findings.add(std::move(finding));
}

// Keys.

std::string plainSpelling(std::string_view name) {
  std::string plain = lowercased(name);
  std::erase_if(plain, [](char c) { return c == '_' || c == '-' || c == ' '; });
  return plain;
}

std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j)
      diagonal = std::exchange(
          row[j], std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])}));
  }
  return row.back();
}

struct NearName {
  std::string_view name;
  std::size_t distance = 0;
};

NearName nearest(std::string_view name, const std::vector<std::string_view>& names) {
  NearName best{"", std::string_view::npos};
  for (const std::string_view each : names) {
    const std::size_t distance = editDistance(plainSpelling(name), plainSpelling(each));
    if (distance < best.distance) best = {each, distance};
  }
  return best;
}

bool isNear(const NearName& near, std::string_view name) {
  return near.distance <= std::max<std::size_t>(1, name.size() / 3);
}

std::span<const SpecKey> minimalTaskKeys() {
  return std::ranges::find(minimalSpecKeys(), "tasks", &SpecKey::name)->keys;
}

/// Walks through all objects of the format.
class KeyCheck {
 public:
  KeyCheck(std::string_view text, const LintedSpec& spec, Findings& findings)
      : text_(text), isFull_(spec.full() != nullptr), findings_(findings) {}

  void check(const json::value& value, std::span<const SpecKey> keys, const std::string& path) {
    const json::object* members = value.if_object();
    if (!members) return;
    for (const auto& member : *members) {
      const std::string_view name = asView(member.key());
      const std::string at = memberPath(path, name);
      const auto key = std::ranges::find(keys, name, &SpecKey::name);
      if (key == keys.end())
        reportUnknown(*members, keys, name, path);
      else if (key->type == SpecType::object)
        check(member.value(), key->keys, at);
      else if (const json::array* elements = member.value().if_array();
               elements && key->type == SpecType::objects)
        for (std::size_t i = 0; i < elements->size(); ++i)
          check((*elements)[i], key->keys, at + "[" + std::to_string(i) + "]");
    }
  }

 private:
  void reportUnknown(const json::object& members, std::span<const SpecKey> keys,
                     std::string_view name, const std::string& path) {
    if (name == "$schema" || name.starts_with("x-")) return;
    if (!isFull_ &&
        std::ranges::find(minimalTaskKeys(), name, &SpecKey::name) != minimalTaskKeys().end())
      return;  // what falls back to the minimal format may use its spellings
    std::vector<std::string_view> names;
    for (const SpecKey& key : keys) names.push_back(key.name);
    const NearName near = nearest(name, names);
    const std::string at = memberPath(path, name);
    LintFinding finding{.code = "unknown-key", .path = at, .cause = std::string(name)};
    finding.message = "the format has no key " + inQuotes(name) + " here, so nothing reads it";
    const SpecEdit renaming{EditKind::rename, at, std::string(near.name), ""};
    if (isNear(near, name) && !members.contains(near.name) && stillDecodes(renaming)) {
      finding.hint = "call it " + inQuotes(near.name);
      finding.edits = {renaming};
    } else {
      finding.hint = "leave it out; the nearest key is " + inQuotes(near.name);
      finding.edits = {{EditKind::remove, at, "", ""}};
    }
    findings_.add(std::move(finding));
  }

  /// If the value does not fit its new name, the whole spec no longer decodes.
  [[nodiscard]] bool stillDecodes(const SpecEdit& renaming) const {
    if (!isFull_) return true;
    try {
      (void)decodeJson<RuntimeSpec>(withEdits(text_, {renaming}));
      return true;
    } catch (const Error&) {
      return false;
    }
  }

  std::string_view text_;
  bool isFull_;
  Findings& findings_;
};

// Keys without effect.

class EffectCheck {
 public:
  EffectCheck(const RuntimeSpec& spec, Findings& findings) : spec_(spec), findings_(findings) {}

  void check() {
    checkWeights();
    checkContext();
    checkLearning();
    for (std::size_t i = 0; i < spec_.tasksRaw.size(); ++i)
      checkAction(spec_.tasksRaw[i].action, "tasks[" + std::to_string(i) + "].action");
  }

 private:
  /// Adds one note, unless `value` is in force anyway.
  template <class Value>
  void expect(const std::string& path, const Value& value, const Value& inForce,
              const char* message) {
    if (value == inForce) return;
    const std::string json = toJson(inForce);
    report(path, message, "write " + json + ", so that nobody is misled", settingAt(path, json));
  }

  void report(const std::string& path, std::string message, std::string hint, SpecEdit edit) {
    findings_.add({.code = "no-effect",
                   .severity = LintSeverity::note,
                   .path = path,
                   .message = std::move(message),
                   .hint = std::move(hint),
                   .edits = {std::move(edit)},
                   .cause = path});
  }

  void checkWeights() {
    const RuntimeSpec::Weights& weights = spec_.routing.weights;
    const std::string at = "routing.weights.";
    expect(at + "keyword_phrase_hit", weights.keyword_phrase_hit, 6.0,
           "a keyword of several words gives 6 points whatever stands here");
    expect(at + "keyword_single_hit", weights.keyword_single_hit, 3.0,
           "a keyword of one word gives 3 points whatever stands here");
    expect(at + "example_token_hit", weights.example_token_hit, 0.6,
           "a word of an example gives 0.6 points whatever stands here");
    expect(at + "example_token_cap", weights.example_token_cap, 3.0,
           "an example gives 3 points at most whatever stands here");
  }

  void checkContext() {
    const auto& context = spec_.routing.context;
    if (!context) return;
    const std::string at = "routing.context";
    if (!context->enabled &&
        (context->synonymsByLocale || context->relatedIntents || context->memory))
      report(at, "the context is off, so its synonyms, related tasks and follow-ups do nothing",
             "write \"enabled\": true, or leave the section out", {EditKind::remove, at, "", ""});
    if (context->max_expansions != 5 && context->max_expansions != 3)
      expect<std::int64_t>(at + ".max_expansions", context->max_expansions, 5,
                           "five phrasings with synonyms are tried at most, whatever stands here");
    const auto& memory = context->memory;
    if (memory && memory->synonymBoost != memory->relatedBoost && memory->synonymBoost != 1.1)
      expect(at + ".memory.synonymBoost", memory->synonymBoost, memory->relatedBoost,
             "phrasings with a synonym have the factor \"relatedBoost\", not this one");
  }

  void checkLearning() {
    const RuntimeSpec::Learning& learning = spec_.learning;
    expect("learning.enabled", learning.enabled, true,
           "what the user picks is counted whatever stands here");
    if (learning.mode != "local")
      expect<std::string>("learning.mode", learning.mode, "on_device",
                          "picks are counted on the device whatever stands here");
    const std::string boost = "learning.boost.";
    expect(boost + "recent_choice_bonus", learning.boost.recent_choice_bonus, 0.03,
           "each pick adds 0.03 whatever stands here");
    expect(boost + "repeat_choice_bonus", learning.boost.repeat_choice_bonus, 0.03,
           "each pick adds 0.03 whatever stands here");
    expect(boost + "max_total_bonus", learning.boost.max_total_bonus, 0.15,
           "picks add 0.15 at most whatever stands here");
    const char* nothingSent = "nothing is ever sent, whatever stands here";
    const std::string telemetry = "learning.telemetry.";
    expect(telemetry + "enabled", learning.telemetry.enabled, false, nothingSent);
    expect<std::string>(telemetry + "endpoint", learning.telemetry.endpoint, "", nothingSent);
    expect(telemetry + "send_text", learning.telemetry.send_text, false, nothingSent);
  }

  void checkAction(const std::optional<RuntimeSpec::TaskAction>& action, const std::string& at) {
    if (!action || !action->id || action->type == "present") return;
    report(at + ".id", "only an action of the type \"present\" shows a presentation",
           "write \"type\": \"present\", or leave the id out",
           {EditKind::remove, at + ".id", "", ""});
  }

  const RuntimeSpec& spec_;
  Findings& findings_;
};

/// A file that was meant to be full but is not may have the keys of both formats.
bool wasMeantAsMinimal(const LintedSpec& spec) { return !spec.full() && isMinimalOnPurpose(spec); }

}  // namespace

std::string_view nearestName(std::string_view name, const std::vector<std::string_view>& names) {
  const NearName near = nearest(name, names);
  return isNear(near, name) ? near.name : "";
}

void checkFormat(std::string_view text, const LintedSpec& spec, Findings& findings) {
  checkValidation(spec, findings);
  checkFallback(spec, findings);
  KeyCheck(text, spec, findings)
      .check(spec.root(), wasMeantAsMinimal(spec) ? minimalSpecKeys() : fullSpecKeys(), "");
  if (spec.full()) EffectCheck(*spec.full(), findings).check();
}

}  // namespace zelvora::workbench

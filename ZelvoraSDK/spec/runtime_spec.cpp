#include <ZelvoraSDK/spec/runtime_spec.h>

#include <charconv>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/spec/private/spec_fields.h>

namespace zelvora {
namespace {

std::optional<ZelvoraTaskAction> toTaskAction(
    const std::optional<RuntimeSpec::TaskAction>& action) {
  if (!action) return std::nullopt;
  return ZelvoraTaskAction{action->type, action->id, action->screenId};
}

/// A whole decimal number with optional sign, fraction and exponent; nothing else.
std::optional<double> parseDecimal(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  // Shuts out "inf" and "nan", which from_chars would take.
  if (text.find_first_not_of("+-.0123456789eE") != text.npos) return std::nullopt;
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc{} || read.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<double> asLenientDouble(const boost::json::value& value) {
  if (value.is_number()) return value.to_number<double>();
  if (const bool* truth = value.if_bool()) return *truth ? 1.0 : 0.0;
  if (const auto* text = value.if_string()) return parseDecimal({text->data(), text->size()});
  return std::nullopt;
}

void readLenient(const JsonCursor& in, std::string_view key, double& field) {
  const boost::json::value* found = in.object().if_contains({key.data(), key.size()});
  const std::optional<double> value = found ? asLenientDouble(*found) : std::nullopt;
  if (!value)
    in.fail(JsonErrorCode::typeMismatch,
            "Expected Double (or Int/Bool/String convertible to Double) for key '" +
                std::string(key) + "' but found incompatible type.");
  field = *value;
}

}  // namespace

// Found by its argument, hence not in the unnamed namespace.
static void readJson(const JsonCursor& in, RuntimeSpec::Weights& weights) {
  fields([&in](std::string_view key, Lenient weight) { readLenient(in, key, weight.field); },
         weights);
}

void readJson(const JsonCursor& in, RuntimeSpec& spec) { readFields(in, spec); }

Params RuntimeSpec::Task::safeDefaultParams() const { return defaultParams.value_or(Params{}); }

RuntimeSpec::RuntimeSpec(App app_, Routing routing_, Learning learning_,
                         std::vector<Task> tasksRaw_, std::optional<STTConfig> stt_)
    : app(std::move(app_)),
      routing(std::move(routing_)),
      learning(std::move(learning_)),
      tasksRaw(std::move(tasksRaw_)),
      stt(std::move(stt_)) {}

std::vector<ZelvoraTaskSpec> RuntimeSpec::tasks() const {
  std::vector<ZelvoraTaskSpec> records;
  records.reserve(tasksRaw.size());
  for (const Task& task : tasksRaw)
    records.emplace_back(task.id, task.title, task.screenId, task.keywords, task.examples,
                         task.safeDefaultParams(), toTaskAction(task.action));
  return records;
}

std::vector<ZelvoraTaskSpec> UncheckedSpec::tasks() const {
  std::vector<ZelvoraTaskSpec> records(spec_.tasksRaw.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    const RuntimeSpec::Task& task = spec_.tasksRaw[i];
    records[i].taskId = task.id;
    records[i].title = task.title;
    records[i].screenId = task.screenId;
    records[i].keywords = task.keywords;
    records[i].examples = task.examples;
    records[i].defaultParams = task.safeDefaultParams();
    records[i].action = toTaskAction(task.action);
  }
  return records;
}

}  // namespace zelvora

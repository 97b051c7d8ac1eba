#include <ZelvoraSDK/spec/runtime_spec.h>

#include <utility>

namespace zelvora {
namespace {

std::optional<ZelvoraTaskAction> toTaskAction(
    const std::optional<RuntimeSpec::TaskAction>& action) {
  if (!action) return std::nullopt;
  return ZelvoraTaskAction{action->type, action->id, action->screenId};
}

}  // namespace

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

#include <ZelvoraSDK/facade/text_pipeline.h>

#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/outcome/phrases.h>

namespace zelvora {

TextPipeline::TextPipeline(Parts parts)
    : parts_(std::move(parts)),
      router_(parts_.platform.log),
      learning_(parts_.platform.defaults, parts_.platform.log) {}

asio::awaitable<ZelvoraResult> TextPipeline::route(std::string text) {
  return routeText(shared_from_this(), std::move(text));
}

asio::awaitable<ZelvoraResult> TextPipeline::routeText(Self self, std::string text) {
  if (isBlank(text)) co_return ZelvoraUnsupported{kNothingSaidSay};
  std::string utterance = self->cleaned(std::move(text));
  if (utterance.empty()) co_return ZelvoraUnsupported{kNothingSaidSay};

  StageYield local = co_await self->stage("local", utterance, scoreLocally(self, utterance));
  if (local) co_return co_await remembered(self, *std::move(local));
  ZelvoraResult answer = co_await askBackend(self, std::move(utterance));
  co_return co_await remembered(self, std::move(answer));
}

std::string TextPipeline::cleaned(std::string text) const {
  CleanedUtterance utterance =
      cleanUtterance(std::move(text), parts_.spec->get(), parts_.settings.locale);
  parts_.platform.log->write("[Zelvora][Normalize] '" + utterance.replaced + "' -> '" +
                             utterance.normalized + "'");
  return std::move(utterance.normalized);
}

asio::awaitable<StageYield> TextPipeline::scoreLocally(Self self, std::string utterance) {
  const PreparedSpec& spec = self->parts_.spec->get();
  if (!spec.tasks()) co_return std::nullopt;

  std::optional<SessionMemory::LastResult> last;
  auto read = [](const SessionMemory& memory) { return memory.lastResult(); };
  if (spec.enabledContext()) last = co_await self->memory_.run(read);

  const ExpansionMoment moment{.lastResult = last, .now = self->parts_.platform.clock->now()};
  ZelvoraResult result =
      answerLocally(utterance, spec, self->parts_.settings.locale, self->router_, moment).result;
  if (std::holds_alternative<ZelvoraUnsupported>(result)) co_return std::nullopt;
  if (auto* offer = std::get_if<ZelvoraShowChoices>(&result)) {
    auto boost = [&self, &offer](LearningStore& store) {
      return store.boost(self->parts_.settings.publishableKey, offer->choices);
    };
    offer->choices = co_await self->learning_.run(boost);
  }
  co_return result;
}

asio::awaitable<ZelvoraResult> TextPipeline::askBackend(Self self, std::string utterance) {
  const std::shared_ptr<BackendStages> backend = self->parts_.backend;
  if (self->parts_.spec->get().tasks()) {
    auto semantic = co_await self->stage("semantic", utterance, backend->semantic(utterance));
    if (semantic) co_return *std::move(semantic);
  }
  auto catalogue = co_await self->stage("catalogue", utterance, backend->catalogue(utterance));
  if (catalogue) co_return *std::move(catalogue);
  auto interpreted = co_await self->stage("interpret", utterance, backend->interpret(utterance));
  co_return *std::move(interpreted);
}

asio::awaitable<ZelvoraResult> TextPipeline::remembered(Self self, ZelvoraResult result) {
  const bool navigates = std::holds_alternative<ZelvoraExecute>(result) ||
                         std::holds_alternative<ZelvoraPresent>(result);
  if (!navigates) co_return result;
  auto record = [&result, now = self->parts_.platform.clock->now()](SessionMemory& memory) {
    memory.update(result, now);
  };
  co_await self->memory_.run(record);
  co_return result;
}

asio::awaitable<StageYield> TextPipeline::stage(const char* name, const std::string& utterance,
                                                asio::awaitable<StageYield> work) const {
  return reported(parts_.reporter, name, utterance, std::move(work));
}

asio::awaitable<void> TextPipeline::recordChoice(std::string screenId) {
  return learning_.run([appId = parts_.settings.publishableKey, screenId = std::move(screenId)](
                           LearningStore& store) { store.recordChoice(appId, screenId); });
}

}  // namespace zelvora

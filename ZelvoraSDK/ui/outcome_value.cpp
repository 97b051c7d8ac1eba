#include <ZelvoraSDK/ui/outcome_value.h>

#include <optional>
#include <string>

#include <ZelvoraSDK/ui/choice_value.h>

namespace zelvora {
namespace {

QVariantMap mapOf(const Params& params) {
  QVariantMap map;
  for (const auto& [key, value] : params)
    map.insert(QString::fromStdString(key), QString::fromStdString(value));
  return map;
}

QVariant orUndefined(const std::optional<std::string>& text) {
  return text ? QVariant(QString::fromStdString(*text)) : QVariant();
}

QVariant orUndefined(std::optional<double> number) {
  return number ? QVariant(*number) : QVariant();
}

struct Converter {
  OutcomeValue operator()(const ZelvoraExecute& execute) const {
    return {.kind = QStringLiteral("execute"),
            .screenId = QString::fromStdString(execute.screenId),
            .params = mapOf(execute.params),
            .say = QString::fromStdString(execute.say),
            .confidence = orUndefined(execute.confidence),
            .taskId = orUndefined(execute.taskId)};
  }
  OutcomeValue operator()(const ZelvoraPresent& present) const {
    return {.kind = QStringLiteral("present"),
            .presentationId = QString::fromStdString(present.presentationId),
            .params = mapOf(present.params),
            .say = QString::fromStdString(present.say.value_or("")),
            .confidence = orUndefined(present.confidence),
            .taskId = orUndefined(present.taskId)};
  }
  OutcomeValue operator()(const ZelvoraShowChoices& offer) const {
    return {.kind = QStringLiteral("showChoices"),
            .say = QString::fromStdString(offer.say),
            .choices = choiceValues(offer.choices)};
  }
  OutcomeValue operator()(const ZelvoraUnsupported& unsupported) const {
    return {.kind = QStringLiteral("unsupported"), .say = QString::fromStdString(unsupported.say)};
  }
};

}  // namespace

OutcomeValue outcomeValue(const ZelvoraResult& result) { return std::visit(Converter{}, result); }

}  // namespace zelvora

#include <ZelvoraSDK/ui/values.h>

#include <optional>
#include <string>
#include <utility>
#include <variant>

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

}  // namespace

ChoiceValue::ChoiceValue(ZelvoraChoice choice) : choice_(std::move(choice)) {}

QString ChoiceValue::taskId() const { return QString::fromStdString(choice_.taskId); }

QString ChoiceValue::title() const { return QString::fromStdString(choice_.title); }

double ChoiceValue::confidence() const { return choice_.confidence; }

QVariant ChoiceValue::screenId() const { return orUndefined(choice_.screenId); }

QVariant ChoiceValue::params() const {
  return choice_.params ? QVariant(mapOf(*choice_.params)) : QVariant();
}

QVariantList choiceValues(const std::vector<ZelvoraChoice>& choices) {
  QVariantList values;
  for (const ZelvoraChoice& choice : choices)
    values.append(QVariant::fromValue(ChoiceValue(choice)));
  return values;
}

namespace {

struct OutcomeConverter {
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

OutcomeValue outcomeValue(const ZelvoraResult& result) {
  return std::visit(OutcomeConverter{}, result);
}

namespace {

struct AuditConverter {
  AuditValue operator()(const LocalSTTUsed& event) const {
    return {.kind = QStringLiteral("localSTTUsed"),
            .transcriptLength = static_cast<qsizetype>(event.transcriptLength)};
  }
  AuditValue operator()(const CloudSTTRequested& event) const {
    return {.kind = QStringLiteral("cloudSTTRequested"),
            .audioBytes = static_cast<qsizetype>(event.audioBytes)};
  }
  AuditValue operator()(const CloudSTTUsed& event) const {
    return {.kind = QStringLiteral("cloudSTTUsed"),
            .transcriptLength = static_cast<qsizetype>(event.transcriptLength)};
  }
  AuditValue operator()(const CloudSTTFailed& event) const {
    return {.kind = QStringLiteral("cloudSTTFailed"),
            .message = QString::fromStdString(event.message)};
  }
};

}  // namespace

AuditValue auditValue(const ZelvoraAuditEvent& event) {
  return std::visit(AuditConverter{}, event);
}

}  // namespace zelvora

#include <ZelvoraSDK/ui/choice_value.h>

#include <utility>

namespace zelvora {

ChoiceValue::ChoiceValue(ZelvoraChoice choice) : choice_(std::move(choice)) {}

QString ChoiceValue::taskId() const { return QString::fromStdString(choice_.taskId); }

QString ChoiceValue::title() const { return QString::fromStdString(choice_.title); }

double ChoiceValue::confidence() const { return choice_.confidence; }

QVariant ChoiceValue::screenId() const {
  return choice_.screenId ? QVariant(QString::fromStdString(*choice_.screenId)) : QVariant();
}

QVariant ChoiceValue::params() const {
  if (!choice_.params) return {};
  QVariantMap map;
  for (const auto& [key, value] : *choice_.params)
    map.insert(QString::fromStdString(key), QString::fromStdString(value));
  return map;
}

QVariantList choiceValues(const std::vector<ZelvoraChoice>& choices) {
  QVariantList values;
  for (const ZelvoraChoice& choice : choices)
    values.append(QVariant::fromValue(ChoiceValue(choice)));
  return values;
}

}  // namespace zelvora

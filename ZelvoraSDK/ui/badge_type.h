#pragma once

#include <QtCore/QObject>
#include <QtQml/QtQml>

/// How a command ended. In QML: `ZelvoraBadgeType.Success`.
namespace ZelvoraBadgeType {
Q_NAMESPACE
QML_ELEMENT

enum Type { Success, Failure };
Q_ENUM_NS(Type)

}  // namespace ZelvoraBadgeType

#pragma once

#include <QtCore/QObject>
#include <QtQml/QtQml>

/// What a microphone view shows. In QML: `ZelvoraMicState.Listening`.
namespace ZelvoraMicState {
Q_NAMESPACE
QML_ELEMENT

enum State { Idle, Listening, Processing };
Q_ENUM_NS(State)

}  // namespace ZelvoraMicState

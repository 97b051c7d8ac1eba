#pragma once

#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <string>
#include <vector>

namespace zelvora {

/// What is wrong with how a page is laid out, a line each: texts that are cut by what contains them
/// or by the window, texts that overlap, and controls that a finger can't hit. What is scrolled out
/// of sight within a flickable item counts as shown.
[[nodiscard]] std::vector<std::string> layoutFaults(const QQuickWindow& window);

/// What is wrong with how a page is read and reached: a control without a name, a control that Tab
/// does not reach, a focus that is out of sight. Presses Tab until the focus comes round.
[[nodiscard]] std::vector<std::string> reachFaults(QQuickWindow& window);

/// What a screen reader reads from the first item to the last: role and name, a line each.
[[nodiscard]] std::vector<std::string> spokenPage(QQuickWindow& window);

/// "role: name" of one item.
[[nodiscard]] std::string spokenItem(QQuickItem* item);

}  // namespace zelvora

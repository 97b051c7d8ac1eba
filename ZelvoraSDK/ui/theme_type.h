#pragma once

#include <QtQml/QtQml>

#include <ZelvoraSDK/ui/zelvora_theme.h>

namespace zelvora {

/// The theme's name for applications. In QML: `ZelvoraTheme.accent: "teal"`.
struct ThemeType {
  Q_GADGET
  QML_FOREIGN(zelvora::ZelvoraTheme)
  QML_NAMED_ELEMENT(ZelvoraTheme)
  QML_UNCREATABLE("ZelvoraTheme is attached to an item")
};

}  // namespace zelvora

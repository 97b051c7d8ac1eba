#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <memory>
#include <string>
#include <vector>

#include <ZelvoraSDK/ui/zelvora_assistant.h>
#include <tests/ui/application.h>
#include <tests/ui/scene.h>

namespace zelvora {

/// A page with a command surface over it, and how it is shown.
struct ConversationLook {
  QSize size{390, 844};
  bool dark = false;
  bool rightToLeft = false;
  double textScale = 1;
  QByteArray more;  ///< Further properties of the surface.
};

/// A conversation with an assistant on stand-ins, brought to each of its states.
class Conversation {
 public:
  explicit Conversation(const ConversationLook& look);
  ~Conversation();

  /// Every state of the surface that bring() knows.
  static const std::vector<std::string>& states();
  /// Brings the surface from rest to a state. Throws when it does not get there.
  void bring(const std::string& state);

  void listen();
  /// What the recogniser understands of the command that is being spoken.
  void hear(const std::string& partial);
  void await(const std::string& mode);
  void awaitFocus(const char* objectName);
  [[nodiscard]] std::string mode() const;
  /// The words in the field.
  [[nodiscard]] QString typed() const;

  Application application;
  std::unique_ptr<Scene> scene;
  ZelvoraAssistant* assistant = nullptr;
  QQuickItem* surface = nullptr;
};

}  // namespace zelvora

#pragma once

#include <functional>
#include <memory>
#include <string>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/facade/callbacks.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/platform/platform.h>
#include <ZelvoraSDK/spec/any_encodable.h>

namespace zelvora {

/// Supplies the backend access token, with or without its "Bearer " prefix. Called whenever a
/// request needs one, on any thread and possibly several times at once; may fail.
using AccessTokenProvider = std::function<asio::awaitable<std::string>()>;

/// The one object that an application holds: it understands what the user says or types.
///
/// Threads: construction and every operation may come from any thread. `onResult`, `onAuditEvent`
/// and `onStage` are called on the platform's main executor and set only there, or before the
/// first operation. Releasing the façade is safe at any time: work under way ends quietly and no
/// callback comes any more. Operations keep what they need of the platform alive.
class Zelvora {
 public:
  /// The name of a JSON resource of the application's bundle, without the extension.
  struct SpecResource {
    std::string name;
  };

  /// Every setting given. `accessToken` left out: the publishable key serves as the token.
  Zelvora(Platform platform, ZelvoraSettings settings, AnyEncodable spec,
          AccessTokenProvider accessToken = {});

  /// The settings come from the property list of the platform's bundle; fatal without a key there.
  Zelvora(Platform platform, AnyEncodable spec, AccessTokenProvider accessToken = {});

  /// The spec too comes from the bundle. Missing, unreadable or malformed: fatal.
  Zelvora(Platform platform, const SpecResource& spec, AccessTokenProvider accessToken = {});

  ~Zelvora();
  Zelvora(const Zelvora&) = delete;
  Zelvora& operator=(const Zelvora&) = delete;

  [[nodiscard]] const ZelvoraSTTConfig& sttConfig() const;

  /// Routes one utterance on the caller's executor. Throws Error when a backend stage fails.
  asio::awaitable<ZelvoraResult> route(std::string text);

  /// Routes one utterance in the background and hands its one outcome to `onResult`; a failure
  /// becomes an unsupported outcome that carries the error's description.
  void routeAndCallback(std::string text);

  /// Counts the user's pick of a screen, so that it ranks higher in later choices.
  void recordUserChoice(std::string screenId);

 private:
  class Core;

  explicit Zelvora(std::shared_ptr<Core> core);

  std::shared_ptr<Callbacks> callbacks_ = std::make_shared<Callbacks>();
  std::shared_ptr<Core> core_;

 public:
  // Properties, to be assigned like members; the callbacks themselves outlive a call under way.
  std::function<void(ZelvoraResult)>& onResult = callbacks_->onResult;
  std::function<void(ZelvoraAuditEvent)>& onAuditEvent = callbacks_->onAuditEvent;
  std::function<void(StageReport)>& onStage = callbacks_->onStage;
};

}  // namespace zelvora

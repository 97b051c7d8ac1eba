#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/backend/access_token.h>
#include <ZelvoraSDK/backend/transcription.h>
#include <ZelvoraSDK/base/uuid.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/url.h>

namespace zelvora {

/// Turns recorded sound into text somewhere else. Callable from any thread.
class ZelvoraCloudSTTProvider {
 public:
  virtual ~ZelvoraCloudSTTProvider() = default;

  /// What was said, never blank. Throws Error.
  virtual asio::awaitable<std::string> transcribe(
      AudioData audio, std::string locale, std::optional<ZelvoraSTTRequestParams> sttParams) = 0;

  asio::awaitable<std::string> transcribe(AudioData audio, std::string locale) {
    return transcribe(std::move(audio), std::move(locale), std::nullopt);
  }
};

/// For applications without cloud transcription: every call fails with code 501.
class ZelvoraNoCloudSTTProvider final : public ZelvoraCloudSTTProvider {
 public:
  using ZelvoraCloudSTTProvider::transcribe;
  asio::awaitable<std::string> transcribe(
      AudioData audio, std::string locale,
      std::optional<ZelvoraSTTRequestParams> sttParams) override;
};

/// Uploads to the backend's /api/stt. A call goes on when the provider is gone.
class ZelvoraBackendCloudSTTProvider final : public ZelvoraCloudSTTProvider {
 public:
  struct Settings {
    Url baseURL;
    std::string publishableKey;  ///< Never struck from an error: it is no secret.
    AccessTokenProvider tokenProvider;
    /// Asked once for a fresh token when the backend rejects the first; unset: `tokenProvider`.
    AccessTokenProvider tokenRefreshProvider;
    /// Tells the uploads' boundaries apart; unique each time.
    std::function<std::string()> makeUuid = randomUuid;
  };

  ZelvoraBackendCloudSTTProvider(Settings settings, std::shared_ptr<UrlSession> session);

  using ZelvoraCloudSTTProvider::transcribe;
  /// Fails with the transport's and the token providers' errors, unchanged, and as
  /// `readTranscription` says.
  asio::awaitable<std::string> transcribe(
      AudioData audio, std::string locale,
      std::optional<ZelvoraSTTRequestParams> sttParams) override;

 private:
  std::shared_ptr<const Settings> settings_;
  std::shared_ptr<UrlSession> session_;
};

}  // namespace zelvora

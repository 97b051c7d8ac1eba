#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/url.h>
#include <ZelvoraSDK/speech/stt_protocols.h>
#include <ZelvoraSDK/speech/uuid.h>

namespace zelvora {

/// Supplies the backend's access token, with or without its "Bearer " prefix. Called on any thread,
/// possibly several times at once; may fail.
using TokenProvider = std::function<asio::awaitable<std::string>()>;

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
    TokenProvider tokenProvider;
    /// Asked once for a fresh token when the backend rejects the first; unset: `tokenProvider`.
    TokenProvider tokenRefreshProvider;
    /// Tells the uploads' boundaries apart; unique each time.
    std::function<std::string()> makeUuid = randomUuid;
  };

  ZelvoraBackendCloudSTTProvider(Settings settings, std::shared_ptr<UrlSession> session);

  using ZelvoraCloudSTTProvider::transcribe;
  /// Fails with the transport's and the token providers' errors, unchanged, and as
  /// `transcription_answer.h` says.
  asio::awaitable<std::string> transcribe(
      AudioData audio, std::string locale,
      std::optional<ZelvoraSTTRequestParams> sttParams) override;

 private:
  std::shared_ptr<const Settings> settings_;
  std::shared_ptr<UrlSession> session_;
};

}  // namespace zelvora

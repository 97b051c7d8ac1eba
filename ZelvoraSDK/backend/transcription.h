#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/network.h>

// /api/stt: what is asked, and what the answer says.

namespace zelvora {

/// The domain of failures of speech recognition. Codes of the cloud providers: 0 no usable text, 2
/// no HTTP response, 501 no provider, else the HTTP status.
inline constexpr char kSTTErrorDomain[] = "ZelvoraSTT";

/// What a cloud transcriber gets besides the sound.
struct ZelvoraSTTRequestParams {
  std::string language;
  std::string prompt;
  std::vector<std::string> hints;  ///< Words that are likely to be said.

  bool operator==(const ZelvoraSTTRequestParams&) const = default;
};

/// Sound to be put into words.
struct RecordedSpeech {
  AudioData audio;
  std::string locale;
  std::optional<ZelvoraSTTRequestParams> sttParams;  ///< Absent: only the sound is sent.
};

/// What one upload of a recording needs besides it.
struct UploadPass {
  std::string accessToken;  ///< With or without its "Bearer " prefix.
  std::string boundary;     ///< Separates the parts; new for every upload.
};

/// The upload, a multipart form. Any audio travels as "audio.wav": the backend
/// looks at the bytes. REQUIRES: the boundary occurs in none of the parts.
[[nodiscard]] UrlRequest transcriptionRequest(const Url& baseURL, const RecordedSpeech& speech,
                                              const UploadPass& pass);

/// The text of the answer, trimmed and never blank: the member "text" of a JSON object, else the
/// body itself. Throws Error in `kSTTErrorDomain`.
[[nodiscard]] std::string readTranscription(const UrlResponse& answer);

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
    /// A boundary for each upload; unique each time.
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

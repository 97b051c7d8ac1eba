#include <ZelvoraSDK/backend/cloud_stt.h>

#include <utility>

#include <ZelvoraSDK/backend/private/exchange.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

constexpr int kNotConfigured = 501;
constexpr int kTokenRejected = 401;

// The coroutines are free functions that own all they use, so that the provider may be
// destroyed.

using Settings = ZelvoraBackendCloudSTTProvider::Settings;

asio::awaitable<std::string> refuse() {
  throw Error(kSTTErrorDomain, kNotConfigured, "Cloud STT provider is not configured");
  co_return std::string();
}

struct Upload {
  UrlRequest request;
  std::string secret;
};

Upload uploadOf(const RecordedSpeech& speech, std::string token, const Settings& settings) {
  std::string secret = secretOf(token, settings.publishableKey);
  const UploadPass pass{std::move(token), "Boundary-" + settings.makeUuid()};
  return {transcriptionRequest(settings.baseURL, speech, pass), std::move(secret)};
}

asio::awaitable<std::string> send(std::shared_ptr<UrlSession> session, Upload upload) {
  const UrlResponse answer =
      co_await exchange(std::move(session), std::move(upload.request), std::move(upload.secret));
  co_return readTranscription(answer);
}

asio::awaitable<std::string> transcribeWithRetry(std::shared_ptr<const Settings> settings,
                                                 std::shared_ptr<UrlSession> session,
                                                 RecordedSpeech speech) {
  requireSecure(settings->baseURL);  // before anyone is asked for a token
  std::string token = co_await settings->tokenProvider();
  Upload first = uploadOf(speech, std::move(token), *settings);
  try {
    co_return co_await send(session, std::move(first));
  } catch (const Error& failure) {
    if (failure.code() != kTokenRejected) throw;
  }
  const AccessTokenProvider& fresh =
      settings->tokenRefreshProvider ? settings->tokenRefreshProvider : settings->tokenProvider;
  token = co_await fresh();
  Upload second = uploadOf(speech, std::move(token), *settings);
  co_return co_await send(std::move(session), std::move(second));
}

}  // namespace

asio::awaitable<std::string> ZelvoraNoCloudSTTProvider::transcribe(
    AudioData, std::string, std::optional<ZelvoraSTTRequestParams>) {
  return refuse();
}

ZelvoraBackendCloudSTTProvider::ZelvoraBackendCloudSTTProvider(Settings settings,
                                                               std::shared_ptr<UrlSession> session)
    : settings_(std::make_shared<const Settings>(std::move(settings))),
      session_(std::move(session)) {}

asio::awaitable<std::string> ZelvoraBackendCloudSTTProvider::transcribe(
    AudioData audio, std::string locale, std::optional<ZelvoraSTTRequestParams> sttParams) {
  RecordedSpeech speech{std::move(audio), std::move(locale), std::move(sttParams)};
  return transcribeWithRetry(settings_, session_, std::move(speech));
}

}  // namespace zelvora

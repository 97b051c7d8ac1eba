#include <ZelvoraSDK/backend/cloud_stt.h>

#include <utility>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

constexpr int kNotConfigured = 501;
constexpr int kTokenRejected = 401;

// The coroutines are free functions that own all they use, so that a provider may go meanwhile.

using Settings = ZelvoraBackendCloudSTTProvider::Settings;

asio::awaitable<std::string> refuse() {
  throw Error(kSTTErrorDomain, kNotConfigured, "Cloud STT provider is not configured");
  co_return std::string();
}

asio::awaitable<std::string> upload(std::shared_ptr<UrlSession> session, UrlRequest request) {
  const UrlResponse answer = co_await session->send(std::move(request));
  co_return readTranscription(answer);
}

UrlRequest requestFor(const RecordedSpeech& speech, std::string token, const Settings& settings) {
  const UploadPass pass{std::move(token), "Boundary-" + settings.makeUuid()};
  return transcriptionRequest(settings.baseURL, speech, pass);
}

asio::awaitable<std::string> transcribeWithRetry(std::shared_ptr<const Settings> settings,
                                                 std::shared_ptr<UrlSession> session,
                                                 RecordedSpeech speech) {
  std::string token = co_await settings->tokenProvider();
  try {
    co_return co_await upload(session, requestFor(speech, std::move(token), *settings));
  } catch (const Error& failure) {
    if (failure.code() != kTokenRejected) throw;
  }
  const AccessTokenProvider& fresh =
      settings->tokenRefreshProvider ? settings->tokenRefreshProvider : settings->tokenProvider;
  token = co_await fresh();
  co_return co_await upload(session, requestFor(speech, std::move(token), *settings));
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

#include <ZelvoraSDK/backend/transcription.h>

#include <string_view>
#include <utility>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {

namespace {

constexpr int kEmptyResult = 0;
constexpr int kNoHttpResponse = 2;
constexpr std::string_view kLineEnd = "\r\n";

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

/// Builds the body of a multipart/form-data upload, part by part, in the order of the calls.
class MultipartForm {
 public:
  explicit MultipartForm(std::string boundary) : boundary_(std::move(boundary)) {}

  /// A part that is a line of text; written as it is, also when empty.
  void addField(std::string_view name, std::string_view value) {
    openPart("name=" + quoted(name));
    body_.append(kLineEnd).append(value).append(kLineEnd);
  }

  struct File {
    std::string_view name;  ///< Of the form's part.
    std::string_view fileName;
    std::string_view contentType;
    const AudioData& content;  ///< Written byte for byte.
  };
  void addFile(const File& file) {
    openPart("name=" + quoted(file.name) + "; filename=" + quoted(file.fileName));
    body_.append("Content-Type: ").append(file.contentType).append(kLineEnd).append(kLineEnd);
    body_.append(reinterpret_cast<const char*>(file.content.data()), file.content.size());
    body_.append(kLineEnd);
  }

  [[nodiscard]] std::string contentType() const {
    return "multipart/form-data; boundary=" + boundary_;
  }

  /// Closes the form and hands it over.
  [[nodiscard]] std::string finish() && {
    body_.append("--").append(boundary_).append("--").append(kLineEnd);
    return std::move(body_);
  }

 private:
  void openPart(std::string_view disposition) {
    body_.append("--").append(boundary_).append(kLineEnd);
    body_.append("Content-Disposition: form-data; ").append(disposition).append(kLineEnd);
  }

  std::string boundary_;
  std::string body_;
};

void addParams(MultipartForm& form, const ZelvoraSTTRequestParams& params) {
  form.addField("language", params.language);
  form.addField("prompt", params.prompt);
  if (!params.hints.empty()) form.addField("hints", toJson(params.hints));
}

/// The object's member "text"; absent when the body is not JSON or holds no such string.
std::optional<std::string> textMember(std::string_view body) {
  try {
    const JsonDocument document = parseJson(body);
    return JsonCursor(document.root()).optional<std::string>("text");
  } catch (const Error&) {
    return std::nullopt;
  }
}

std::string readText(std::string_view bodyText) {
  const std::string member = textMember(bodyText).value_or("");
  if (!isBlank(member)) return std::string(trimmed(member));
  if (isBlank(bodyText)) throw Error(kSTTErrorDomain, kEmptyResult, "Empty STT result");
  return std::string(trimmed(bodyText));
}

}  // namespace

UrlRequest transcriptionRequest(const Url& baseURL, const RecordedSpeech& speech,
                                const UploadPass& pass) {
  MultipartForm form(pass.boundary);
  if (speech.sttParams) addParams(form, *speech.sttParams);
  form.addFile({.name = "audio",
                .fileName = "audio.wav",
                .contentType = "audio/wav",
                .content = speech.audio});

  const std::string contentType = form.contentType();
  UrlRequest request = post(baseURL, "/api/stt", contentType, std::move(form).finish());
  request.headers.push_back({"Authorization", bearerAuthorization(pass.accessToken)});
  request.headers.push_back({"X-Locale", speech.locale});
  return request;
}

std::string readTranscription(const UrlResponse& answer) {
  if (!answer.status) throw Error(kSTTErrorDomain, kNoHttpResponse, "No HTTP response");
  const int status = *answer.status;
  const std::string text = bodyText(answer);
  if (isSuccess(status)) return readText(text);
  throw Error(kSTTErrorDomain, status, text.empty() ? "STT HTTP " + std::to_string(status) : text);
}

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

#include <ZelvoraSDK/speech/transcription_request.h>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/speech/multipart.h>

namespace zelvora {
namespace {

constexpr Seconds kTimeout{60};

void addParams(MultipartForm& form, const ZelvoraSTTRequestParams& params) {
  form.addField("language", params.language);
  form.addField("prompt", params.prompt);
  if (!params.hints.empty()) form.addField("hints", toJson(params.hints));
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

  UrlRequest request;
  request.method = "POST";
  request.url = toString(appendingPath(baseURL, "/api/stt"));
  request.headers = {{"Content-Type", form.contentType()},
                     {"Authorization", bearerAuthorization(pass.accessToken)},
                     {"X-Locale", speech.locale}};
  request.body = form.finish();
  request.timeout = kTimeout;
  return request;
}

}  // namespace zelvora

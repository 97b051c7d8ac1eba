#include <ZelvoraSDK/adapters/curl/private/curl_failure.h>

#include <string>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

/// A sentence for the failures that every user meets; nullptr for the others.
const char* plainSentence(CURLcode code) {
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST: return "The server could not be found.";
    case CURLE_COULDNT_RESOLVE_PROXY: return "The proxy could not be found.";
    case CURLE_COULDNT_CONNECT: return "Could not connect to the server.";
    case CURLE_OPERATION_TIMEDOUT: return "The request timed out.";
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR: return "The connection to the server was lost.";
    case CURLE_PARTIAL_FILE: return "The server's answer was cut short.";
    default: return nullptr;
  }
}

}  // namespace

Error curlFailure(CURLcode code, const char* detail) {
  const char* text = plainSentence(code);
  if (text == nullptr) text = *detail != '\0' ? detail : curl_easy_strerror(code);
  return Error(kCurlErrorDomain, code, text);
}

Error responseTooLarge() {
  constexpr std::size_t kMebibyte = 1 << 20;
  const std::string limit = std::to_string(kMaxResponseBytes / kMebibyte);
  return Error(kCurlErrorDomain, CURLE_FILESIZE_EXCEEDED,
               "The server's answer is larger than " + limit + " MiB.");
}

Error transferCancelled() {
  return Error(kCurlErrorDomain, CURLE_ABORTED_BY_CALLBACK, "The request was cancelled.");
}

Error sessionClosed() {
  return Error(kCurlErrorDomain, CURLE_ABORTED_BY_CALLBACK, "The session was closed.");
}

}  // namespace zelvora

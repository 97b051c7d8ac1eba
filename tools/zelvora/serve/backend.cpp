#include "backend.h"

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>

#include "catalogue.h"
#include "interpretation.h"
#include "semantic.h"

namespace zelvora::serve {
namespace {

constexpr std::int64_t kDefaultTopK = 3;

/// Why the authorisation will not do, or nothing.
std::optional<std::string> refusal(const BackendOptions& options, std::string_view authorization) {
  constexpr std::string_view kBearer = "Bearer ";
  if (!authorization.starts_with(kBearer)) return "Authorization: Bearer TOKEN is missing";
  const std::string_view token = trimmed(authorization.substr(kBearer.size()));
  if (token.empty()) return "The bearer token is empty";
  if (options.requiredToken && token != *options.requiredToken)
    return "The bearer token is not the one that this backend was started with";
  return std::nullopt;
}

std::string localeIn(const JsonCursor& body) {
  std::string locale = "en-US";
  body.readIfPresent("locale", locale);
  return locale;
}

/// The tasks that a request brings, else those of the backend's own spec.
std::vector<Destination> tasksFor(const JsonCursor& bearer, const BackendOptions& options,
                                  std::string_view locale) {
  if (bearer.find("tasks") || options.spec.empty()) return tasksIn(bearer, locale);
  const JsonDocument own = parseJson(options.spec);
  return tasksIn(JsonCursor(own.root()), locale);
}

std::string resolveSemantic(const BackendOptions& options, const JsonCursor& body) {
  const auto text = body.required<std::string>("text");
  const std::string locale = localeIn(body);
  std::int64_t topK = kDefaultTopK;
  body.readIfPresent("top_k", topK);
  return semanticAnswer(tasksFor(body, options, locale), text, locale, topK);
}

std::string resolveCatalogue(const BackendOptions& options, const JsonCursor& body) {
  return catalogueAnswer(options.catalogue, body.required<std::string>("query"));
}

std::string interpret(const BackendOptions& options, const JsonCursor& body) {
  const auto text = body.required<std::string>("text");
  const std::string locale = localeIn(body);
  const auto spec = body.find("spec");
  std::vector<Destination> destinations = tasksFor(spec ? *spec : body, options, locale);
  destinations.insert(destinations.end(), options.catalogue.begin(), options.catalogue.end());
  return interpretationAnswer(destinations, text, locale);
}

Reply transcribe(const BackendOptions& options, const Request& request) {
  if (!options.transcriber) return {501, "This development backend has no speech recogniser"};
  if (request.audio.empty()) return {400, "The form has no part \"audio\", or an empty one"};
  try {
    const auto text = options.transcriber(request.audio, request.locale);
    return {200, jsonObject([&](JsonWriter& out) { out.member("text", text.value_or("")); })};
  } catch (const Error& error) {
    return {400, error.description()};
  }
}

using JsonEndpoint = std::string (*)(const BackendOptions&, const JsonCursor&);

Reply answered(JsonEndpoint endpoint, const BackendOptions& options, const std::string& body) {
  try {
    const JsonDocument document = parseJson(body);
    return {200, endpoint(options, JsonCursor(document.root()))};
  } catch (const Error& error) {
    return {400, error.description()};
  }
}

}  // namespace

Reply reply(const BackendOptions& options, const Request& request) {
  // The catalogue is asked with the publishable key, in the body, and without a token.
  if (request.path == "/api/semanticCatalog/resolve")
    return answered(resolveCatalogue, options, request.body);

  const bool isKnown = request.path == "/api/semantic/resolve" ||
                       request.path == "/api/interpret" || request.path == "/api/stt";
  if (!isKnown) return {404, "No such endpoint"};
  if (const auto reason = refusal(options, request.authorization)) return {401, *reason};
  if (request.path == "/api/stt") return transcribe(options, request);
  return answered(request.path == "/api/interpret" ? interpret : resolveSemantic, options,
                  request.body);
}

}  // namespace zelvora::serve

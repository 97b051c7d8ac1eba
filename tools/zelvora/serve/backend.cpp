#include "backend.h"

#include <algorithm>
#include <cstdint>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora::serve {
namespace {

constexpr std::int64_t kDefaultTopK = 3;

// /api/semantic/resolve

/// At most `topK` of `tasks`, best first.
std::string semanticAnswer(const std::vector<Destination>& tasks, std::string_view text,
                           std::string_view locale, std::int64_t topK) {
  return jsonObject([&](JsonWriter& out) {
    out.key("matches");
    out.beginArray();
    for (const Hit& hit : search(tasks, text, locale)) {
      if (topK-- <= 0) break;
      out.beginObject();
      out.member("taskId", tasks[hit.index].id);
      out.member("confidence", hit.confidence);
      out.endObject();
    }
    out.endArray();
  });
}

// /api/semanticCatalog/resolve

/// The library opens any screen that is named, so a doubtful item is better not named.
constexpr double kNavigateConfidence = 0.6;
constexpr std::size_t kMaxItems = 3;

void writeNavigation(JsonWriter& out, const Destination& item, double score) {
  out.member("intent", "navigate");
  out.member("screenId", item.screenId);
  out.member("params", item.params);
  out.member("score", score);
  out.member("say", item.say);
}

void writeItems(JsonWriter& out, const std::vector<Destination>& items,
                const std::vector<Hit>& hits) {
  out.member("intent", "none");
  out.key("choices");
  out.beginArray();
  for (std::size_t at = 0; at < std::min(hits.size(), kMaxItems); ++at) {
    out.beginObject();
    out.member("id", items[hits[at].index].id);
    out.member("title", items[hits[at].index].title);
    out.endObject();
  }
  out.endArray();
}

/// The best item when it is clear, else the intent "none" with the best items as choices. The
/// request names no locale, so words are stemmed as English ones; Hebrew ones have no stem and are
/// not harmed.
std::string catalogueAnswer(const std::vector<Destination>& items, std::string_view query) {
  const std::vector<Hit> hits = search(items, query, "en");
  return jsonObject([&](JsonWriter& out) {
    if (!hits.empty() && hits.front().confidence >= kNavigateConfidence)
      writeNavigation(out, items[hits.front().index], hits.front().confidence);
    else
      writeItems(out, items, hits);
  });
}

// /api/interpret

constexpr double kExecuteConfidence = 0.6;
constexpr double kChoicesConfidence = 0.2;  ///< Of the best; below it nothing was understood.
constexpr double kChoiceShare = 0.5;        ///< Of the best's confidence, for each choice.
constexpr std::size_t kMaxChoices = 4;

void writeExecution(JsonWriter& out, const Destination& destination, double confidence) {
  out.member("mode", "execute");
  out.key("task");
  out.beginObject();
  out.member("id", destination.id);
  out.member("confidence", confidence);
  out.endObject();
  out.member("say", destination.say.value_or("Opening: " + destination.title));
  out.member("screenId", destination.screenId);
  out.member("params", destination.params);
}

void writeChoice(JsonWriter& out, const Destination& destination, double confidence) {
  out.beginObject();
  out.member("task_id", destination.id);
  out.member("title", destination.title);
  out.member("confidence", confidence);
  out.member("screenId", destination.screenId);
  out.member("params", destination.params);
  out.endObject();
}

void writeChoices(JsonWriter& out, const std::vector<Destination>& destinations,
                  const std::vector<Hit>& hits) {
  out.member("mode", "show_choices");
  out.member("say", "Did you mean one of these?");
  out.key("choices");
  out.beginArray();
  for (std::size_t at = 0; at < std::min(hits.size(), kMaxChoices); ++at)
    if (hits[at].confidence >= kChoiceShare * hits.front().confidence)
      writeChoice(out, destinations[hits[at].index], hits[at].confidence);
  out.endArray();
}

void writeUnsupported(JsonWriter& out) {
  out.member("mode", "unsupported");
  out.member("say", "Nothing in this application or its catalogue fits that.");
}

/// Over the tasks and the catalogue together: `execute` when one is clear, `show_choices` when some
/// are close, else `unsupported` with what to say.
std::string interpretationAnswer(const std::vector<Destination>& destinations,
                                 std::string_view text, std::string_view locale) {
  const std::vector<Hit> hits = search(destinations, text, locale);
  const double best = hits.empty() ? 0 : hits.front().confidence;
  return jsonObject([&](JsonWriter& out) {
    if (best >= kExecuteConfidence)
      writeExecution(out, destinations[hits.front().index], best);
    else if (best >= kChoicesConfidence)
      writeChoices(out, destinations, hits);
    else
      writeUnsupported(out);
  });
}

/// Why the authorisation is refused, or nothing.
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

std::optional<Reply> refusedBeforeBody(const BackendOptions& options, std::string_view path,
                                       std::string_view authorization) {
  // The catalogue is asked with the publishable key, in the body, and without a token.
  if (path == "/api/semanticCatalog/resolve") return std::nullopt;
  const bool isKnown =
      path == "/api/semantic/resolve" || path == "/api/interpret" || path == "/api/stt";
  if (!isKnown)
    return Reply{404,
                 "The endpoints are POST /api/semantic/resolve, /api/semanticCatalog/resolve, "
                 "/api/interpret and /api/stt"};
  if (const auto reason = refusal(options, authorization)) return Reply{401, *reason};
  return std::nullopt;
}

Reply reply(const BackendOptions& options, const Request& request) {
  if (auto refused = refusedBeforeBody(options, request.path, request.authorization))
    return *std::move(refused);
  if (request.path == "/api/stt") return transcribe(options, request);
  if (request.path == "/api/semanticCatalog/resolve")
    return answered(resolveCatalogue, options, request.body);
  return answered(request.path == "/api/interpret" ? interpret : resolveSemantic, options,
                  request.body);
}

}  // namespace zelvora::serve

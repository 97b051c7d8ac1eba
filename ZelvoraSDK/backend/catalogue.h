#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/record.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/network.h>

// /api/semanticCatalog/resolve: what is asked, what the answer says, and what it means.

namespace zelvora {

/// What /api/semanticCatalog/resolve is asked. Goes without an access token.
struct CatalogQuery {
  std::string query;  ///< The normalised utterance.
  std::string publishableKey;
  std::string platform = kBackendPlatform;
  std::string bundleId;
  std::string sdkVersion = ZelvoraKit::version;
};

/// An entity that the catalogue found; carried by the format and without effect.
struct SemanticCatalogChoice {
  std::string id;
  std::optional<std::string> title;
  std::optional<std::string> entityType;

  bool operator==(const SemanticCatalogChoice&) const = default;
};

/// The catalogue's answer. Fields carry the names of their JSON keys.
struct SemanticCatalogResult {
  std::string intent;  ///< "navigate" leads to a screen; any other to nothing.
  std::optional<std::string> screenId;
  std::optional<Params> params;
  std::optional<double> score;
  std::optional<std::vector<SemanticCatalogChoice>> choices;
  std::optional<std::string> say;

  bool operator==(const SemanticCatalogResult&) const = default;
};

template <class Visitor, RecordOf<CatalogQuery> Record>
void fields(Visitor&& visit, Record& query) {
  visit("query", query.query);
  visit("publishable_key", query.publishableKey);
  visit("platform", query.platform);
  visit("bundle_id", query.bundleId);
  visit("sdk_version", query.sdkVersion);
}

template <class Visitor, RecordOf<SemanticCatalogChoice> Record>
void fields(Visitor&& visit, Record& choice) {
  visit("id", choice.id);
  visit("title", choice.title);
  visit("entityType", choice.entityType);
}

template <class Visitor, RecordOf<SemanticCatalogResult> Record>
void fields(Visitor&& visit, Record& result) {
  visit("intent", result.intent);
  visit("screenId", result.screenId);
  visit("params", result.params);
  visit("score", result.score);
  visit("choices", result.choices);
  visit("say", result.say);
}

[[nodiscard]] UrlRequest catalogRequest(const Url& baseURL, const CatalogQuery& query);

/// Throws Error as `readSemanticAnswer` does.
[[nodiscard]] SemanticCatalogResult readCatalogAnswer(const UrlResponse& answer);

/// The screen that the catalogue leads to; absent when it leads to none.
[[nodiscard]] std::optional<ZelvoraResult> catalogResult(const SemanticCatalogResult& answer);

}  // namespace zelvora

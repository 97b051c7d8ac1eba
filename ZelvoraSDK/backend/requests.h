#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/version.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/url.h>
#include <ZelvoraSDK/routing/semantic_records.h>
#include <ZelvoraSDK/spec/any_encodable.h>

namespace zelvora {

/// How the library names its platform to the backend, wherever it runs.
inline constexpr char kBackendPlatform[] = "ios";

/// What /api/interpret is asked.
struct InterpretQuery {
  std::string text;  ///< The normalised utterance.
  std::string locale;
  const AnyEncodable& spec;  ///< The application's whole spec, sent as it was given.
  std::string accessToken;   ///< With or without its "Bearer " prefix.
};

/// What /api/semantic/resolve is asked.
struct SemanticQuery {
  std::string text;  ///< The normalised utterance.
  std::string locale;
  std::string appId;  ///< The publishable key.
  std::vector<SemanticResolver::SemanticTaskDescriptor> tasks;
  std::int64_t topK = 3;    ///< How many matches are wanted.
  std::string accessToken;  ///< With or without its "Bearer " prefix.
};

/// What /api/semanticCatalog/resolve is asked. Goes without an access token.
struct CatalogQuery {
  std::string query;  ///< The normalised utterance.
  std::string publishableKey;
  std::string platform = kBackendPlatform;
  std::string bundleId;
  std::string sdkVersion = ZelvoraKit::version;
};

/// Throws Error when the spec cannot be written as JSON.
[[nodiscard]] UrlRequest interpretRequest(const Url& baseURL, const InterpretQuery& query);
[[nodiscard]] UrlRequest semanticRequest(const Url& baseURL, const SemanticQuery& query);
[[nodiscard]] UrlRequest catalogRequest(const Url& baseURL, const CatalogQuery& query);

}  // namespace zelvora

#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/outcome/task_action.h>

namespace zelvora {

/// An entity that the catalogue found; carried by the format and without effect.
struct SemanticCatalogChoice {
  std::string id;
  std::optional<std::string> title;
  std::optional<std::string> entityType;

  bool operator==(const SemanticCatalogChoice&) const = default;
};

/// What /api/semanticCatalog/resolve answers. Fields carry the names of their JSON keys.
struct SemanticCatalogResult {
  std::string intent;  ///< "navigate" leads to a screen; any other to nothing.
  std::optional<std::string> screenId;
  std::optional<Params> params;
  std::optional<double> score;
  std::optional<std::vector<SemanticCatalogChoice>> choices;
  std::optional<std::string> say;

  bool operator==(const SemanticCatalogResult&) const = default;
};

void readJson(const JsonCursor& in, SemanticCatalogChoice& choice);
void readJson(const JsonCursor& in, SemanticCatalogResult& result);

}  // namespace zelvora

#include <ZelvoraSDK/backend/catalogue.h>

#include <ZelvoraSDK/base/json_read.h>

namespace zelvora {

void readJson(const JsonCursor& in, SemanticCatalogChoice& choice) {
  in.read("id", choice.id);
  in.read("title", choice.title);
  in.read("entityType", choice.entityType);
}

void readJson(const JsonCursor& in, SemanticCatalogResult& result) {
  in.read("intent", result.intent);
  in.read("screenId", result.screenId);
  in.read("params", result.params);
  in.read("score", result.score);
  in.read("choices", result.choices);
  in.read("say", result.say);
}

}  // namespace zelvora

#include <ZelvoraSDK/facade/prepared_spec.h>

namespace zelvora {

PreparedSpec::PreparedSpec(const StoredSpec& spec) : resolved_(spec.resolve()) {
  if (!resolved_.spec) return;
  tasks_.emplace(resolved_.spec->tasks());
  if (resolved_.thresholds) thresholds_ = *resolved_.thresholds;
}

const RuntimeSpec::Context* PreparedSpec::enabledContext() const {
  if (!full() || !full()->routing.context || !full()->routing.context->enabled) return nullptr;
  return &*full()->routing.context;
}

const std::vector<std::string>& PreparedSpec::stopwords(const std::string& locale) const {
  static const std::vector<std::string> kNone;
  if (!full()) return kNone;
  const RuntimeSpec::Routing& routing = full()->routing;
  return routing.thresholds.stopwordsByLocale.ownOr(locale, routing.stopwords);
}

const OrderedMap<std::string>* PreparedSpec::replacements(const std::string& locale) const {
  if (!full() || !full()->stt) return nullptr;
  const auto* table = full()->stt->replacementsByLocale.find(locale);
  return table && !table->empty() ? table : nullptr;
}

}  // namespace zelvora

#include "option_bundle.h"

#include <map>
#include <utility>

namespace zelvora::tool {
namespace {

class OptionBundle final : public AppBundle {
 public:
  OptionBundle(std::shared_ptr<AppBundle> bundle, const CommonOptions& options)
      : bundle_(std::move(bundle)), identifier_(options.bundleId) {
    override("ZelvoraPublishableKey", options.key);
    override("ZelvoraLocale", options.locale);
    override("ZelvoraBackendBaseURL", options.baseURL);
    override("ZelvoraSTTMode", options.sttMode);
    if (!stringSetting("ZelvoraPublishableKey")) override("ZelvoraPublishableKey", "demo");
  }

  [[nodiscard]] std::optional<std::filesystem::path> resource(
      const std::string& name, const std::string& extension) const override {
    return bundle_->resource(name, extension);
  }

  [[nodiscard]] std::optional<std::string> stringSetting(const std::string& key) const override {
    if (const auto found = overrides_.find(key); found != overrides_.end()) return found->second;
    return bundle_->stringSetting(key);
  }

  [[nodiscard]] std::optional<double> numberSetting(const std::string& key) const override {
    return bundle_->numberSetting(key);
  }

  [[nodiscard]] std::optional<std::string> identifier() const override {
    return identifier_ ? identifier_ : bundle_->identifier();
  }

  [[nodiscard]] std::string description() const override { return bundle_->description(); }

 private:
  void override(const char* key, const std::optional<std::string>& value) {
    if (value) overrides_[key] = *value;
  }

  std::shared_ptr<AppBundle> bundle_;
  std::optional<std::string> identifier_;
  std::map<std::string, std::string> overrides_;
};

}  // namespace

std::shared_ptr<AppBundle> withOptions(std::shared_ptr<AppBundle> bundle,
                                       const CommonOptions& options) {
  return std::make_shared<OptionBundle>(std::move(bundle), options);
}

}  // namespace zelvora::tool

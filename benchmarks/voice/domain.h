#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/spec/stored_spec.h>

namespace zelvora::bench {

/// A spec, its vocabulary, and the device's part of the text pipeline. Immutable once made, so
/// callable from any thread.
class Domain {
 public:
  explicit Domain(const std::filesystem::path& spec);

  [[nodiscard]] const StoredSpec& spec() const { return spec_; }
  [[nodiscard]] const std::vector<std::string>& vocabulary() const { return vocabulary_; }

  /// The task that `text` opens at once; empty when it opens none.
  [[nodiscard]] std::string taskOf(const std::string& text) const;

 private:
  StoredSpec spec_;
  std::vector<std::string> vocabulary_;
  PreparedSpec prepared_;
};

}  // namespace zelvora::bench

#pragma once

#include <memory>
#include <string_view>

#include <boost/json/value.hpp>

namespace zelvora {

/// A parsed document. Owns all of its tree in one arena, so moving and destroying it is cheap.
class JsonDocument {
 public:
  /// Valid as long as the document lives, wherever it is moved.
  [[nodiscard]] const boost::json::value& root() const;

  JsonDocument(JsonDocument&&) noexcept;
  JsonDocument& operator=(JsonDocument&&) noexcept;
  ~JsonDocument();

 private:
  friend JsonDocument parseJson(std::string_view bytes);
  struct Tree;
  explicit JsonDocument(std::unique_ptr<const Tree> tree);

  std::unique_ptr<const Tree> tree_;
};

/// Parses a whole document of any kind, scalars included. Skips a byte-order mark; of duplicate
/// keys the last value counts, at the place of the first. Doubles are the nearest to what is
/// written; a number too small for one is 0. Throws Error in `kJsonErrorDomain`, also for what
/// passes `kMaxJsonBytes` or `kMaxJsonDepth`.
[[nodiscard]] JsonDocument parseJson(std::string_view bytes);

}  // namespace zelvora

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvora {

/// One change of a spec's text.
struct SpecEdit {
  enum class Kind {
    set,     ///< The member `key` of the object at `path` becomes `json`; both may be missing.
    append,  ///< `json` becomes the last element of the array `key` of the object at `path`.
    remove,  ///< The member or element at `path` goes.
    rename,  ///< The member at `path` is called `key`.
  };

  Kind kind = Kind::set;
  std::string path;
  std::string key;
  std::string json;

  bool operator==(const SpecEdit&) const = default;
};

/// `text` with the edits made one after the other; every other byte stays. New lines are indented
/// like their neighbours. An edit whose place is missing changes nothing. REQUIRES: `text` is JSON.
[[nodiscard]] std::string withEdits(std::string_view text, const std::vector<SpecEdit>& edits);

}  // namespace zelvora

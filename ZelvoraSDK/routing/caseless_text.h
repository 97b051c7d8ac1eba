#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zelvora {

/// A text to search without regard to case. Refers to the text that it is made from.
class CaselessText {
 public:
  explicit CaselessText(std::string_view text);

  /// The text in lower case.
  [[nodiscard]] const std::string& lower() const { return lower_; }

  /// The text with `with` in place of each `what`, from left to right; the rest keeps its case.
  /// Only whole code points are replaced: "i" is not found in "İ", whose lower-case form is i and
  /// a dot above. REQUIRES: `what` is not empty.
  [[nodiscard]] std::string replacing(std::string_view what, std::string_view with) const;

 private:
  std::string_view text_;
  std::string lower_;
  /// For each byte of `lower_`, and its end, the place in `text_` whose form begins there. A
  /// lower-case form may be longer or shorter than what it stands for.
  std::vector<std::size_t> starts_;
};

}  // namespace zelvora

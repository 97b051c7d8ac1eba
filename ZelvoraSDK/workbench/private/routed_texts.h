#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/workbench/private/linted_spec.h>

namespace zelvora::workbench {

/// Where an utterance leads on the device.
struct Lead {
  enum class Kind { opens, offers, nothing };

  Kind kind = Kind::nothing;
  std::uint32_t task = 0;  ///< Opened, or the first choice.

  [[nodiscard]] bool opens(std::uint32_t which) const {
    return kind == Kind::opens && task == which;
  }
  [[nodiscard]] bool opensOther(std::uint32_t which) const {
    return kind == Kind::opens && task != which;
  }
  [[nodiscard]] bool offersFirst(std::uint32_t which) const {
    return kind == Kind::offers && task == which;
  }
};

/// The own texts of a spec as they are routed, each with an empty session and no learning.
class RoutedTexts {
 public:
  struct Routed {
    std::string normalized;  ///< Empty when nothing of the text is left.
    std::string canonical;   ///< Of the normalised text.
    std::string searchable;  ///< The canonical forms of all phrasings that are tried.
    Lead lead;
  };

  /// REQUIRES: `spec.prepared()`.
  RoutedTexts(const LintedSpec& spec, const LintProgress& progress);

  /// By index of `LintedSpec::ownTexts()`.
  [[nodiscard]] const Routed& of(std::size_t ownText) const { return routed_[ownText]; }

  /// The outcome of a text under a locale when `route` scores its phrasings.
  [[nodiscard]] Lead leadOf(const std::string& normalized, const std::string& locale,
                            const RouteLocally& route) const;

 private:
  [[nodiscard]] Routed route(const OwnText& own) const;
  [[nodiscard]] Lead leadOf(const ZelvoraResult& result) const;

  const LintedSpec& spec_;
  std::unordered_map<std::string_view, std::uint32_t> taskById_;  ///< The first with an id.
  std::vector<Routed> routed_;
};

}  // namespace zelvora::workbench

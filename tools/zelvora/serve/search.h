#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/outcome/result.h>

namespace zelvora::serve {

/// What an utterance can lead to: a task of the application or an item of the catalogue.
struct Destination {
  std::string id;
  std::string title;
  std::string screenId;
  std::vector<std::string> phrases;  ///< What people say to get there.
  Params params;
  std::optional<std::string> say;  ///< Shown to the user on arrival.
};

/// The tasks below the key "tasks", of a request or of a spec, full or minimal; none when there is
/// no such key. What a task has for `locale` replaces its plain keywords and examples. Throws Error
/// on values of the wrong type and on a task without id.
std::vector<Destination> tasksIn(const JsonCursor& document, std::string_view locale);

/// The items of a catalogue file: an array of objects with `id`, `title`, `phrases`, `screenId`,
/// and, where wanted, `params` and `say`.
std::vector<Destination> catalogueIn(const JsonCursor& document);

struct Hit {
  std::size_t index = 0;  ///< Among the destinations searched.
  double confidence = 0;  ///< In (0, 1].

  bool operator==(const Hit&) const = default;
};

/// The most words of an utterance that are searched for; the rest is ignored.
inline constexpr std::size_t kMaxSearchWords = 100;

/// The destinations that share a word with `text`, best first, ties in their order. English words
/// are compared by their stem, and English filler words count for nothing; the ranking is BM25, a
/// title counting three times.
///
/// A confidence is the product of two shares. Coverage: how much of the text's words the
/// destination has; a word weighs more the fewer destinations have it, and an unknown one most.
/// Certainty: w² / (w² + r²) for its weight w and that of its strongest rival r, so a tie gives one
/// half.
std::vector<Hit> search(const std::vector<Destination>& destinations, std::string_view text,
                        std::string_view locale);

}  // namespace zelvora::serve

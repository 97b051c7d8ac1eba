#include <ZelvoraSDK/routing/local_router.h>

#include <algorithm>
#include <string>

#include <ZelvoraSDK/routing/canonical_text.h>
#include <ZelvoraSDK/routing/private/index.h>

namespace zelvora {
namespace {

/// Says which keyword and which token was found, from the same marks that the score comes from.
class Explainer {
 public:
  Explainer(const WordAutomaton& automaton, const FoundWords& found)
      : automaton_(automaton), found_(found) {}

  [[nodiscard]] TaskPoints::Keyword explainKeyword(std::string_view text) const {
    const std::string canonical = normalizeForMatch(text);
    std::vector<std::string_view> parts;
    splitKeyword(canonical, parts);
    const bool counts = !parts.empty() && std::ranges::all_of(parts, [this](std::string_view part) {
      return isFound(part);
    });
    if (!counts) return {text, 0};
    return {text, parts.size() < 2 ? kSinglePoints : kPhrasePoints};
  }

  [[nodiscard]] TaskPoints::Example explainExample(std::string_view text) const {
    TaskPoints::Example example{.text = text};
    const std::string canonical = normalizeForMatch(text);
    std::size_t hits = 0;
    for (CanonicalWords words(canonical); !words.done(); words.next()) {
      if (isStopword(words.word())) continue;
      const bool hit = isFound(words.word());
      hits += hit;
      example.tokens.push_back({std::string(words.word()), hit});
    }
    example.points = kPointsOfExample[std::min<std::size_t>(hits, kExampleMaxUnits)];
    return example;
  }

 private:
  [[nodiscard]] bool isFound(std::string_view word) const {
    return found_.contains(automaton_.idOf(word));
  }

  const WordAutomaton& automaton_;
  const FoundWords& found_;
};

}  // namespace

TaskPoints CompiledTasks::explain(std::string_view text, std::size_t task) const {
  FoundWords found;
  found.reserve(index_->wordCount());
  index_->automaton.find(normalizeForMatch(text), found);

  const Explainer explainer(index_->automaton, found);
  TaskPoints points;
  for (const std::string& keyword : tasks_[task].keywords)
    points.score += points.keywords.emplace_back(explainer.explainKeyword(keyword)).points;
  for (const std::string& example : tasks_[task].examples)
    points.score += points.examples.emplace_back(explainer.explainExample(example)).points;
  return points;
}

}  // namespace zelvora

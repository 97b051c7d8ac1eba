#include <ZelvoraSDK/ui/suggestions.h>

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

using Words = std::vector<std::string>;

Words wordsOf(std::string_view text) {
  Words words;
  std::string word;
  for (const char letter : lowercased(text) + " ") {
    const auto byte = static_cast<unsigned char>(letter);
    const bool isPartOfWord = byte >= 0x80 || (byte >= '0' && byte <= '9') ||
                              (byte >= 'a' && byte <= 'z') || byte == '\'';
    if (isPartOfWord) {
      word += letter;
    } else if (!word.empty()) {
      words.push_back(std::exchange(word, {}));
    }
  }
  return words;
}

/// How many letters must be changed, added or dropped to turn one word into another.
std::size_t slips(std::string_view one, std::string_view other) {
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (std::size_t i = 1; i <= one.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= other.size(); ++j) {
      const std::size_t changed = diagonal + (one[i - 1] == other[j - 1] ? 0 : 1);
      diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, changed}));
    }
  }
  return row.back();
}

double likeness(const std::string& typed, const std::string& word) {
  if (typed == word) return 1;
  if (word.starts_with(typed)) return 0.8;
  if (typed.size() >= 3 && typed.starts_with(word)) return 0.5;
  const std::size_t longer = std::max(typed.size(), word.size());
  const std::size_t most = longer / 3;
  const std::size_t shorter = std::min(typed.size(), word.size());
  if (most == 0 || longer - shorter > most) return 0;
  const std::size_t found = slips(typed, word);
  return found <= most ? 0.6 - 0.2 * static_cast<double>(found) / static_cast<double>(most) : 0;
}

double score(const Words& typed, const Words& example) {
  double sum = 0;
  for (const std::string& word : typed) {
    double best = 0;
    for (const std::string& other : example) best = std::max(best, likeness(word, other));
    sum += best * static_cast<double>(std::min<std::size_t>(word.size(), 6));
  }
  // Of two equal matches the shorter one is nearer.
  return sum > 0 ? sum - 0.01 * static_cast<double>(example.size()) : 0;
}

}  // namespace

std::vector<CommandExample> commandExamples(const RuntimeSpec& spec, const std::string& locale) {
  std::vector<CommandExample> examples;
  std::set<std::string> seen;
  for (std::size_t rank = 0, added = 1; added > 0; ++rank) {
    added = 0;
    for (const RuntimeSpec::Task& task : spec.tasksRaw) {
      const auto& own = task.examplesByLocale.ownOr(locale, task.examples);
      if (rank >= own.size()) continue;
      ++added;
      if (seen.insert(own[rank]).second) examples.push_back({own[rank], task.title});
    }
  }
  return examples;
}

std::vector<std::string> closestExamples(std::string_view typed,
                                         const std::vector<CommandExample>& examples,
                                         std::size_t most) {
  const Words words = wordsOf(typed);
  std::vector<std::pair<double, const CommandExample*>> ranked;
  for (const CommandExample& example : examples)
    if (const double points = score(words, wordsOf(example.text)); points >= 1)
      ranked.emplace_back(points, &example);
  std::ranges::stable_sort(ranked, [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<std::string> closest;
  std::set<std::string> titles;
  for (const auto& [points, example] : ranked) {
    if (closest.size() >= most) break;
    if (titles.insert(example->title).second) closest.push_back(example->text);
  }
  return closest;
}

}  // namespace zelvora

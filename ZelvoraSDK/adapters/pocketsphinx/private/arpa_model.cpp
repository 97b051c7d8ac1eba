#include <ZelvoraSDK/adapters/pocketsphinx/private/arpa_model.h>

#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace zelvora::sphinx {

using audio::Sentence;

namespace {

/// `value` with just `digits` digits behind the point, rounded as printf does but never by the C
/// locale: 1.25 and 1 give "1.2". REQUIRES: a finite value and at most 20 digits.
std::string fixedDecimal(double value, int digits) {
  std::array<char, 340> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::fixed, digits);
  return {text.data(), end.ptr};
}

constexpr double kDiscount = 0.5;
constexpr double kNever = -99;  ///< log10 of nothing, as the format writes it.
constexpr std::size_t kOrder = 3;

using Gram = std::vector<std::string>;
/// What followed a history, and how often.
struct Followers {
  std::map<std::string, double> counts;
  double total = 0;  ///< Kept, so that a vocabulary of any size takes time in proportion.
};
/// By history, which has one word less than the order.
using Counts = std::array<std::map<Gram, Followers>, kOrder>;

Counts countOf(const std::vector<Sentence>& sentences) {
  Counts counts;
  for (const Sentence& sentence : sentences) {
    Gram words{"<s>"};
    words.insert(words.end(), sentence.begin(), sentence.end());
    words.emplace_back("</s>");
    for (std::ptrdiff_t end = 1; end < std::ssize(words); ++end)
      for (std::ptrdiff_t past = 0; past < std::ptrdiff_t{kOrder} && past <= end; ++past) {
        Followers& followers = counts[static_cast<std::size_t>(past)]
                                     [Gram(words.begin() + end - past, words.begin() + end)];
        ++followers.counts[words[static_cast<std::size_t>(end)]];
        ++followers.total;
      }
  }
  return counts;
}

class Model {
 public:
  explicit Model(const std::vector<Sentence>& sentences) : counts_(countOf(sentences)) {}

  [[nodiscard]] std::string text() const {
    std::array<std::string, kOrder> grams;
    std::array<std::size_t, kOrder> sizes{};
    for (std::size_t past = 0; past < kOrder; ++past)
      for (const auto& [history, followers] : counts_[past])
        for (const auto& [word, count] : followers.counts) {
          grams[past] += line(history, word, std::log10(probability(history, word)));
          ++sizes[past];
        }
    grams[0] += line({}, "<s>", kNever);
    ++sizes[0];
    return assembled(grams, sizes);
  }

 private:
  /// Of a word that followed `history`. No word gives anything up without a history: all are known.
  [[nodiscard]] double probability(const Gram& history, const std::string& word) const {
    const Followers& followers = counts_[history.size()].at(history);
    const double given = history.empty() ? 0 : kDiscount;
    return (followers.counts.at(word) - given) / followers.total;
  }

  /// The factor on the probabilities after the shorter history, for words that never followed
  /// `history`; 1 when nothing ever did.
  [[nodiscard]] double backOff(const Gram& history) const {
    const auto found = counts_[history.size()].find(history);
    if (found == counts_[history.size()].end()) return 1;
    const Followers& followers = found->second;
    const Gram shorter(history.begin() + 1, history.end());
    double left = 1;
    for (const auto& [word, count] : followers.counts) left -= probability(shorter, word);
    const double given = kDiscount * static_cast<double>(followers.counts.size()) / followers.total;
    return left > 1e-9 ? given / left : 1;
  }

  [[nodiscard]] std::string line(const Gram& history, const std::string& word,
                                 double logProbability) const {
    std::string text = fixedDecimal(logProbability, 5);
    Gram gram = history;
    gram.push_back(word);
    for (std::size_t i = 0; i < gram.size(); ++i) text += (i == 0 ? '\t' : ' ') + gram[i];
    if (gram.size() < kOrder) text += '\t' + fixedDecimal(std::log10(backOff(gram)), 5);
    return text + '\n';
  }

  static std::string assembled(const std::array<std::string, kOrder>& grams,
                               const std::array<std::size_t, kOrder>& sizes) {
    std::string text = "\\data\\\n";
    for (std::size_t past = 0; past < kOrder; ++past)
      text += "ngram " + std::to_string(past + 1) + "=" + std::to_string(sizes[past]) + '\n';
    for (std::size_t past = 0; past < kOrder; ++past)
      text += "\n\\" + std::to_string(past + 1) + "-grams:\n" + grams[past];
    return text + "\n\\end\\\n";
  }

  Counts counts_;
};

}  // namespace

std::string arpaTrigram(const std::vector<Sentence>& sentences) { return Model(sentences).text(); }

}  // namespace zelvora::sphinx

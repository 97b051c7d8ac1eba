#include <ZelvoraSDK/adapters/audio/private/sound_match.h>

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <set>

namespace zelvora::audio {
namespace {

// Costs of the search, in phones that were heard completely wrong.
constexpr float kUnknownPrice = 1.5F;      ///< To keep a word that is in no phrase.
constexpr float kStrangePairPrice = 0.4F;  ///< For two neighbours that are neighbours in no phrase.
constexpr float kChangePrice = 0.5F;       ///< For each replacement, on top of its distance.

/// A replacement may differ from what was heard by at most this share of its phones,
constexpr float kMaxDifference = 0.36F;
/// and by at most this one when it replaces the whole transcript.
constexpr float kMaxDifferenceAlone = 0.2F;
/// The search follows a branch whose cost is above that by no more than this.
constexpr float kSlack = 0.5F;
/// A word of the vocabulary may be replaced when its confidence is below this,
constexpr double kDoubtful = 0.5;
/// and any other word when its confidence is below this.
constexpr double kBelieved = 0.9;
/// A transcript is about the application when at least this share of its other phones is in known
/// words.
constexpr double kMinKnown = 0.5;
/// Longer stretches are never replaced.
constexpr std::size_t kMaxStretch = 14;
/// The lengths of a stretch and its replacement differ by less than this.
constexpr std::size_t kMaxExtra = 3;
/// A run of this many phones counts in full; a longer one counts no more.
constexpr double kLongRun = 12;
/// A transcript that is doubted as a whole, or that opens nothing, may be a whole phrase when at
/// most this share of its phones differs,
constexpr float kMaxPhraseDifference = 0.31F;
/// when every other phrase differs by at least this much more,
constexpr float kPhraseLead = 0.05F;
/// when the phrase has at least this many words: anything sounds a little like a short one,
constexpr std::size_t kMinPhraseWords = 3;
/// and when it has at most this many: in a long one, the one word that matters changes too little.
constexpr std::size_t kMaxPhraseWords = 6;
/// A word of at most this many phones is part of its neighbours: "a" in "golf a", which was
/// "coffee".
constexpr std::size_t kShortWord = 2;

}  // namespace

/// One transcript on its way through the vocabulary.
class MatchSearch {
 public:
  MatchSearch(const SoundVocabulary& vocabulary, std::span<const SpeechSegment> heard,
              const Pronounce& pronounce)
      : vocabulary_(vocabulary), heard_(heard) {
    for (const SpeechSegment& word : heard) {
      ids_.push_back(vocabulary.idOf(word.text));
      phones_.push_back(phonesOf(pronounce(word.text)));
    }
    steps_.resize(heard.size());
    for (std::size_t at = 0; at < heard.size(); ++at) findSteps(at);
  }

  [[nodiscard]] SoundMatch best(bool opensNothing) {
    if (const auto phrase = wholePhrase(opensNothing)) return describe(*phrase);
    walk();
    return describe(bestPath());
  }

 private:
  using Row = std::array<float, kMaxStretch + 1>;
  /// A stretch of the transcript, kept (`gram` is -1, one word) or replaced.
  struct Step {
    std::size_t words = 1;
    int gram = -1;
    float cost = 0;
    float unlike = 0;  ///< The share of its phones that differ.
  };
  /// What a way ends in. The neighbours of a replacement must also be its neighbours in a phrase.
  struct End {
    int word = 0;
    bool isReplaced = false;
    auto operator<=>(const End&) const = default;
  };
  /// The cheapest way to a place that has a certain end.
  struct Way {
    float cost = std::numeric_limits<float>::max();
    const Step* last = nullptr;
    End before;
  };
  using Path = std::vector<std::pair<std::size_t, const Step*>>;

  void findSteps(std::size_t at) {
    steps_[at].push_back({.cost = isKnown(at) ? 0 : kUnknownPrice});
    for (std::size_t count = 1; count <= SoundVocabulary::kMaxGramWords; ++count)
      if (at + count <= heard_.size() && mayReplace(at, count)) findReplacements(at, count);
  }

  [[nodiscard]] bool isKnown(std::size_t at) const { return ids_[at] != SoundVocabulary::kUnknown; }

  [[nodiscard]] bool isDoubtful(std::size_t at) const {
    return heard_[at].confidence < (isKnown(at) ? kDoubtful : kBelieved);
  }

  [[nodiscard]] bool isShort(std::size_t at) const { return phones_[at].size() <= kShortWord; }

  [[nodiscard]] bool mayReplace(std::size_t at, std::size_t count) const {
    bool hasDoubt = false;
    std::size_t length = 0;
    for (std::size_t i = at; i < at + count; ++i) {
      if (phones_[i].empty() || !(isDoubtful(i) || isShort(i))) return false;
      hasDoubt |= isDoubtful(i);
      length += phones_[i].size();
    }
    return hasDoubt && length > kShortWord && length <= kMaxStretch;
  }

  /// How far a replacement may differ, judged by the words around the stretch; 0 for no
  /// replacement.
  [[nodiscard]] float mostUnlike(std::size_t at, std::size_t count) const {
    std::size_t known = 0;
    std::size_t all = 0;
    for (std::size_t i = 0; i < heard_.size(); ++i) {
      if (i >= at && i < at + count) continue;
      all += phones_[i].size();
      if (isKnown(i)) known += phones_[i].size();
    }
    if (all == 0) return kMaxDifferenceAlone;
    const bool isAbout = static_cast<double>(known) >= kMinKnown * static_cast<double>(all);
    return isAbout ? kMaxDifference : 0;
  }

  void findReplacements(std::size_t at, std::size_t count) {
    search_.at = at;
    search_.words = count;
    search_.mostUnlike = mostUnlike(at, count);
    search_.sound.clear();
    if (search_.mostUnlike <= 0) return;
    for (std::size_t i = at; i < at + count; ++i)
      for (const Phone phone : phones_[i])
        // When a word begins with the phone that ended the one before it, speakers say that phone
        // once.
        if (search_.sound.empty() || search_.sound.back() != phone) search_.sound.push_back(phone);
    preparePrices();
    Row row{};
    for (std::size_t j = 0; j < search_.sound.size(); ++j) row[j + 1] = row[j] + search_.dropped[j];
    descend(0, 0, row);
  }

  /// Looked up once, because every node of the tree asks for all of them.
  void preparePrices() {
    for (std::size_t j = 0; j < search_.sound.size(); ++j) {
      search_.dropped[j] = dropCost(search_.sound[j]);
      for (std::size_t phone = 0; phone < kPhones; ++phone)
        search_.changed[phone][j] = distance(static_cast<Phone>(phone), search_.sound[j]);
    }
  }

  /// Walks down the tree of phones, with one row of the table of distances for each node.
  void descend(int node, std::size_t depth, const Row& row) {
    const std::vector<Phone>& sound = search_.sound;
    const auto longest = static_cast<float>(std::max(depth, sound.size()));
    const std::size_t shortest = std::min(depth, sound.size());
    if (row[sound.size()] <= search_.mostUnlike * longest &&
        std::max(depth, sound.size()) < shortest + kMaxExtra)
      take(node, row[sound.size()], longest);
    if (depth + 1 >= sound.size() + kMaxExtra) return;
    for (int child = nodeAt(node).child; child >= 0; child = nodeAt(child).sibling) {
      const Phone phone = nodeAt(child).phone;
      const float dropped = dropCost(phone);
      const auto& changed = search_.changed[phone];
      Row next{};
      next[0] = row[0] + dropped;
      for (std::size_t j = 0; j < sound.size(); ++j)
        next[j + 1] =
            std::min({row[j] + changed[j], row[j + 1] + dropped, next[j] + search_.dropped[j]});
      if (isHopeful(next, depth + 1)) descend(child, depth + 1, next);
    }
  }

  [[nodiscard]] bool isHopeful(const Row& row, std::size_t depth) const {
    for (std::size_t j = 0; j <= search_.sound.size(); ++j)
      if (row[j] <= search_.mostUnlike * static_cast<float>(std::max(j, depth)) + kSlack)
        return true;
    return false;
  }

  void take(int node, float cost, float longest) {
    for (int gram = nodeAt(node).gram; gram >= 0; gram = gramAt(gram).nextOfSameSound)
      steps_[search_.at].push_back({.words = search_.words,
                                    .gram = gram,
                                    .cost = kChangePrice + cost,
                                    .unlike = cost / longest});
  }

  void walk() {
    ways_.assign(heard_.size() + 1, {});
    ways_[0][{.word = SoundVocabulary::kEdge}] = {.cost = 0};
    for (std::size_t at = 0; at < heard_.size(); ++at)
      for (const auto& [end, way] : ways_[at])
        for (const Step& step : steps_[at]) extend(at, end, way.cost, step);
  }

  void extend(std::size_t at, End before, float cost, const Step& step) {
    const auto [first, last] = endsOf(at, step);
    const bool isReplaced = step.gram >= 0;
    if (!vocabulary_.isNeighbour(before.word, first)) {
      if (isReplaced || before.isReplaced) return;
      cost += kStrangePairPrice;
    }
    const std::size_t end = at + step.words;
    if (end == heard_.size() && !vocabulary_.isNeighbour(last, SoundVocabulary::kEdge)) {
      if (isReplaced) return;
      cost += kStrangePairPrice;
    }
    cost += step.cost;
    Way& way = ways_[end][{.word = last, .isReplaced = isReplaced}];
    if (cost < way.cost) way = {.cost = cost, .last = &step, .before = before};
  }

  [[nodiscard]] std::pair<int, int> endsOf(std::size_t at, const Step& step) const {
    if (step.gram < 0) return {ids_[at], ids_[at]};
    const auto& gram = gramAt(step.gram);
    return {gram.words.front(), gram.words[gram.size - 1]};
  }

  [[nodiscard]] Path bestPath() const {
    std::size_t at = heard_.size();
    if (at == 0) return {};
    End end = std::ranges::min_element(ways_[at], {}, [](const auto& way) {
                return way.second.cost;
              })->first;
    Path path;
    while (at > 0) {
      const Way& way = ways_[at].at(end);
      at -= way.last->words;
      path.emplace_back(at, way.last);
      end = way.before;
    }
    std::ranges::reverse(path);
    return path;
  }

  /// One word of the transcript after the match.
  struct Matched {
    int id = 0;
    double phones = 0;
    double confidence = 0;
    bool isChanged = false;
  };

  /// A phrase that all of the transcript sounds like.
  struct Likeness {
    const std::vector<int>* phrase = nullptr;  ///< Its words.
    float unlike = kMaxPhraseDifference;
  };

  [[nodiscard]] std::optional<Likeness> wholePhrase(bool opensNothing) const {
    if (heard_.empty() || vocabulary_.phraseWords_.contains(ids_)) return std::nullopt;
    if (!opensNothing && meanConfidence(0, heard_.size()) >= kDoubtful) return std::nullopt;
    std::vector<Phone> sound;
    for (const auto& word : phones_) sound.insert(sound.end(), word.begin(), word.end());
    Likeness best;
    float second = kMaxPhraseDifference + kPhraseLead;
    for (const auto& [known, words] : vocabulary_.phrases_) {
      const auto longest = static_cast<float>(std::max(sound.size(), known.size()));
      const float unlike = distance(sound, known, second * longest) / longest;
      if (unlike >= second) continue;
      if (unlike > best.unlike) {
        second = unlike;
        continue;
      }
      if (best.phrase) second = best.unlike;
      best = {.phrase = &words, .unlike = unlike};
    }
    if (!best.phrase || second - best.unlike < kPhraseLead) return std::nullopt;
    return best;
  }

  [[nodiscard]] SoundMatch describe(const Likeness& likeness) const {
    const double confidence = meanConfidence(0, heard_.size()) * (1 - likeness.unlike);
    SoundMatch match;
    std::vector<Matched> words;
    for (const int id : *likeness.phrase) addChanged(id, confidence, match, words);
    match.closeness = closenessOf(words);
    return match;
  }

  [[nodiscard]] SoundMatch describe(const Path& path) const {
    SoundMatch match;
    std::vector<Matched> words;
    for (const auto& [at, step] : path) {
      if (step->gram < 0) {
        match.words.push_back(heard_[at]);
        words.push_back({.id = ids_[at],
                         .phones = static_cast<double>(phones_[at].size()),
                         .confidence = heard_[at].confidence});
        continue;
      }
      const auto& gram = gramAt(step->gram);
      const double confidence = meanConfidence(at, step->words) * (1 - step->unlike);
      for (const int id : std::span(gram.words).first(gram.size))
        addChanged(id, confidence, match, words);
    }
    match.closeness = closenessOf(words);
    return match;
  }

  void addChanged(int id, double confidence, SoundMatch& match, std::vector<Matched>& words) const {
    const auto index = static_cast<std::size_t>(id);
    match.words.push_back({vocabulary_.words_[index], confidence});
    words.push_back({.id = id,
                     .phones = static_cast<double>(vocabulary_.phoneCounts_[index]),
                     .confidence = confidence,
                     .isChanged = true});
  }

  [[nodiscard]] double meanConfidence(std::size_t at, std::size_t count) const {
    double sum = 0;
    for (std::size_t i = at; i < at + count; ++i) sum += heard_[i].confidence;
    return sum / static_cast<double>(count);
  }

  [[nodiscard]] Closeness closenessOf(const std::vector<Matched>& words) const {
    Closeness close;
    double all = 0;
    for (const Matched& word : words) all += word.phones;
    double run = 0;
    double longestRun = 0;
    for (std::size_t i = 0; i < words.size() && all > 0; ++i) {
      const Matched& word = words[i];
      const int before = i == 0 ? SoundVocabulary::kEdge : words[i - 1].id;
      const int after = i + 1 == words.size() ? SoundVocabulary::kEdge : words[i + 1].id;
      const bool goesOn = vocabulary_.isNeighbour(before, word.id);
      const double share = word.phones / all;
      if (word.isChanged) close.changed += share;
      if (word.id == SoundVocabulary::kUnknown) close.strange += share * word.confidence;
      close.inContext += share * (goesOn + vocabulary_.isNeighbour(word.id, after)) / 2;
      run = word.id == SoundVocabulary::kUnknown ? 0 : word.phones + (goesOn ? run : 0);
      longestRun = std::max(longestRun, run);
    }
    close.run = std::min(1.0, longestRun / kLongRun);
    return close;
  }

  [[nodiscard]] const SoundVocabulary::Node& nodeAt(int node) const {
    return vocabulary_.nodes_[static_cast<std::size_t>(node)];
  }

  [[nodiscard]] const SoundVocabulary::Gram& gramAt(int gram) const {
    return vocabulary_.grams_[static_cast<std::size_t>(gram)];
  }

  /// The stretch that is being looked up.
  struct Search {
    std::size_t at = 0;
    std::size_t words = 0;
    float mostUnlike = 0;
    std::vector<Phone> sound;
    std::array<float, kMaxStretch> dropped{};  ///< What it costs to drop each of them.
    std::array<std::array<float, kMaxStretch>, kPhones> changed{};  ///< Or to hear another one.
  };

  const SoundVocabulary& vocabulary_;
  std::span<const SpeechSegment> heard_;
  std::vector<int> ids_;
  std::vector<std::vector<Phone>> phones_;
  std::vector<std::vector<Step>> steps_;
  std::vector<std::map<End, Way>> ways_;
  Search search_;
};

SoundVocabulary::SoundVocabulary(const std::vector<Sentence>& sentences, const Pronounce& pronounce)
    : words_{""} {
  std::vector<std::vector<Phone>> phones{{}};
  phoneCounts_.push_back(0);
  std::set<std::vector<int>> seen;
  for (const Sentence& sentence : sentences) {
    std::vector<int> ids;
    for (const std::string& word : sentence) {
      const auto [entry, isNew] = ids_.try_emplace(word, static_cast<int>(words_.size()));
      if (isNew) {
        words_.push_back(word);
        phones.push_back(phonesOf(pronounce(word)));
        phoneCounts_.push_back(phones.back().size());
      }
      ids.push_back(entry->second);
    }
    if (ids.empty()) continue;
    addPhrase(ids, phones);
    neighbours_.insert(pairOf(kEdge, ids.front()));
    neighbours_.insert(pairOf(ids.back(), kEdge));
    for (std::size_t at = 0; at + 1 < ids.size(); ++at)
      neighbours_.insert(pairOf(ids[at], ids[at + 1]));
    for (std::size_t at = 0; at < ids.size(); ++at)
      for (std::size_t size = 1; size <= kMaxGramWords && at + size <= ids.size(); ++size) {
        const auto gram = std::span(ids).subspan(at, size);
        if (seen.emplace(gram.begin(), gram.end()).second) addGram(gram, phones);
      }
  }
}

SoundMatch SoundVocabulary::match(std::span<const SpeechSegment> heard, const Pronounce& pronounce,
                                  bool opensNothing) const {
  return MatchSearch(*this, heard, pronounce).best(opensNothing);
}

bool SoundVocabulary::isPhrase(const Sentence& words) const {
  std::vector<int> ids;
  for (const std::string& word : words) ids.push_back(idOf(word));
  return phraseWords_.contains(ids);
}

void SoundVocabulary::addPhrase(const std::vector<int>& words,
                                const std::vector<std::vector<Phone>>& phones) {
  if (!phraseWords_.insert(words).second) return;
  if (words.size() < kMinPhraseWords || words.size() > kMaxPhraseWords) return;
  std::vector<Phone> sound;
  for (const int word : words) {
    const auto& more = phones[static_cast<std::size_t>(word)];
    sound.insert(sound.end(), more.begin(), more.end());
  }
  phrases_.try_emplace(std::move(sound), words);
}

void SoundVocabulary::addGram(std::span<const int> words,
                              const std::vector<std::vector<Phone>>& phones) {
  Gram gram{.size = words.size()};
  std::ranges::copy(words, gram.words.begin());
  int node = 0;
  for (const int word : words) {
    const auto& sound = phones[static_cast<std::size_t>(word)];
    if (sound.empty()) return;
    for (const Phone phone : sound) node = childOf(node, phone);
  }
  Node& end = nodes_[static_cast<std::size_t>(node)];
  gram.nextOfSameSound = std::exchange(end.gram, static_cast<int>(grams_.size()));
  grams_.push_back(gram);
}

int SoundVocabulary::childOf(int node, Phone phone) {
  const auto parent = static_cast<std::size_t>(node);
  for (int child = nodes_[parent].child; child >= 0;
       child = nodes_[static_cast<std::size_t>(child)].sibling)
    if (nodes_[static_cast<std::size_t>(child)].phone == phone) return child;
  const int made = static_cast<int>(nodes_.size());
  nodes_.push_back({.phone = phone, .sibling = nodes_[parent].child});
  return nodes_[parent].child = made;
}

int SoundVocabulary::idOf(const std::string& word) const {
  const auto found = ids_.find(word);
  return found == ids_.end() ? kUnknown : found->second;
}

bool SoundVocabulary::isNeighbour(int before, int after) const {
  return neighbours_.contains(pairOf(before, after));
}

std::uint64_t SoundVocabulary::pairOf(int before, int after) {
  return std::uint64_t{static_cast<std::uint32_t>(before)} << 32 |
         static_cast<std::uint32_t>(after);
}

}  // namespace zelvora::audio

#include <ZelvoraSDK/workbench/private/checks.h>

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/routing/decision.h>
#include <ZelvoraSDK/routing/normalizer.h>
#include <ZelvoraSDK/workbench/private/remedies.h>

namespace zelvora::workbench {
namespace {

using Words = std::vector<std::string>;
using TextKind = OwnText::Kind;

Words canonicalWords(std::string_view text) {
  const std::string canonical = normalizeForMatch(text);
  Words words;
  for (CanonicalWords each(canonical); !each.done(); each.next()) words.emplace_back(each.word());
  return words;
}

/// Latin, Greek and Cyrillic: scripts whose words of a letter or two say little.
bool isOfShortWordScript(char32_t c) {
  return c <= 0x052F || (c >= 0x1C80 && c <= 0x1FFF) || (c >= 0x2C60 && c <= 0x2C7F) ||
         (c >= 0xA640 && c <= 0xA69F) || (c >= 0xA720 && c <= 0xA7FF) ||
         (c >= 0xAB30 && c <= 0xAB6F) || (c >= 0xFF21 && c <= 0xFF5A);
}

/// Whether a word has at most `most` letters, all of them of those scripts.
bool isShortWord(std::string_view word, std::size_t most) {
  std::size_t letters = 0;
  while (!word.empty()) {
    const DecodedCodePoint point = firstCodePoint(word);
    if (!isLetter(point.value) || !isOfShortWordScript(point.value) || ++letters > most)
      return false;
    word.remove_prefix(point.length);
  }
  return letters > 0;
}

/// Whether `longer` is just `word` with an ending, or a prefix, of up to two letters. A prefix on a
/// short word makes a different word in scripts that don't join articles and prepositions to words:
/// "art" in "start".
bool isInflection(std::string_view longer, std::string_view word) {
  const auto addsLittle = [&](std::string_view rest) { return characterCount(rest) <= 2; };
  if (longer.starts_with(word) && addsLittle(longer.substr(word.size()))) return true;
  return longer.ends_with(word) && addsLittle(longer.substr(0, longer.size() - word.size())) &&
         !isShortWord(word, 3);
}

/// The words of all own texts as they are routed, and the parts inside them.
class Vocabulary {
 public:
  Vocabulary(const LintedSpec& spec, const RoutedTexts& routed) {
    const auto& texts = spec.ownTexts();
    for (std::size_t text = 0; text < texts.size(); ++text)
      for (CanonicalWords each(routed.of(text).canonical); !each.done(); each.next())
        textsOf_[std::string(each.word())].push_back(text);
  }

  /// The words that contain `part`, itself included. All parts must have been passed to `prepare`.
  [[nodiscard]] const Words& containing(const std::string& part) const {
    static const Words kNone;
    const auto at = containing_.find(part);
    return at == containing_.end() ? kNone : at->second;
  }

  [[nodiscard]] const std::vector<std::size_t>& textsOf(const std::string& word) const {
    return textsOf_.at(word);
  }

  /// Looks up every part of every word once: the work grows with the letters, not with the pairs.
  void prepare(const std::set<std::string>& parts) {
    std::set<std::size_t> lengths;
    for (const std::string& part : parts) lengths.insert(part.size());
    for (const auto& [word, texts] : textsOf_) {
      std::set<std::string> found;
      for (const std::size_t length : lengths)
        for (std::size_t at = 0; at + length <= word.size(); ++at)
          if (std::string part = word.substr(at, length); parts.contains(part))
            found.insert(std::move(part));
      for (const std::string& part : found) containing_[part].push_back(word);
    }
  }

 private:
  std::map<std::string, std::vector<std::size_t>> textsOf_;
  std::unordered_map<std::string, Words> containing_;
};

class WordCheck {
 public:
  WordCheck(const LintedSpec& spec, const RoutedTexts& routed, Remedies& remedies,
            Findings& findings)
      : spec_(spec),
        routed_(routed),
        findings_(findings),
        remedies_(remedies),
        vocabulary_(spec, routed) {
    std::set<std::string> parts;
    for (const OwnText& own : spec.ownTexts())
      if (isScored(own))
        for (std::string& word : canonicalWords(own.text)) parts.insert(std::move(word));
    vocabulary_.prepare(parts);
  }

  void check() {
    checkAmbiguous();
    checkShortTokens();
    std::set<std::pair<std::uint32_t, std::string>> reported;
    for (const OwnText& own : spec_.ownTexts()) {
      checkStopwords(own);
      if (!isScored(own)) continue;
      if (own.kind == TextKind::keyword)
        checkKeywordInside(own);
      else
        checkTokensInside(own, reported);
    }
  }

 private:
  static bool isScored(const OwnText& own) {
    return own.kind != TextKind::title && !own.isOfLocale;
  }

  void add(LintFinding finding, std::optional<Remedy> remedy, std::string otherwise) {
    finding.hint = remedy ? remedy->hint : std::move(otherwise);
    if (remedy) finding.edits = std::move(remedy->edits);
    findings_.add(std::move(finding));
  }

  void checkAmbiguous() {
    std::map<Words, const OwnText*> first;
    for (const OwnText& own : spec_.ownTexts()) {
      if (own.kind != TextKind::keyword || own.isOfLocale) continue;
      Words words = canonicalWords(own.text);
      if (words.empty()) continue;
      std::ranges::sort(words);
      const auto [at, isNew] = first.emplace(std::move(words), &own);
      if (isNew || at->second->task == own.task) continue;
      const std::string& other = spec_.tasks()[at->second->task].title;
      LintFinding finding{.code = "ambiguous-keyword",
                          .path = own.path,
                          .message = inQuotes(own.text) + " gives " + other + " (" +
                                     at->second->path + ") the same points, so it decides nothing",
                          .cause = own.text};
      add(std::move(finding), keptApart(own, *at->second),
          "leave it to one of the two, or make it longer");
    }
  }

  /// Removes the keyword from this task, else from the other, else makes it longer here.
  std::optional<Remedy> keptApart(const OwnText& own, const OwnText& other) {
    if (auto remedy = remedies_.without(own)) return remedy;
    if (auto remedy = remedies_.without(other)) {
      remedy->hint = "leave it out of " + spec_.tasks()[other.task].title;
      return remedy;
    }
    return longer(own, canonicalWords(own.text));
  }

  /// The keyword together with a word of the task that other tasks have least.
  std::optional<Remedy> longer(const OwnText& own, const Words& words) {
    for (std::size_t text = 0; text < spec_.ownTexts().size(); ++text) {
      const OwnText& each = spec_.ownTexts()[text];
      if (each.task != own.task || each.isOfLocale) continue;
      for (const std::string& word :
           remedies_.distinctiveWords(own.task, routed_.of(text).canonical)) {
        if (std::ranges::find(words, word) != words.end() || characterCount(word) < 3) continue;
        std::string keyword = word;
        for (const std::string& part : words) keyword += ' ' + part;
        if (isInsideElsewhere(own.task, canonicalWords(keyword))) continue;
        if (auto remedy = remedies_.replacing(own, keyword)) return remedy;
      }
    }
    return std::nullopt;
  }

  // Short tokens.

  void checkShortTokens() {
    // As they are written: it does not matter here which words the spec drops.
    std::map<std::string, std::set<std::uint32_t>> tasksWith;
    std::set<std::string> tokens;
    for (const OwnText& own : spec_.ownTexts())
      if (own.kind == TextKind::example && !own.isOfLocale)
        for (std::string& token : tokensOf(own.text))
          if (isShortWord(token, 2)) tokens.insert(std::move(token));
    for (const OwnText& own : spec_.ownTexts()) {
      const std::string canonical = normalizeForMatch(own.text);
      for (const std::string& token : tokens)
        if (canonical.find(token) != canonical.npos) tasksWith[token].insert(own.task);
    }
    for (const OwnText& own : spec_.ownTexts()) {
      if (own.kind != TextKind::example || own.isOfLocale) continue;
      std::set<std::string> seen;
      for (const std::string& token : tokensOf(own.text)) {
        if (!tokens.contains(token) || !seen.insert(token).second) continue;
        const auto& tasks = tasksWith[token];
        if (tasks.size() == tasks.count(own.task)) continue;
        addShortToken(own, token, tasks.size() - tasks.count(own.task));
      }
    }
  }

  /// What the router counts of an example.
  static Words tokensOf(std::string_view example) {
    Words tokens = canonicalWords(example);
    std::erase_if(tokens, [](const std::string& each) { return isStopword(each); });
    return tokens;
  }

  void addShortToken(const OwnText& own, const std::string& token, std::size_t others) {
    LintFinding finding{.code = "short-token",
                        .path = own.path,
                        .message = inQuotes(token) + " of this example is found in texts of " +
                                   std::to_string(others) +
                                   (others == 1 ? " other task" : " other tasks") +
                                   ", and in much that people say",
                        .cause = token};
    const std::string shorter = withoutWord(own.text, token);
    std::optional<Remedy> remedy =
        isBlank(shorter) ? remedies_.without(own) : remedies_.replacing(own, shorter);
    if (remedy) remedy->hint = "leave out " + inQuotes(token);
    add(std::move(finding), std::move(remedy), inOtherWords(token));
  }

  /// For a token that can't be dropped without leading a text elsewhere.
  static std::string inOtherWords(const std::string& token) {
    return "say it in other words, without " + inQuotes(token);
  }

  static std::string withoutWord(const std::string& text, const std::string& token) {
    std::vector<std::string_view> kept;
    std::vector<Words> others;  // of "carry-on" without "on"; keeps what `kept` refers to
    for (const std::string_view word : splitWords(text)) {
      Words parts = canonicalWords(word);
      if (std::erase(parts, token) == 0) {
        kept.push_back(word);
        continue;
      }
      others.push_back(std::move(parts));
      kept.insert(kept.end(), others.back().begin(), others.back().end());
    }
    return joinWords(kept);
  }

  // Words inside words.

  /// The longer words that contain `part` in texts of other tasks that have it nowhere else.
  Words insideElsewhere(std::uint32_t task, const std::string& part) const {
    std::map<std::size_t, Words> insideOf;
    std::set<std::size_t> whole;
    for (const std::string& word : vocabulary_.containing(part))
      for (const std::size_t text : vocabulary_.textsOf(word)) {
        if (spec_.ownTexts()[text].task == task) continue;
        if (word == part || isInflection(word, part))
          whole.insert(text);
        else
          insideOf[text].push_back(word);
      }
    std::set<std::string> words;
    for (const auto& [text, longer] : insideOf)
      if (!whole.contains(text)) words.insert(longer.begin(), longer.end());
    return {words.begin(), words.end()};
  }

  bool isInsideElsewhere(std::uint32_t task, const Words& keyword) const {
    return !insidePhrase(task, keyword).empty();
  }

  /// The longer words that let a keyword count in texts of other tasks.
  Words insidePhrase(std::uint32_t task, const Words& keyword) const {
    if (keyword.size() == 1) return insideElsewhere(task, keyword[0]);
    // Texts that have all words of the phrase, and of them those that have one only inside others.
    std::map<std::size_t, std::size_t> partsIn;
    std::map<std::size_t, Words> insideIn;
    for (const std::string& part : std::set<std::string>(keyword.begin(), keyword.end())) {
      std::map<std::size_t, Words> longer;
      std::set<std::size_t> whole;
      for (const std::string& word : vocabulary_.containing(part))
        for (const std::size_t text : vocabulary_.textsOf(word)) {
          if (word == part || isInflection(word, part)) whole.insert(text);
          longer[text].push_back(word);
        }
      for (const auto& [text, words] : longer) {
        ++partsIn[text];
        if (!whole.contains(text))
          insideIn[text].insert(insideIn[text].end(), words.begin(), words.end());
      }
    }
    const std::size_t parts = std::set<std::string>(keyword.begin(), keyword.end()).size();
    std::set<std::string> words;
    for (const auto& [text, longer] : insideIn)
      if (partsIn[text] == parts && spec_.ownTexts()[text].task != task)
        words.insert(longer.begin(), longer.end());
    return {words.begin(), words.end()};
  }

  static std::string listed(const Words& words) {
    std::string text;
    for (std::size_t i = 0; i < std::min<std::size_t>(words.size(), 4); ++i)
      text += (i == 0 ? "" : ", ") + inQuotes(words[i]);
    return words.size() > 4 ? text + ", …" : text;
  }

  void checkKeywordInside(const OwnText& own) {
    const Words keyword = canonicalWords(own.text);
    if (keyword.empty()) return;
    const Words longerWords = insidePhrase(own.task, keyword);
    if (longerWords.empty()) return;
    LintFinding finding{.code = "inside-word",
                        .path = own.path,
                        .message = "the keyword " + inQuotes(own.text) +
                                   " counts for texts of other tasks, inside " +
                                   listed(longerWords),
                        .cause = own.text};
    std::optional<Remedy> remedy = longer(own, keyword);
    if (!remedy) remedy = remedies_.without(own);
    add(std::move(finding), std::move(remedy), "use a longer word, or a phrase");
  }

  void checkTokensInside(const OwnText& own,
                         std::set<std::pair<std::uint32_t, std::string>>& reported) {
    for (const std::string& token : tokensOf(own.text)) {
      if (isShortWord(token, 2)) continue;  // reported as a short token
      const Words longerWords = insideElsewhere(own.task, token);
      if (longerWords.empty() || !reported.emplace(own.task, token).second) continue;
      LintFinding finding{.code = "inside-word",
                          .severity = LintSeverity::note,
                          .path = own.path,
                          .message = inQuotes(token) +
                                     " of this example counts for texts of other "
                                     "tasks, inside " +
                                     listed(longerWords),
                          .cause = token};
      add(std::move(finding), leavingOut(own.task, token), inOtherWords(token));
    }
  }

  /// Removes the token from every example of the task, the last example first.
  std::optional<Remedy> leavingOut(std::uint32_t task, const std::string& token) {
    Remedy remedy{"leave out " + inQuotes(token), {}};
    const auto& texts = spec_.ownTexts();
    for (auto own = texts.rbegin(); own != texts.rend(); ++own) {
      if (own->task != task || own->kind != TextKind::example || own->isOfLocale) continue;
      const Words tokens = tokensOf(own->text);
      if (std::ranges::find(tokens, token) == tokens.end()) continue;
      const std::string shorter = withoutWord(own->text, token);
      const auto each =
          isBlank(shorter) ? remedies_.without(*own) : remedies_.replacing(*own, shorter);
      if (!each) return std::nullopt;
      // Removals come before what is appended, so that no index moves.
      for (const SpecEdit& edit : each->edits)
        if (edit.kind == SpecEdit::Kind::remove)
          remedy.edits.insert(
              std::ranges::find(remedy.edits, SpecEdit::Kind::append, &SpecEdit::kind), edit);
        else
          remedy.edits.push_back(edit);
    }
    return remedy;
  }

  // Stopwords.

  void checkStopwords(const OwnText& own) {
    if (own.kind == TextKind::title || !isEmptied(own)) return;
    LintFinding finding{.code = "stopwords-remove",
                        .path = own.path,
                        .message = "every word of " + inQuotes(own.text) + " is a stopword of " +
                                   own.locale + ", so what a user says loses it",
                        .cause = "stopwords"};
    add(std::move(finding), remedies_.without(own), "take a word of it off the stopwords");
  }

  [[nodiscard]] bool isEmptied(const OwnText& own) const {
    const auto& stopwords = spec_.prepared()->stopwords(own.locale);
    return !stopwords.empty() &&
           Normalizer::normalize(own.text, own.locale, stopwords).normalizedText.empty() &&
           !Normalizer::normalize(own.text, own.locale, {}).normalizedText.empty();
  }

  const LintedSpec& spec_;
  const RoutedTexts& routed_;
  Findings& findings_;
  Remedies& remedies_;
  Vocabulary vocabulary_;
};

}  // namespace

void checkWords(const LintedSpec& spec, const RoutedTexts& routed, Remedies& remedies,
                Findings& findings) {
  WordCheck(spec, routed, remedies, findings).check();
}

}  // namespace zelvora::workbench

#include <ZelvoraSDK/routing/context_engine.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Candidates = std::vector<ExpandedCandidate>;
using Context = RuntimeSpec::Context;
using Synonyms = OrderedMap<std::vector<std::string>>;
using enum ExpandedCandidate::Reason;

Candidates expand(std::string_view text, const Context& context = {},
                  std::string_view locale = "en-US") {
  return SpecContextEngine::expand(text, locale, context, {});
}

Context withSynonyms(Synonyms table) {
  return {.synonymsByLocale = ByLocale<Synonyms>{{"en", std::move(table)}}};
}

/// The synonym phrasings of `text` when the only phrase of the table becomes "X".
std::vector<std::string> phrasings(std::string_view text, const std::string& phrase) {
  std::vector<std::string> texts;
  for (const auto& candidate : expand(text, withSynonyms({{phrase, {"X"}}})))
    if (candidate.reason == synonym) texts.push_back(candidate.text);
  return texts;
}

TEST(ContextEngine, OffersANaiveSingular) {
  const struct {
    const char* text;
    Candidates expected;
  } rows[] = {
      {"Shoes", {{"shoe", plural, 1.05}, {"Shoes", original, 1.0}}},
      {"Open Settings", {{"Open setting", plural, 1.05}, {"Open Settings", original, 1.0}}},
      {"categories", {{"category", plural, 1.05}, {"categories", original, 1.0}}},
      {"ties", {{"ty", plural, 1.05}, {"ties", original, 1.0}}},
      {"IES", {{"IES", original, 1.0}}},  // three letters
      {"bus", {{"bus", original, 1.0}}},
      {"n\u0303\u0303us", {{"n\u0303\u0303us", original, 1.0}}},  // three characters
      {" home ", {{" home ", original, 1.0}}},
      {"go  home", {{"go home", plural, 1.05}, {"go  home", original, 1.0}}},
      {" \n", {}},
      {"a\xFF", {{"a\uFFFD", original, 1.0}}},
  };
  for (const auto& row : rows) EXPECT_EQ(expand(row.text), row.expected) << row.text;
}

TEST(ContextEngine, LeavesAnUtteranceAsItIsPastItsLimit) {
  const Context context = withSynonyms({{"cart", {"basket"}}});
  std::string text = "cart carts";
  text.resize(kMaxRephrasedBytes, 's');
  EXPECT_THAT(expand(text, context), SizeIs(3));
  text += 's';
  EXPECT_THAT(expand(text, context), ElementsAre(ExpandedCandidate{text, original, 1.0}));
}

TEST(ContextEngine, ReplacesAPhraseWhateverItsCase) {
  EXPECT_THAT(expand("Open Cart", withSynonyms({{"cart", {"basket", "bag"}}})),
              ElementsAre(ExpandedCandidate{"Open basket", synonym, 1.1},
                          ExpandedCandidate{"Open bag", synonym, 1.1},
                          ExpandedCandidate{"Open Cart", original, 1.0}));
  const struct {
    const char* text;
    const char* phrase;
    const char* expected;  ///< Null: no phrasing.
  } rows[] = {
      {"CART, Cart", "caRt", "X, X"},
      {"Restart it", "art", "RestX it"},
      {"aaa", "AA", "Xa"},
      {"the Cart", " cart", "theX"},  // as written, blanks included
      {"Cart", " cart", nullptr},     // found when trimmed, but not as written
      {"Ünal ÉTÉ", "été", "Ünal X"},
      {"Go \u0130zmir", "\u0130z", "Go Xmir"},
      {"Go \u0130zmir", "i\u0307z", "Go Xmir"},
      {"Go \u0130zmir", "o i", nullptr},  // would split İ
      {"\u0130 i", "i", "\u0130 X"},
      {"\u023Aa A", "a", "\u023AX X"},  // Ⱥ: the lower-case form has more bytes
      {"Open", "  ", nullptr},
      {"Open", "cart", nullptr},
  };
  for (const auto& row : rows) {
    const auto expected =
        row.expected ? std::vector<std::string>{row.expected} : std::vector<std::string>{};
    EXPECT_EQ(phrasings(row.text, row.phrase), expected) << row.text << " / " << row.phrase;
  }
}

TEST(ContextEngine, TriesFiveChangedPhrasings) {
  // "open" changes nothing and is not counted; the second "A" is a repeat and is.
  const Context context = withSynonyms(
      {{"open", {"open", "A", "A", "B"}}, {"missing", {"Z"}}, {"cart", {"C", "D", "E", "F"}}});
  EXPECT_THAT(expand("open cart", context),
              ElementsAre(ExpandedCandidate{"A cart", synonym, 1.1},
                          ExpandedCandidate{"B cart", synonym, 1.1},
                          ExpandedCandidate{"open C", synonym, 1.1},
                          ExpandedCandidate{"open D", synonym, 1.1},
                          ExpandedCandidate{"open cart", original, 1.0}));
}

TEST(ContextEngine, TakesTheFirstTableThatExists) {
  const auto tableFor = [](std::string_view locale, std::vector<std::string> keys) {
    ByLocale<Synonyms>::Table tables;
    for (const std::string& key : keys)
      tables.set(key, key == "empty" ? Synonyms{} : Synonyms{{"a", {key}}});
    const Context context{.synonymsByLocale = ByLocale<Synonyms>(tables)};
    const Candidates candidates = expand("a", context, locale);
    return candidates.front().reason == synonym ? candidates.front().text : "none";
  };
  EXPECT_EQ(tableFor("HE-IL", {"en", "HE-IL", "he"}), "he");
  EXPECT_EQ(tableFor("he-IL", {"en", "he-IL"}), "he-IL");
  EXPECT_EQ(tableFor("he-IL", {"he-il", "en"}), "en");
  EXPECT_EQ(tableFor("he-IL", {"fr"}), "none");
  EXPECT_EQ(tableFor("empty", {"empty", "en"}), "none");
}

TEST(ContextEngine, TakesSynonymWeightFromTheMemorySection) {
  Context context = withSynonyms({{"cart", {"bag"}}});
  context.memory = RuntimeSpec::ContextMemory{.enabled = false, .relatedBoost = 0.9};
  EXPECT_THAT(expand("cart", context), ElementsAre(ExpandedCandidate{"cart", original, 1.0},
                                                   ExpandedCandidate{"bag", synonym, 0.9}));
}

TEST(ContextEngine, FollowsUpOnTheLastScreen) {
  const auto followup = [](std::string_view text, std::optional<std::string> screenId = "Orders",
                           double age = 30, bool enabled = true) -> std::string {
    const Context context{.memory = RuntimeSpec::ContextMemory{.enabled = enabled}};
    const Timestamp now{Seconds{1000}};
    const ExpansionMoment moment{SessionMemory::LastResult{"t", screenId, now - Seconds{age}}, now};
    const Candidates candidates = SpecContextEngine::expand(text, "en", context, moment);
    if (candidates.empty() || candidates.front().reason != memory) return "none";
    EXPECT_EQ(candidates.front().weight, 1.2);
    return candidates.front().text;
  };
  EXPECT_EQ(followup("and tomorrow"), "and tomorrow orders");
  EXPECT_EQ(followup("in size  ten please"), "in size  ten please orders");  // four words
  EXPECT_EQ(followup("in size ten please now"), "none");
  EXPECT_EQ(followup("What about the blue one in ten"), "What about the blue one in ten orders");
  EXPECT_EQ(followup("Android is a phone system"), "Android is a phone system orders");
  EXPECT_EQ(followup(" and so it goes on"), "none");  // a cue must be at the very start
  EXPECT_EQ(followup(" \t"), "orders");
  EXPECT_EQ(followup("more", "Orders", 60), "more orders");
  EXPECT_EQ(followup("more", "Orders", 61), "none");
  EXPECT_EQ(followup("more", "Orders", 30, false), "none");
  EXPECT_EQ(followup("more", std::nullopt), "none");
  EXPECT_EQ(followup("more", ""), "none");
  EXPECT_EQ(followup("more", " "), "none");  // would only repeat the utterance
}

TEST(ContextEngine, NeedsNoContextSection) {
  EXPECT_THAT(SpecContextEngine::expand("cart", "en", std::nullopt, {}),
              ElementsAre(ExpandedCandidate{"cart", original, 1.0}));
  EXPECT_THAT(SpecContextEngine::expand("", "en", std::nullopt, {}), IsEmpty());
}

}  // namespace
}  // namespace zelvora

#include "search.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <new>
#include <set>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora::serve {
namespace {

using Phrases = std::vector<std::string>;

/// The list under `key`, or the one for `locale` in the table under `localizedKey` if that has any.
Phrases phrasesIn(const JsonCursor& task, std::string_view key, std::string_view localizedKey,
                  std::string_view locale) {
  Phrases phrases;
  task.readIfPresent(key, phrases);
  if (const auto table = task.find(localizedKey)) {
    const auto own = table->optional<Phrases>(locale);
    if (own && !own->empty()) return *own;
  }
  return phrases;
}

void append(Phrases& phrases, const Phrases& more) {
  phrases.insert(phrases.end(), more.begin(), more.end());
}

Destination taskIn(const JsonCursor& in, std::string_view locale) {
  Destination task;
  task.id = in.find("id") ? in.required<std::string>("id") : in.required<std::string>("taskId");
  task.title = task.id;
  in.readIfPresent("title", task.title);
  in.readIfPresent("screen_id", task.screenId);
  in.readIfPresent("screenId", task.screenId);
  in.readIfPresent("defaultParams", task.params);
  task.phrases = phrasesIn(in, "keywords", "keywordsByLocale", locale);
  append(task.phrases, phrasesIn(in, "examples", "examplesByLocale", locale));
  if (const auto synonyms = in.optional<Phrases>("synonyms")) append(task.phrases, *synonyms);
  return task;
}

Destination itemIn(const JsonCursor& in) {
  Destination item;
  in.read("id", item.id);
  in.read("title", item.title);
  in.read("screenId", item.screenId);
  in.readIfPresent("phrases", item.phrases);
  in.readIfPresent("params", item.params);
  in.read("say", item.say);
  return item;
}

// Words that occur in requests of every kind and distinguish none.
const char* const kEnglishFiller[] = {
    "a",    "an",   "and",   "are",  "at",    "be",    "can",  "could", "do",     "for", "from",
    "get",  "give", "go",    "hey",  "hi",    "how",   "i",    "in",    "is",     "it",  "let",
    "like", "me",   "my",    "of",   "on",    "open",  "or",   "our",   "please", "see", "show",
    "some", "take", "tell",  "that", "the",   "there", "this", "to",    "want",   "was", "we",
    "what", "when", "where", "with", "would", "you",   "your"};

std::string_view languageOf(std::string_view locale) {
  return locale.substr(0, locale.find_first_of("-_"));
}

/// What the tokenizer below takes as part of a word, or should decide on itself: marks and symbols
/// beyond ASCII.
bool isWordCharacter(char32_t value) {
  if (value < 0x80) return isLetter(value) || isNumber(value);
  return !isWhiteSpace(value) && !(value >= 0x2010 && value <= 0x205E);
}

/// The words of `text`, lower-cased, without the filler of the language.
std::vector<std::string> wordsOf(std::string_view text, std::string_view language) {
  std::vector<std::string> words;
  std::string word;
  const auto end = [&] {
    const bool isFiller =
        language == "en" && std::ranges::find(kEnglishFiller, word) != std::end(kEnglishFiller);
    if (!word.empty() && !isFiller) words.push_back(word);
    word.clear();
  };
  while (!text.empty()) {
    const auto [value, length] = firstCodePoint(text);
    if (isWordCharacter(value))
      appendLowercased(word, value);
    else if (value != U'\'')  // "what's" is one word
      end();
    text.remove_prefix(length);
  }
  end();
  return words;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += word + ' ';
  return text;
}

/// A statement of a database in memory; closed with it.
class Statement {
 public:
  Statement(sqlite3* database, const std::string& sql) {
    sqlite3_prepare_v2(database, sql.c_str(), -1, &statement_, nullptr);
    if (!statement_) throw Error("ZelvoraServe", 3, sqlite3_errmsg(database));
  }
  ~Statement() { sqlite3_finalize(statement_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// Starts over with `texts` for the parameters.
  Statement& with(const std::vector<std::string>& texts) {
    sqlite3_reset(statement_);
    for (std::size_t at = 0; at < texts.size(); ++at)
      sqlite3_bind_text(statement_, static_cast<int>(at) + 1, texts[at].data(),
                        static_cast<int>(texts[at].size()), SQLITE_TRANSIENT);
    return *this;
  }
  /// Whether there is a row.
  bool step() {
    const int code = sqlite3_step(statement_);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
      throw Error("ZelvoraServe", 3, sqlite3_errmsg(sqlite3_db_handle(statement_)));
    return code == SQLITE_ROW;
  }
  [[nodiscard]] std::size_t row() const {
    return static_cast<std::size_t>(sqlite3_column_int64(statement_, 0));
  }
  [[nodiscard]] double number(int column) const {
    return sqlite3_column_double(statement_, column);
  }

 private:
  sqlite3_stmt* statement_ = nullptr;
};

/// Destinations as a full-text index, row 1 for the first.
class Index {
 public:
  Index(const std::vector<Destination>& destinations, std::string_view language) {
    sqlite3* opened = nullptr;
    const int code = sqlite3_open(":memory:", &opened);
    database_.reset(opened);
    if (code != SQLITE_OK) throw std::bad_alloc();
    const std::string tokens = language == "en" ? "porter unicode61" : "unicode61";
    run("CREATE VIRTUAL TABLE places USING fts5(title, phrases, tokenize = '" + tokens + "')");
    run("CREATE VIRTUAL TABLE asked USING fts5(word, tokenize = '" + tokens + "')");
    run("BEGIN");
    Statement insert(database_.get(), "INSERT INTO places VALUES (?, ?)");
    for (const Destination& each : destinations) {
      std::vector<std::string> phrases;
      for (const std::string& phrase : each.phrases)
        std::ranges::copy(wordsOf(phrase, language), std::back_inserter(phrases));
      insert.with({joined(wordsOf(each.title, language)), joined(phrases)}).step();
    }
    run("COMMIT");
  }

  /// `words` without those that have the stem of an earlier one.
  std::vector<std::string> distinct(const std::vector<std::string>& words) {
    std::vector<std::string> kept;
    Statement find(database_.get(), "SELECT rowid FROM asked WHERE asked MATCH ?");
    Statement insert(database_.get(), "INSERT INTO asked VALUES (?)");
    for (const std::string& word : words) {
      if (kept.size() == kMaxSearchWords) break;
      if (find.with({quoted(word)}).step()) continue;
      insert.with({word}).step();
      kept.push_back(word);
    }
    return kept;
  }

  /// The rows that have `word`.
  std::set<std::size_t> rowsWith(const std::string& word) {
    std::set<std::size_t> rows;
    Statement find(database_.get(), "SELECT rowid FROM places WHERE places MATCH ?");
    for (find.with({quoted(word)}); find.step();) rows.insert(find.row());
    return rows;
  }

  struct Ranked {
    std::size_t row = 0;
    double weight = 0;
  };
  /// All rows that have one of `words`, best first.
  std::vector<Ranked> rank(const std::vector<std::string>& words) {
    std::string query;
    for (const std::string& word : words) query += (query.empty() ? "" : " OR ") + quoted(word);
    std::vector<Ranked> ranked;
    Statement find(database_.get(),
                   "SELECT rowid, -bm25(places, 3.0, 1.0) FROM places WHERE places MATCH ? "
                   "ORDER BY 2 DESC, 1");
    for (find.with({query}); find.step();) ranked.push_back({find.row(), find.number(1)});
    return ranked;
  }

 private:
  void run(const std::string& sql) { Statement(database_.get(), sql).step(); }

  /// Words hold no quotes.
  static std::string quoted(const std::string& word) { return '"' + word + '"'; }

  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
  };
  std::unique_ptr<sqlite3, Close> database_;
};

/// A word of the query: its weight, and the rows that have it.
struct Word {
  double weight = 0;
  std::set<std::size_t> rows;
};

double certainty(double weight, double rival) {
  return weight * weight / (weight * weight + rival * rival);
}

double coverage(const std::vector<Word>& words, std::size_t row) {
  double matched = 0;
  double total = 0;
  for (const Word& word : words) {
    total += word.weight;
    if (word.rows.contains(row)) matched += word.weight;
  }
  return matched / total;
}

}  // namespace

std::vector<Destination> tasksIn(const JsonCursor& document, std::string_view locale) {
  std::vector<Destination> tasks;
  const auto list = document.find("tasks");
  if (!list) return tasks;
  for (const boost::json::value& task : list->array())
    tasks.push_back(taskIn(JsonCursor(*list, tasks.size(), task), locale));
  return tasks;
}

std::vector<Destination> catalogueIn(const JsonCursor& document) {
  std::vector<Destination> items;
  for (const boost::json::value& item : document.array())
    items.push_back(itemIn(JsonCursor(document, items.size(), item)));
  return items;
}

std::vector<Hit> search(const std::vector<Destination>& destinations, std::string_view text,
                        std::string_view locale) {
  const std::string_view language = languageOf(locale);
  const std::vector<std::string> all = wordsOf(text, language);
  if (all.empty() || destinations.empty()) return {};

  Index index(destinations, language);
  const std::vector<std::string> asked = index.distinct(all);
  std::vector<Word> words;
  for (const std::string& word : asked) {
    std::set<std::size_t> rows = index.rowsWith(word);
    const double weight = std::log((static_cast<double>(destinations.size()) + 1) /
                                   (static_cast<double>(rows.size()) + 0.5));
    words.push_back({weight, std::move(rows)});
  }
  const std::vector<Index::Ranked> ranked = index.rank(asked);
  std::vector<Hit> hits;
  for (const auto& [row, weight] : ranked) {
    const std::size_t rival = hits.empty() ? 1 : 0;
    const double against = rival < ranked.size() ? ranked[rival].weight : 0;
    hits.push_back({row - 1, coverage(words, row) * certainty(weight, against)});
  }
  return hits;
}

}  // namespace zelvora::serve

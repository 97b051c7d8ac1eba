#include "search.h"

#include <xapian.h>

#include <cmath>
#include <map>

namespace zelvora::serve {
namespace {

constexpr Xapian::termcount kTitleWeight = 3;

// What stands in requests of every kind and tells none from another.
const char* const kEnglishFiller[] = {
    "a",    "an",   "and",   "are",  "at",    "be",    "can",  "could", "do",     "for", "from",
    "get",  "give", "go",    "hey",  "hi",    "how",   "i",    "in",    "is",     "it",  "let",
    "like", "me",   "my",    "of",   "on",    "open",  "or",   "our",   "please", "see", "show",
    "some", "take", "tell",  "that", "the",   "there", "this", "to",    "want",   "was", "we",
    "what", "when", "where", "with", "would", "you",   "your"};

std::string languageOf(std::string_view locale) {
  return std::string(locale.substr(0, locale.find_first_of("-_")));
}

/// Cuts text into stemmed words, the same way for destinations and for what is asked.
class Words {
 public:
  explicit Words(const std::string& language)
      : filler_(std::begin(kEnglishFiller), std::end(kEnglishFiller)) {
    const Xapian::Stem stemmer(language, true);  // none for languages it does not know
    generator_.set_stemmer(stemmer);
    // Words that are to be stemmed by no stemmer would be dropped.
    generator_.set_stemming_strategy(stemmer.is_none() ? Xapian::TermGenerator::STEM_NONE
                                                       : Xapian::TermGenerator::STEM_ALL);
    if (language != "en") return;
    generator_.set_stopper(&filler_);
    generator_.set_stopper_strategy(Xapian::TermGenerator::STOP_ALL);
  }
  Words(const Words&) = delete;
  Words& operator=(const Words&) = delete;

  Xapian::Document of(const Destination& destination) {
    Xapian::Document document;
    generator_.set_document(document);
    generator_.index_text(destination.title, kTitleWeight);
    for (const std::string& phrase : destination.phrases) generator_.index_text(phrase);
    return document;
  }

  std::vector<std::string> of(std::string_view text) {
    Xapian::Document document;
    generator_.set_document(document);
    generator_.index_text(std::string(text));
    return {document.termlist_begin(), document.termlist_end()};
  }

 private:
  Xapian::SimpleStopper filler_;
  Xapian::TermGenerator generator_;
};

/// How much each word tells: the more, the fewer destinations have it.
std::map<std::string, double> weightsOf(const std::vector<std::string>& words,
                                        const Xapian::Database& database) {
  std::map<std::string, double> weights;
  for (const std::string& word : words)
    weights[word] = std::log((database.get_doccount() + 1.0) / (database.get_termfreq(word) + 0.5));
  return weights;
}

double sum(const std::map<std::string, double>& weights) {
  double total = 0;
  for (const auto& [word, weight] : weights) total += weight;
  return total;
}

double certainty(double weight, double rival) {
  return weight * weight / (weight * weight + rival * rival);
}

std::vector<Hit> hitsOf(const Xapian::Enquire& enquire, const Xapian::MSet& found,
                        const std::map<std::string, double>& weights) {
  const double total = sum(weights);
  std::vector<Hit> hits;
  for (auto at = found.begin(); at != found.end(); ++at) {
    double matched = 0;
    for (auto word = enquire.get_matching_terms_begin(at);
         word != enquire.get_matching_terms_end(at); ++word)
      matched += weights.at(*word);
    const Xapian::doccount rival = hits.empty() ? 1 : 0;
    const double against = rival < found.size() ? found[rival].get_weight() : 0;
    hits.push_back({*at - 1, matched / total * certainty(at.get_weight(), against)});
  }
  return hits;
}

}  // namespace

std::vector<Hit> search(const std::vector<Destination>& destinations, std::string_view text,
                        std::string_view locale) {
  Words words(languageOf(locale));
  const std::vector<std::string> asked = words.of(text);
  if (asked.empty() || destinations.empty()) return {};

  Xapian::WritableDatabase database(std::string(), Xapian::DB_BACKEND_INMEMORY);
  for (const Destination& destination : destinations) database.add_document(words.of(destination));

  Xapian::Enquire enquire(database);
  enquire.set_weighting_scheme(Xapian::BM25Weight());
  enquire.set_query(Xapian::Query(Xapian::Query::OP_OR, asked.begin(), asked.end()));
  return hitsOf(enquire, enquire.get_mset(0, database.get_doccount()), weightsOf(asked, database));
}

}  // namespace zelvora::serve

#include <ZelvoraSDK/workbench/private/checks.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/workbench/private/remedies.h>

namespace zelvora::workbench {
namespace {

using TextIndices = std::vector<std::size_t>;
using TextKind = OwnText::Kind;

std::string decimal2(double value) { return shortestDecimal(std::round(value * 100) / 100); }

class RouteCheck {
 public:
  RouteCheck(const LintedSpec& spec, const RoutedTexts& routed, Remedies& remedies,
             Findings& findings)
      : spec_(spec), routed_(routed), findings_(findings), remedies_(remedies) {}

  void check() {
    std::vector<TextIndices> textsOf(spec_.tasks().size());
    for (std::size_t text = 0; text < spec_.ownTexts().size(); ++text)
      textsOf[spec_.ownTexts()[text].task].push_back(text);
    for (std::uint32_t task = 0; task < textsOf.size(); ++task) {
      for (const std::size_t text : textsOf[task]) checkText(text);
      checkChoices(task, textsOf[task]);
      checkReach(task, textsOf[task]);
      checkShadow(task, textsOf[task]);
      checkLocales(task, textsOf[task]);
    }
  }

 private:
  [[nodiscard]] const OwnText& own(std::size_t text) const { return spec_.ownTexts()[text]; }
  [[nodiscard]] const Lead& leadOf(std::size_t text) const { return routed_.of(text).lead; }
  [[nodiscard]] const std::string& titleOf(std::uint32_t task) const {
    return spec_.tasks()[task].title;
  }

  /// "saying "pay"", with the locale where it is not the default one.
  [[nodiscard]] std::string saying(std::size_t text) const {
    const std::string what = "saying " + inQuotes(own(text).text);
    return own(text).locale == spec_.locale() ? what : what + " in " + own(text).locale;
  }

  void checkText(std::size_t text) {
    const std::uint32_t task = own(text).task;
    const Lead& lead = leadOf(text);
    if (lead.opens(task) || lead.offersFirst(task)) return;
    const bool isTitle = own(text).kind == TextKind::title;
    LintFinding finding{.path = own(text).path};
    using enum LintSeverity;
    if (lead.kind == Lead::Kind::opens) {
      finding.code = "opens-other";
      finding.severity = isTitle ? warning : error;
      finding.message = saying(text) + " opens " + titleOf(lead.task) + ", not " + titleOf(task);
      finding.cause = "opens " + titleOf(lead.task);
    } else {
      finding.code = "misses";
      finding.severity = isTitle ? note : warning;
      const bool offers = lead.kind == Lead::Kind::offers;
      finding.message = saying(text) + (offers ? " offers choices that " + titleOf(lead.task) +
                                                     " leads, not " + titleOf(task)
                                               : " finds nothing on the device");
      finding.cause = offers ? "led by " + titleOf(lead.task) : "nothing";
    }
    apply(finding, remedies_.open(task, {text}));
  }

  void apply(LintFinding& finding, Remedy remedy) {
    finding.hint = std::move(remedy.hint);
    finding.edits = std::move(remedy.edits);
    findings_.add(std::move(finding));
  }

  void checkChoices(std::uint32_t task, const TextIndices& texts) {
    TextIndices offered;
    for (const std::size_t text : texts)
      if (leadOf(text).offersFirst(task)) offered.push_back(text);
    if (offered.empty()) return;
    std::string message = std::to_string(offered.size()) + " of the " +
                          std::to_string(texts.size()) + " texts of " + titleOf(task) +
                          (offered.size() == 1 ? " ends" : " end") + " in choices that it leads: ";
    for (std::size_t i = 0; i < std::min<std::size_t>(offered.size(), 3); ++i)
      message += (i == 0 ? "" : ", ") + inQuotes(own(offered[i]).text);
    if (offered.size() > 3) message += ", …";
    LintFinding finding{.code = "only-choices",
                        .severity = LintSeverity::note,
                        .path = spec_.taskPath(task),
                        .message = std::move(message),
                        .cause = "choices"};
    // Only the author can decide what should open at once: no edits.
    apply(finding,
          {"fine for what may mean several things; otherwise " + remedies_.open(task, offered).hint,
           {}});
  }

  /// Everything of the task in one utterance: no other utterance gives it more points.
  [[nodiscard]] std::string wholeTask(std::uint32_t task) const {
    std::string whole;
    for (const std::string& each : spec_.tasks()[task].keywords) whole += each + ' ';
    for (const std::string& each : spec_.tasks()[task].examples) whole += each + ' ';
    return whole;
  }

  void checkReach(std::uint32_t task, const TextIndices& texts) {
    const auto& limits = spec_.prepared()->thresholds();
    const std::vector<ScoredTask> ranked = spec_.prepared()->tasks()->rank(wholeTask(task));
    const ZelvoraTaskSpec* const record = &spec_.tasks()[task];
    const auto at = std::ranges::find(ranked, record, &ScoredTask::task);
    const ScoredTask most = at == ranked.end() ? ScoredTask{record, 0, 0} : *at;
    std::string reason;
    if (most.score < limits.execute_min_score)
      reason = decimal2(most.score) + " points, " + shortestDecimal(limits.execute_min_score) +
               " are needed";
    else if (most.confidence < limits.execute_min_conf)
      reason = "a confidence of " + decimal2(most.confidence) + ", " +
               shortestDecimal(limits.execute_min_conf) + " is needed";
    else if (const auto other = bestOther(ranked, record);
             other && most.score - other->score < limits.close_to_second_delta &&
             std::ranges::none_of(texts,
                                  [&](std::size_t text) { return leadOf(text).opens(task); }))
      reason = decimal2(most.score - other->score) + " points more than " + other->task->title +
               ", " + shortestDecimal(limits.close_to_second_delta) + " are needed";
    if (reason.empty()) return;
    LintFinding finding{.code = "unreachable",
                        .path = spec_.taskPath(task),
                        .message = "nothing that is said opens " + titleOf(task) +
                                   ": all its keywords and examples together give " + reason,
                        .cause = "unreachable"};
    if (limits.execute_min_conf >= 1) {
      finding.hint = "no score has a confidence of 1; lower execute_min_conf";
      finding.edits = {{SpecEdit::Kind::set, "routing.thresholds", "execute_min_conf", "0.75"}};
      return findings_.add(std::move(finding));
    }
    apply(finding, remedies_.openAny(task, texts));
  }

  [[nodiscard]] const ScoredTask* bestOther(const std::vector<ScoredTask>& ranked,
                                            const ZelvoraTaskSpec* record) const {
    for (const ScoredTask& each : ranked)
      if (each.task != record) return &each;
    return nullptr;
  }

  void checkShadow(std::uint32_t task, const TextIndices& texts) {
    TextIndices reaching;
    for (const std::size_t text : texts) {
      const Lead& lead = leadOf(text);
      if (lead.kind == Lead::Kind::nothing) continue;
      if (lead.task == task || (!reaching.empty() && lead.task != leadOf(reaching[0]).task)) {
        // A task that leads for one of its texts, or trails several tasks, has no shadow.
        if (lead.task == task || earns(text)) return;
        continue;
      }
      if (earns(text)) reaching.push_back(text);
    }
    if (reaching.empty()) return;
    const std::string& other = titleOf(leadOf(reaching[0]).task);
    LintFinding finding{.code = "shadowed",
                        .path = spec_.taskPath(task),
                        .message = other + " leads whatever is said for " + titleOf(task),
                        .cause = other};
    apply(finding, remedies_.openAny(task, texts));
  }

  /// Whether the text gives its own task any points.
  [[nodiscard]] bool earns(std::size_t text) const {
    return spec_.prepared()->tasks()->explain(routed_.of(text).normalized, own(text).task).score >
           0;
  }

  void checkLocales(std::uint32_t task, const TextIndices& texts) {
    std::vector<std::string> locales;
    for (const std::size_t text : texts)
      if (own(text).isOfLocale && std::ranges::find(locales, own(text).locale) == locales.end())
        locales.push_back(own(text).locale);
    for (const std::string& locale : locales) checkLocale(task, locale, texts);
  }

  void checkLocale(std::uint32_t task, const std::string& locale, const TextIndices& texts) {
    TextIndices failing;
    std::size_t count = 0;
    for (const std::size_t text : texts) {
      if (!own(text).isOfLocale || own(text).locale != locale) continue;
      ++count;
      if (!leadOf(text).opens(task)) failing.push_back(text);
    }
    if (failing.empty()) return;
    const std::string& path = own(failing[0]).path;
    LintFinding finding{
        .code = "not-scored",
        .path = path.substr(0, path.rfind('[')),
        .message = "the device does not score these lists: " + std::to_string(failing.size()) +
                   " of " + std::to_string(count) + " texts for " + locale + " do not open " +
                   titleOf(task) +
                   "; they only go to the backend's semantic request and to speech recognition",
        .cause = locale};
    Remedy remedy = remedies_.open(task, failing);
    remedy.hint = "have them in the plain keywords and examples too: " + remedy.hint;
    apply(finding, std::move(remedy));
  }

  const LintedSpec& spec_;
  const RoutedTexts& routed_;
  Findings& findings_;
  Remedies& remedies_;
};

}  // namespace

void checkRoutes(const LintedSpec& spec, const RoutedTexts& routed, Remedies& remedies,
                 Findings& findings) {
  RouteCheck(spec, routed, remedies, findings).check();
}

}  // namespace zelvora::workbench

#include "report.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/local_stage.h>

#include "../output.h"
#include "report_charts.h"
#include "report_template.h"
#include "rescoring.h"

namespace zelvora::tool {
namespace {

constexpr std::size_t kMaxConfused = 24;    ///< Tasks in the matrix.
constexpr std::size_t kMaxUtterances = 60;  ///< In the list of the worst.

bool isOpening(Verdict verdict) {
  return verdict == Verdict::right || verdict == Verdict::wrong ||
         verdict == Verdict::outOfScopeOpened;
}

/// What a verdict is called, and the class that colours it.
std::pair<std::string, std::string> nameOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::right: return {"right", "right"};
    case Verdict::wrong: return {"wrong", "wrong"};
    case Verdict::choicesWith: return {"choices with it", "with"};
    case Verdict::choicesWithout: return {"choices without it", "without"};
    case Verdict::missed: return {"missed", "missed"};
    case Verdict::outOfScopeOpened: return {"opened out of scope", "wrong"};
    case Verdict::outOfScopeChoices: return {"choices out of scope", "without"};
    case Verdict::outOfScopeMissed: return {"nothing, as is right", "right"};
  }
  return {};
}

// The figures at the top.

std::string tile(const char* kind, const std::string& label, std::size_t count, std::size_t all) {
  const Share share = shareOf(count, all);
  if (all == 0) return {};
  const auto width = [](double value) { return shortestDecimal(std::round(value * 1000) / 10); };
  return std::string("<li class=\"tile ") + kind + "\"><strong>" + percentText(share.share) +
         "</strong><span>" + escapedHtml(label) +
         "</span><div class=\"range\" aria-hidden=\"true\">"
         "<i style=\"left:" +
         width(share.low) + "%;width:" + width(share.high - share.low) +
         "%\"></i><b style=\"left:" + width(share.share) + "%\"></b></div><small>" +
         std::to_string(count) + " of " + std::to_string(all) + ", <span>" +
         percentText(share.low) + " – " + percentText(share.high) + "</span></small></li>";
}

std::string tiles(const Evaluation& it) {
  return tile("right", "right", it.right, it.inScope) +
         tile("wrong", "open something else", it.wrong, it.inScope) +
         tile("with", "end in choices with the right task", it.choicesWith, it.inScope) +
         tile("wrong", "out of scope, and yet opened", it.outOfScopeOpened, it.outOfScope);
}

/// How near the transcripts of recordings are to what was said.
std::string speechTiles(const std::optional<SpeechFigures>& it) {
  if (!it || it->references == 0) return {};
  return "<li class=\"tile wrong\"><strong>" + percentText(it->wordErrorRate()) +
         "</strong><span>words heard wrong</span><small>" + std::to_string(it->errors) +
         " errors in " + std::to_string(it->words) + " words</small></li>" +
         tile("right", "recordings heard word for word", it->exact, it->references);
}

std::string shares(const Evaluation& it) {
  return stackedBar("In scope", {{"right", "right", it.right},
                                 {"choices with the right task", "with", it.choicesWith},
                                 {"choices without it", "without", it.choicesWithout},
                                 {"missed", "missed", it.missed},
                                 {"wrong", "wrong", it.wrong}}) +
         stackedBar("Out of scope", {{"nothing, as is right", "right", it.outOfScopeMissed},
                                     {"choices", "without", it.outOfScopeChoices},
                                     {"opened something", "wrong", it.outOfScopeOpened}});
}

// Confidences and thresholds.

std::string histograms(const ReportInput& input) {
  std::vector<double> right;
  std::vector<double> wrong;
  std::vector<double> outOfScope;
  for (const Judged& each : input.judged) {
    if (!each.confidence) continue;
    if (each.verdict == Verdict::right)
      right.push_back(*each.confidence);
    else if (each.verdict == Verdict::wrong)
      wrong.push_back(*each.confidence);
    else if (each.verdict == Verdict::outOfScopeOpened ||
             each.verdict == Verdict::outOfScopeChoices)
      outOfScope.push_back(*each.confidence);
  }
  return histogram("Right", "right", right) + histogram("Wrong", "wrong", wrong) +
         histogram("Out of scope, opened or offered", "without", outOfScope);
}

SweepPoint pointOf(double score, const Counts& it) {
  const bool hasOut = it.outOfScope > 0;
  return {score,
          hasOut ? shareOf(it.outOfScopeOpened, it.outOfScope).share
                 : shareOf(it.wrong, it.inScope).share,
          shareOf(it.right, it.inScope).share};
}

/// The most right with at most 5 % cost; without such a point the one that costs least.
SweepPoint bestOf(const std::vector<SweepPoint>& points) {
  constexpr double kMaxCost = 0.05;
  return *std::ranges::min_element(points, {}, [](const SweepPoint& point) {
    const bool isDear = point.cost > kMaxCost;
    return std::tuple(isDear, isDear ? point.cost : 0, -point.right, point.cost);
  });
}

std::string sweep(const ReportInput& input) {
  if (input.evaluation.inScope == 0) return "<p class=\"none\">No utterance is in scope.</p>";
  const Rescoring rescoring(input.utterances, input.spec);
  std::vector<std::size_t> all(input.utterances.size());
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
  Sweep sweep{.today = pointOf(input.spec.thresholds().execute_min_score,
                               rescoring.tally(all, input.spec.thresholds())),
              .cost = input.evaluation.outOfScope > 0 ? "opened out of scope" : "wrong"};
  for (double score = 0.3; score <= 15; score += 0.6) {
    RuntimeSpec::Thresholds limits = input.spec.thresholds();
    limits.execute_min_score = std::round(score * 10) / 10;
    limits.choices_min_score = std::min(limits.choices_min_score, limits.execute_min_score);
    // The confidence must not ask for more than the score.
    const double confidence = std::floor((1 - std::exp(-score / 4.5)) * 100) / 100;
    limits.execute_min_conf = std::min(limits.execute_min_conf, confidence);
    limits.choices_min_conf = std::min(limits.choices_min_conf, confidence);
    sweep.points.push_back(pointOf(limits.execute_min_score, rescoring.tally(all, limits)));
  }
  sweep.best = bestOf(sweep.points);
  return sweepChart(sweep);
}

// Confusions.

/// The tasks with most confusions, in the spec's order.
std::vector<std::string> confusedTasks(const ReportInput& input) {
  std::map<std::string, std::size_t> trouble;
  for (std::size_t i = 0; i < input.judged.size(); ++i) {
    const LabelledUtterance& utterance = input.utterances[i];
    const Judged& judged = input.judged[i];
    if (judged.verdict == Verdict::right || judged.verdict == Verdict::outOfScopeMissed) continue;
    if (utterance.isInScope()) ++trouble[utterance.expected[0]];
    if (judged.opened) ++trouble[*judged.opened];
  }
  std::vector<std::pair<std::size_t, std::string>> order;
  for (const auto& [task, count] : trouble) order.emplace_back(count, task);
  std::ranges::stable_sort(order, [](const auto& a, const auto& b) { return a.first > b.first; });
  order.resize(std::min(order.size(), kMaxConfused));
  std::set<std::string> shown;
  for (const auto& each : order) shown.insert(each.second);
  std::vector<std::string> tasks;
  for (const Evaluation::Task& task : input.evaluation.tasks)
    if (shown.contains(task.id)) tasks.push_back(task.id);
  return tasks;
}

using Cells = std::map<std::pair<std::string, std::string>, std::size_t>;

/// How often each row's utterances came to each column. A row is the first expected task or "—" for
/// out of scope; a column is what opened, "choices" or "nothing".
Cells cellsOf(const ReportInput& input) {
  Cells cells;
  for (std::size_t i = 0; i < input.judged.size(); ++i) {
    const LabelledUtterance& utterance = input.utterances[i];
    const Judged& judged = input.judged[i];
    const std::string row = utterance.isInScope() ? utterance.expected[0] : "—";
    std::string column = judged.opened.value_or(judged.confidence ? "choices" : "nothing");
    // Opening any of several expected tasks counts for the row's own.
    if (judged.verdict == Verdict::right && isOpening(judged.verdict) && judged.opened)
      column = row;
    ++cells[{row, column}];
  }
  return cells;
}

std::string matrix(const ReportInput& input) {
  const std::vector<std::string> tasks = confusedTasks(input);
  if (tasks.empty()) return "<p class=\"none\">Nothing is taken for something else.</p>";
  const Cells cells = cellsOf(input);
  std::vector<std::string> columns = tasks;
  columns.insert(columns.end(), {"choices", "nothing"});
  std::vector<std::string> rows = tasks;
  if (input.evaluation.outOfScope > 0) rows.emplace_back("—");
  std::size_t most = 1;
  for (const auto& [cell, count] : cells) most = std::max(most, count);

  std::string html = "<table class=\"matrix\"><thead><tr><th scope=\"col\">said ↓ came →</th>";
  for (const std::string& column : columns)
    html += "<th scope=\"col\"><span>" + escapedHtml(column) + "</span></th>";
  html += "</tr></thead><tbody>";
  for (const std::string& row : rows) {
    html += "<tr><th scope=\"row\">" + escapedHtml(row == "—" ? "out of scope" : row) + "</th>";
    for (const std::string& column : columns) {
      const auto at = cells.find({row, column});
      const std::size_t count = at == cells.end() ? 0 : at->second;
      const bool isGood = row == column || (row == "—" && column == "nothing");
      const bool isSoft = column == "choices" || column == "nothing";
      const double depth =
          0.15 + 0.85 * std::sqrt(static_cast<double>(count) / static_cast<double>(most));
      if (count == 0)
        html += "<td></td>";
      else
        html += std::string("<td class=\"") +
                (isGood   ? "right"
                 : isSoft ? "soft"
                          : "wrong") +
                "\" style=\"--depth:" + fixed2(depth) + "\"><b>" + std::to_string(count) +
                "</b></td>";
    }
    html += "</tr>";
  }
  return html + "</tbody></table>";
}

std::string taskRows(const Evaluation& it) {
  std::vector<Evaluation::Task> tasks = it.tasks;
  std::ranges::stable_sort(tasks, std::ranges::greater{}, [](const Evaluation::Task& task) {
    return task.expected - task.right + (task.opened > task.right ? task.opened - task.right : 0);
  });
  std::map<std::string, std::string> takenFor;
  for (const Evaluation::Confusion& confusion : it.confusions) {
    std::string& text = takenFor[confusion.expected];
    text += (text.empty() ? "" : ", ") + confusion.opened + " " + std::to_string(confusion.count);
  }
  std::string html;
  for (const Evaluation::Task& task : tasks) {
    const Share share = shareOf(task.right, task.expected);
    html += "<tr><th scope=\"row\">" + escapedHtml(task.id) + "</th><td>" +
            std::to_string(task.expected) + "</td><td>" + std::to_string(task.right) +
            "</td><td data-value=\"" + shortestDecimal(share.share) + "\">" +
            (task.expected == 0 ? "–"
                                : "<span class=\"meter\" aria-hidden=\"true\"><i style=\"width:" +
                                      shortestDecimal(std::round(share.share * 100)) +
                                      "%\"></i></span><b>" + percentText(share.share) + "</b>") +
            "</td><td>" + std::to_string(task.opened) + "</td><td>" +
            escapedHtml(takenFor[task.id]) + "</td></tr>";
  }
  return html;
}

// The worst utterances.

int badnessOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::wrong: return 0;
    case Verdict::outOfScopeOpened: return 1;
    case Verdict::choicesWithout: return 2;
    case Verdict::missed: return 3;
    case Verdict::outOfScopeChoices: return 4;
    case Verdict::choicesWith: return 5;
    default: return 9;
  }
}

std::string pointsOf(const TaskPoints& points) {
  std::string html;
  for (const TaskPoints::Keyword& keyword : points.keywords)
    if (keyword.points > 0)
      html += "<li><b>+" + shortestDecimal(keyword.points) + "</b> keyword “" +
              escapedHtml(keyword.text) + "”</li>";
  for (const TaskPoints::Example& example : points.examples) {
    if (example.points <= 0) continue;
    html += "<li><b>+" + shortestDecimal(std::round(example.points * 10) / 10) + "</b> example “";
    for (const TaskPoints::Token& token : example.tokens)
      html += (token.found ? "<mark>" + escapedHtml(token.text) + "</mark> "
                           : escapedHtml(token.text) + " ");
    html += "”</li>";
  }
  return html.empty() ? "<li>no points</li>" : html;
}

/// The points of the leading tasks and of the expected one.
std::string breakdown(const ReportInput& input, const LabelledUtterance& utterance) {
  if (!input.spec.tasks()) return {};
  const std::string normalized =
      cleanUtterance(utterance.text, input.spec, utterance.locale).normalized;
  std::string html = "<p>heard as “" + escapedHtml(normalized) + "”</p>";
  const std::vector<ScoredTask> ranked = input.spec.tasks()->rank(normalized);
  for (std::size_t place = 0; place < ranked.size(); ++place) {
    const ZelvoraTaskSpec& task = *ranked[place].task;
    const bool isExpected =
        std::ranges::find(utterance.expected, task.taskId) != utterance.expected.end();
    if (ranked[place].score <= 0 && !isExpected) continue;
    if (place >= 2 && !isExpected) continue;
    const auto index = static_cast<std::size_t>(&task - input.spec.tasks()->tasks().data());
    html += "<h4>" + escapedHtml(task.taskId) + " <span>" + fixed2(ranked[place].score) +
            " points, confidence " + fixed2(ranked[place].confidence) +
            (isExpected ? ", expected" : "") + "</span></h4><ul>" +
            pointsOf(input.spec.tasks()->explain(normalized, index)) + "</ul>";
  }
  return html;
}

std::string worst(const ReportInput& input) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < input.judged.size(); ++i)
    if (badnessOf(input.judged[i].verdict) < 9) order.push_back(i);
  std::ranges::stable_sort(order, {}, [&](std::size_t i) {
    return std::pair(badnessOf(input.judged[i].verdict), -input.judged[i].confidence.value_or(0));
  });
  if (order.empty()) return "<p class=\"none\">Every utterance ends as it should.</p>";
  const std::size_t hidden = order.size() - std::min(order.size(), kMaxUtterances);
  order.resize(order.size() - hidden);
  std::string html;
  for (const std::size_t i : order) {
    const LabelledUtterance& utterance = input.utterances[i];
    const auto [name, kind] = nameOf(input.judged[i].verdict);
    std::string expected;
    for (const std::string& id : utterance.expected)
      expected += (expected.empty() ? "" : " or ") + id;
    html += "<details data-verdict=\"" + name + "\"><summary><i class=\"badge " + kind + "\">" +
            name + "</i><q>" + escapedHtml(utterance.text) + "</q><span>" +
            (utterance.recording.empty() ? "" : escapedHtml(utterance.recording) + ": ") +
            escapedHtml(input.judged[i].outcome) +
            (expected.empty() ? "" : "; expected " + escapedHtml(expected)) +
            "</span></summary><div class=\"points\">" + breakdown(input, utterance) +
            "</div></details>";
  }
  if (hidden > 0) html += "<p class=\"none\">And " + std::to_string(hidden) + " more.</p>";
  return html;
}

}  // namespace

std::string escapedHtml(std::string_view text) {
  std::string html;
  for (const char c : text) switch (c) {
      case '&': html += "&amp;"; break;
      case '<': html += "&lt;"; break;
      case '>': html += "&gt;"; break;
      case '"': html += "&quot;"; break;
      default: html += c;
    }
  return html;
}

std::string percentText(double share) {
  return shortestDecimal(std::round(share * 1000) / 10) + " %";
}

std::string htmlReport(const ReportInput& input) {
  const std::map<std::string_view, std::string> parts = {
      {"TITLE", escapedHtml(input.title)},
      {"COUNTS", std::to_string(input.evaluation.inScope) + " utterances in scope, " +
                     std::to_string(input.evaluation.outOfScope) + " out of scope, " +
                     std::to_string(input.evaluation.tasks.size()) + " tasks"},
      {"TILES", tiles(input.evaluation) + speechTiles(input.speech)},
      {"SHARES", shares(input.evaluation)},
      {"SWEEP", sweep(input)},
      {"HISTOGRAMS", histograms(input)},
      {"TASKS", taskRows(input.evaluation)},
      {"MATRIX", matrix(input)},
      {"WORST", worst(input)},
  };
  // One pass, so that text from an utterance is never taken for a placeholder.
  std::string html;
  std::string_view rest = reportTemplate();
  for (std::size_t at = rest.find("{{"); at != rest.npos; at = rest.find("{{")) {
    const std::size_t end = rest.find("}}", at);
    html += rest.substr(0, at);
    html += parts.at(rest.substr(at + 2, end - at - 2));
    rest.remove_prefix(end + 2);
  }
  return html.append(rest);
}

}  // namespace zelvora::tool

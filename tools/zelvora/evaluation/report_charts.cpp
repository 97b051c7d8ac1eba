#include "report_charts.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <ZelvoraSDK/base/text.h>

#include "../output.h"

namespace zelvora::tool {
namespace {

std::string number(double value) { return shortestDecimal(std::round(value * 10) / 10); }

std::string attribute(const char* name, double value) {
  return std::string(" ") + name + "=\"" + number(value) + "\"";
}

std::string textAt(double x, double y, const char* anchor, const std::string& text,
                   const char* style = "tick") {
  return std::string("<text class=\"") + style + "\"" + attribute("x", x) + attribute("y", y) +
         " text-anchor=\"" + anchor + "\">" + escapedHtml(text) + "</text>";
}

std::string line(double x1, double y1, double x2, double y2, const char* style) {
  return std::string("<line class=\"") + style + "\"" + attribute("x1", x1) + attribute("y1", y1) +
         attribute("x2", x2) + attribute("y2", y2) + "/>";
}

}  // namespace

std::string stackedBar(const std::string& caption, const std::vector<BarPart>& parts) {
  std::size_t all = 0;
  for (const BarPart& part : parts) all += part.count;
  std::string html = "<figure class=\"shares\"><figcaption>" + escapedHtml(caption) + " <span>" +
                     std::to_string(all) + "</span></figcaption>";
  if (all == 0) return html + "<p class=\"none\">None in this file.</p></figure>";
  std::string bar;
  std::string legend;
  for (const BarPart& part : parts) {
    const Share share = shareOf(part.count, all);
    if (part.count > 0)
      bar += "<i class=\"" + part.kind + "\" style=\"flex-grow:" + std::to_string(part.count) +
             "\"></i>";
    legend += "<tr><th scope=\"row\"><i class=\"key " + part.kind + "\"></i>" +
              escapedHtml(part.label) + "</th><td>" + std::to_string(part.count) + "</td><td>" +
              percentText(share.share) + "</td><td class=\"interval\">" + percentText(share.low) +
              " – " + percentText(share.high) + "</td></tr>";
  }
  return html + "<div class=\"stack\" aria-hidden=\"true\">" + bar +
         "</div><table class=\"legend\"><thead class=\"unseen\"><tr><th>Outcome</th><th>Count</th>"
         "<th>Share</th><th>95 % interval</th></tr></thead><tbody>" +
         legend + "</tbody></table></figure>";
}

std::string histogram(const std::string& caption, const std::string& kind,
                      const std::vector<double>& confidences) {
  constexpr std::size_t kBins = 20;
  constexpr double kWidth = 300;
  constexpr double kHeight = 110;
  constexpr double kBase = 90;
  std::array<std::size_t, kBins> bins{};
  for (const double each : confidences)
    ++bins[std::min<std::size_t>(static_cast<std::size_t>(std::max(each, 0.0) * kBins), kBins - 1)];
  const std::size_t most = *std::ranges::max_element(bins);
  std::string svg = "<figure class=\"histogram\"><figcaption>" + escapedHtml(caption) + " <span>" +
                    std::to_string(confidences.size()) + "</span></figcaption>";
  if (most == 0) return svg + "<p class=\"none\">None.</p></figure>";
  std::string spoken;
  std::string bars;
  for (std::size_t bin = 0; bin < kBins; ++bin) {
    if (bins[bin] == 0) continue;
    const double height =
        std::max(2.0, 80 * static_cast<double>(bins[bin]) / static_cast<double>(most));
    const double low = static_cast<double>(bin) / kBins;
    const std::string range =
        fixed2(low) + " to " + fixed2(low + 1.0 / kBins) + ": " + std::to_string(bins[bin]);
    bars += "<rect class=\"" + kind + "\" rx=\"2\"" +
            attribute("x", 5 + static_cast<double>(bin) * 14.5) + attribute("y", kBase - height) +
            attribute("width", 12.5) + attribute("height", height) + "><title>" + range +
            "</title></rect>";
    spoken += (spoken.empty() ? "" : "; ") + range;
  }
  svg += "<svg viewBox=\"0 0 " + number(kWidth) + " " + number(kHeight) +
         "\" role=\"img\" aria-label=\"" + escapedHtml(caption + " by confidence: " + spoken) +
         "\">" + bars + line(5, kBase, 295, kBase, "axis");
  for (const double tick : {0.0, 0.25, 0.5, 0.75, 1.0})
    svg += textAt(5 + tick * 290, 105,
                  tick == 0   ? "start"
                  : tick == 1 ? "end"
                              : "middle",
                  shortestDecimal(tick));
  return svg + "</svg></figure>";
}

std::string sweepChart(const Sweep& sweep) {
  constexpr double kLeft = 44;
  constexpr double kRight = 620;
  constexpr double kTop = 30;
  constexpr double kBottom = 340;
  double widest = 0.1;
  for (const SweepPoint& point : sweep.points) widest = std::max(widest, point.cost);
  widest = std::min(1.0, std::ceil(widest * 10) / 10);
  const auto x = [&](double cost) { return kLeft + (kRight - kLeft) * cost / widest; };
  const auto y = [&](double right) { return kBottom - (kBottom - kTop) * right; };

  std::string svg = "<svg class=\"sweep\" viewBox=\"0 0 640 390\" role=\"img\" aria-label=\"";
  svg += escapedHtml("Right against " + sweep.cost + " for each execute_min_score. Today, at " +
                     shortestDecimal(sweep.today.score) + ": " + percentText(sweep.today.right) +
                     " right, " + percentText(sweep.today.cost) + " " + sweep.cost + ". Best, at " +
                     shortestDecimal(sweep.best.score) + ": " + percentText(sweep.best.right) +
                     " right, " + percentText(sweep.best.cost) + " " + sweep.cost + ".");
  svg += "\">";
  for (const double share : {0.0, 0.25, 0.5, 0.75, 1.0}) {
    svg += line(kLeft, y(share), kRight, y(share), share == 0 ? "axis" : "grid");
    svg += textAt(kLeft - 12, y(share) + 4, "end", shortestDecimal(share * 100));
  }
  for (int i = 0; i <= 5; ++i)
    svg += textAt(x(widest * i / 5), kBottom + 20, "middle",
                  shortestDecimal(std::round(widest * i * 200) / 10));
  svg += textAt((kLeft + kRight) / 2, kBottom + 44, "middle", sweep.cost + ", per cent", "label");
  svg += textAt(kLeft, kTop - 14, "start", "right, per cent", "label");
  std::string path;
  for (const SweepPoint& point : sweep.points)
    path += (path.empty() ? "M" : " L") + number(x(point.cost)) + " " + number(y(point.right));
  svg += "<path class=\"curve\" d=\"" + path + "\"/>";
  for (const SweepPoint& point : sweep.points)
    svg += "<circle class=\"dot\" r=\"3\"" + attribute("cx", x(point.cost)) +
           attribute("cy", y(point.right)) + "><title>execute_min_score " +
           shortestDecimal(point.score) + ": " + percentText(point.right) + " right, " +
           percentText(point.cost) + " " + escapedHtml(sweep.cost) + "</title></circle>";
  const auto dot = [&](const SweepPoint& point, const char* style) {
    svg += std::string("<circle class=\"") + style + "\" r=\"7\"" + attribute("cx", x(point.cost)) +
           attribute("cy", y(point.right)) + "/>";
  };
  const bool isSame = sweep.best.cost == sweep.today.cost && sweep.best.right == sweep.today.right;
  // The curve rises to the right: there is room above a dot on its left and below on its right.
  if (!isSame) {
    dot(sweep.best, "best");
    const std::string name = "best, at " + shortestDecimal(sweep.best.score);
    const bool isLeft = x(sweep.best.cost) < kLeft + 130;
    svg += textAt(x(sweep.best.cost) + (isLeft ? 0 : -12), y(sweep.best.right) - (isLeft ? 18 : 8),
                  isLeft ? "start" : "end", name, "mark");
  }
  dot(sweep.today, "today");
  const bool isLeft = x(sweep.today.cost) < 480;
  svg += textAt(
      x(sweep.today.cost) + (isLeft ? 12 : -12), y(sweep.today.right) + 20,
      isLeft ? "start" : "end",
      (isSame ? "today and best, at " : "today, at ") + shortestDecimal(sweep.today.score), "mark");
  return svg + "</svg>";
}

}  // namespace zelvora::tool

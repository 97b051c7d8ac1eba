#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/facade/local_stage.h>

#include "evaluation.h"
#include "labelled.h"
#include "recordings.h"

namespace zelvora::tool {

/// What a report shows.
struct ReportInput {
  std::string title;
  const std::vector<LabelledUtterance>& utterances;
  const std::vector<Judged>& judged;
  const Evaluation& evaluation;
  const PreparedSpec& spec;
  std::optional<SpeechFigures> speech;  ///< Of recordings.
};

/// One HTML file that needs nothing else: no network, and no script to read it. The markup around
/// the figures is in report.html.
std::string htmlReport(const ReportInput& input);

/// `text` as HTML text or attribute value.
std::string escapedHtml(std::string_view text);

/// "77.8 %".
std::string percentText(double share);

}  // namespace zelvora::tool

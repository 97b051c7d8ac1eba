#include <ZelvoraSDK/routing/local_router.h>

#include <utility>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/outcome/diagnostics.h>
#include <ZelvoraSDK/routing/stopwords.h>

namespace zelvora {
namespace {

/// The line that tells of a local hit; none for any other result. A local hit has a confidence.
std::optional<std::string> localHitLine(const ZelvoraResult& result) {
  if (const auto* hit = std::get_if<ZelvoraExecute>(&result))
    return "✅ LOCAL HIT screenId=" + hit->screenId + " conf=" + shortestDecimal(*hit->confidence);
  if (const auto* hit = std::get_if<ZelvoraPresent>(&result))
    return "✅ LOCAL HIT presentationId=" + hit->presentationId +
           " conf=" + shortestDecimal(*hit->confidence);
  return std::nullopt;
}

}  // namespace

ZelvoraLocalRouter::ZelvoraLocalRouter(std::shared_ptr<LogSink> log)
    : stopwords_(kDefaultStopwords.begin(), kDefaultStopwords.end()),
      log_(log ? std::move(log) : std::make_shared<StandardOutputLogSink>()) {}

ZelvoraResult ZelvoraLocalRouter::route(
    std::string_view text, const ZelvoraSpec& spec,
    const std::optional<RuntimeSpec::Thresholds>& thresholds) const {
  return route(text, CompiledTasks(spec.tasks()), thresholds);
}

ZelvoraResult ZelvoraLocalRouter::route(
    std::string_view text, const CompiledTasks& tasks,
    const std::optional<RuntimeSpec::Thresholds>& thresholds) const {
  ZelvoraResult result = tasks.route(text, thresholds ? *thresholds : RuntimeSpec::Thresholds{});
  report(result);
  return result;
}

void ZelvoraLocalRouter::report(const ZelvoraResult& result) const {
  const std::optional<std::string> line = localHitLine(result);
  if (!line) return;
  log_->write(*line);
  ZelvoraDiagnostics::shared().incLocal();
}

}  // namespace zelvora

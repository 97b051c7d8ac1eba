#include <ZelvoraSDK/facade/transcript_decision.h>

#include <utility>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr double kDefaultMinimumConfidence = 0.65;
constexpr std::size_t kMinCloudCharacters = 3;

// Recognisers of right-to-left languages wrap words in these.
constexpr char32_t kDirectionalMarks[] = {U'\u200F', U'\u200E', U'\u202A', U'\u202B', U'\u202C'};

}  // namespace

bool mayAskCloud(ZelvoraSTTMode mode) {
  return mode == ZelvoraSTTMode::cloudOnly || mode == ZelvoraSTTMode::hybrid;
}

std::string cleanedTranscript(std::string_view transcript) {
  std::string text(transcript);
  for (const char32_t mark : kDirectionalMarks) {
    std::string encoded;
    appendCodePoint(encoded, mark);
    text = replacedAll(text, encoded, "");
  }
  return std::string(trimmed(text));
}

double minimumLocalConfidence(const AppBundle& bundle) {
  return bundle.numberSetting("ZelvoraLocalSTTMinConfidence").value_or(kDefaultMinimumConfidence);
}

std::variant<UseTranscript, AskCloud, ZelvoraUnsupported> judgeLocal(const HeardLocally& heard,
                                                                     double minimumConfidence,
                                                                     ZelvoraSTTMode mode) {
  const bool sure = heard.confidence && *heard.confidence >= minimumConfidence;
  if (sure && !heard.transcript.empty()) return UseTranscript{heard.transcript};
  if (!mayAskCloud(mode)) return ZelvoraUnsupported{"No speech detected"};
  if (heard.audioBytes == 0)
    return ZelvoraUnsupported{"Could not detect speech locally (no audio for cloud fallback)"};
  return AskCloud{};
}

std::variant<UseTranscript, ZelvoraUnsupported> judgeCloud(std::string transcript) {
  if (characterCount(transcript) < kMinCloudCharacters)
    return ZelvoraUnsupported{"Could not detect speech in the cloud either"};
  return UseTranscript{std::move(transcript)};
}

ZelvoraUnsupported cloudFailure(std::string_view description) {
  return {std::string("Cloud STT error: ").append(description)};
}

}  // namespace zelvora

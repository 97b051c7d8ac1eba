#include <ZelvoraSDK/routing/caseless_text.h>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr std::size_t kInsideCodePoint = static_cast<std::size_t>(-1);

}  // namespace

CaselessText::CaselessText(std::string_view text) : text_(text) {
  for (std::size_t at = 0; at < text.size();) {
    const DecodedCodePoint point = firstCodePoint(text.substr(at));
    starts_.push_back(at);
    appendLowercased(lower_, point.value);
    starts_.resize(lower_.size(), kInsideCodePoint);
    at += point.length;
  }
  starts_.push_back(text.size());
}

std::string CaselessText::replacing(std::string_view what, std::string_view with) const {
  const std::string wanted = lowercased(what);
  std::string replaced;
  std::size_t copied = 0;
  for (std::size_t at = 0; (at = lower_.find(wanted, at)) != lower_.npos;) {
    const std::size_t first = starts_[at];
    const std::size_t last = starts_[at + wanted.size()];
    if (first == kInsideCodePoint || last == kInsideCodePoint) {
      ++at;
      continue;
    }
    replaced += text_.substr(copied, first - copied);
    replaced += with;
    copied = last;
    at += wanted.size();
  }
  replaced += text_.substr(copied);
  return replaced;
}

}  // namespace zelvora

#include "progress.h"

#include <cstdlib>
#include <utility>

#include "../output.h"

namespace zelvora::tool {
namespace {

constexpr int kWidth = 30;

bool isWanted() {
  const char* const noColour = std::getenv("NO_COLOR");
  return errorsGoToTerminal() && (noColour == nullptr || *noColour == '\0');
}

}  // namespace

ProgressBar::ProgressBar(std::string what) : what_(std::move(what)), isShown_(isWanted()) {}

ProgressBar::~ProgressBar() {
  if (isShown_ && percent_ >= 0) printRaw("\r\033[K");
}

void ProgressBar::show(double share) {
  const int percent = static_cast<int>(share * 100);
  if (!isShown_ || percent == percent_) return;
  percent_ = percent;
  const int done = percent * kWidth / 100;
  std::string bar;
  for (int i = 0; i < kWidth; ++i) bar += i < done ? "█" : "░";
  printRaw("\r" + what_ + " " + bar + " " + std::to_string(percent) + " %");
}

}  // namespace zelvora::tool

#include "live_line.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iostream>

#include "terminal.h"

namespace zelvora::tool {
namespace {

constexpr int kBarWidth = 12;
constexpr double kSoftest = -60;  ///< In decibels of full scale.

}  // namespace

LiveLine::LiveLine() : isOnTerminal_(isatty(STDERR_FILENO) != 0) {}

LiveLine::~LiveLine() { clear(); }

void LiveLine::showLevel(float level) {
  level_ = level;
  draw();
}

void LiveLine::showState(bool isRecording, const std::string& text) {
  if (isRecording) state_ = "listening";
  if (wasRecording_ && !isRecording) {
    state_ = "thinking";
    level_ = 0;
  }
  wasRecording_ = isRecording;
  text_ = text;
  draw();
}

void LiveLine::clear() const {
  if (isOnTerminal_) std::cerr << "\r\033[K" << std::flush;
}

void LiveLine::draw() const {
  if (!isOnTerminal_) return;
  const Style style = Style::forDescriptor(STDERR_FILENO);
  std::cerr << "\r\033[K" + style.notice(state_ + "…") + " " +
                   style.good(levelBar(level_, kBarWidth)) + " " + text_
            << std::flush;
}

std::string levelBar(float level, int width) {
  const double decibels = level > 0 ? 20 * std::log10(static_cast<double>(level)) : kSoftest;
  const double share = std::clamp(1 - decibels / kSoftest, 0.0, 1.0);
  const auto filled = static_cast<int>(std::lround(share * width));
  std::string bar;
  for (int i = 0; i < width; ++i) bar += i < filled ? "▮" : "▯";
  return bar;
}

}  // namespace zelvora::tool

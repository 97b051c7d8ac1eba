#pragma once

#include <string>

namespace zelvora::tool {

/// One line on standard error that shows what is going on while someone speaks: the state, how loud
/// it is and the text so far. Nothing where standard error is no terminal.
class LiveLine {
 public:
  LiveLine();
  ~LiveLine();
  LiveLine(const LiveLine&) = delete;
  LiveLine& operator=(const LiveLine&) = delete;

  void showLevel(float level);
  void showState(bool isRecording, const std::string& text);
  /// Makes room for a line of someone else's.
  void clear() const;

 private:
  void draw() const;

  bool isOnTerminal_;
  bool wasRecording_ = false;
  std::string state_ = "starting";
  std::string text_;
  float level_ = 0;
};

/// `level`, 1 for full scale, as a bar of `width` characters. What is softer than 60 dB below full
/// scale is an empty one.
std::string levelBar(float level, int width);

}  // namespace zelvora::tool

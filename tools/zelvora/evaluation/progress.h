#pragma once

#include <string>

namespace zelvora::tool {

/// A bar on standard error, on a terminal without NO_COLOR only. Gone when it ends.
class ProgressBar {
 public:
  explicit ProgressBar(std::string what);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// `share` is from 0 to 1.
  void show(double share);

 private:
  std::string what_;
  bool isShown_;
  int percent_ = -1;
};

}  // namespace zelvora::tool

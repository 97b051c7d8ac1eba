#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include <ZelvoraSDK/routing/private/points.h>

namespace zelvora {

/// What the tasks earn from one utterance, in units: a counter of keyword units a task, and a
/// counter of one byte an example. Eight of those bytes are a row; a row belongs to one task.
/// All are zero between utterances.
class UnitCounters {
 public:
  static constexpr std::size_t kRowSize = sizeof(ExampleRow);

  /// Makes room; counting allocates nothing after that.
  void reserve(std::size_t taskCount, std::size_t rowCount) {
    if (keywords_.size() < taskCount) keywords_.resize(taskCount);
    if (totals_.size() < taskCount) totals_.resize(taskCount);
    if (examples_.size() < rowCount * kRowSize) examples_.resize(rowCount * kRowSize);
  }

  /// By task.
  [[nodiscard]] std::uint32_t* keywords() { return keywords_.data(); }
  [[nodiscard]] const std::uint32_t* keywords() const { return keywords_.data(); }
  /// By slot: row * 8 + the example's place in its row.
  [[nodiscard]] std::uint8_t* examples() { return examples_.data(); }
  /// By task: room to add the counters up, of no meaning between utterances.
  [[nodiscard]] std::uint32_t* totals() { return totals_.data(); }

  [[nodiscard]] ExampleRow row(std::size_t row) const {
    ExampleRow units;
    std::memcpy(units.data(), examples_.data() + row * kRowSize, kRowSize);
    return units;
  }
  void clearRow(std::size_t row) { std::memset(examples_.data() + row * kRowSize, 0, kRowSize); }

  void clear(std::size_t taskCount, std::size_t rowCount) {
    std::fill_n(keywords_.data(), taskCount, 0u);
    std::fill_n(examples_.data(), rowCount * kRowSize, std::uint8_t{0});
  }

 private:
  std::vector<std::uint32_t> keywords_;
  std::vector<std::uint32_t> totals_;
  std::vector<std::uint8_t> examples_;
};

}  // namespace zelvora

#pragma once

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
  /// Makes room; counting allocates nothing after that.
  void reserve(std::size_t taskCount, std::size_t rowCount) {
    if (keywords_.size() < taskCount) keywords_.resize(taskCount);
    if (examples_.size() < rowCount * kRowSize) examples_.resize(rowCount * kRowSize);
  }

  static constexpr std::size_t kRowSize = sizeof(ExampleRow);

  [[nodiscard]] std::uint32_t* keywords() { return keywords_.data(); }
  [[nodiscard]] std::uint8_t* examples() { return examples_.data(); }

  [[nodiscard]] ExampleRow row(std::uint32_t row) const {
    ExampleRow units;
    std::memcpy(units.data(), examples_.data() + row * kRowSize, kRowSize);
    return units;
  }
  void clearRow(std::uint32_t row) { std::memset(examples_.data() + row * kRowSize, 0, kRowSize); }

 private:
  std::vector<std::uint32_t> keywords_;  ///< By task.
  std::vector<std::uint8_t> examples_;   ///< By slot: row * 8 + the example's place in its row.
};

}  // namespace zelvora

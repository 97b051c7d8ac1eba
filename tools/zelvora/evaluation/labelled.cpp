#include "labelled.h"

#include <algorithm>
#include <string_view>

#include <ZelvoraSDK/base/text.h>

#include "../application.h"

namespace zelvora::tool {
namespace {

class LabelReader {
 public:
  LabelReader(std::filesystem::path file, const LabelRules& rules)
      : file_(std::move(file)), rules_(rules) {}

  std::vector<LabelledUtterance> read() {
    const std::string bytes = readInputFile(file_);
    std::string_view rest = bytes;
    if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);
    while (!rest.empty()) {
      ++line_;
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      std::string_view line = rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
      if (line.ends_with('\r')) line.remove_suffix(1);
      if (!isBlank(line) && !line.starts_with("# ")) readLine(line);
    }
    return std::move(read_);
  }

 private:
  void readLine(std::string_view line) {
    if (!isValidUtf8(line)) fail("not UTF-8");
    LabelledUtterance utterance{.file = file_, .line = line_};
    std::vector<std::string_view> cells;
    for (std::size_t at = 0; at <= line.size();) {
      const std::size_t end = std::min(line.find('\t', at), line.size());
      cells.push_back(line.substr(at, end - at));
      at = end + 1;
    }
    if (cells.size() < 2) fail("no tab between the utterance and what is expected");
    const std::size_t most = rules_.areRecordings ? 4 : 3;
    if (cells.size() > most) fail("more than " + std::to_string(most) + " columns");
    utterance.text = std::string(cells[0]);
    readExpected(cells[1], utterance);
    utterance.locale =
        cells.size() > 2 && !cells[2].empty() ? std::string(cells[2]) : rules_.locale;
    if (cells.size() > 3 && !isBlank(cells[3])) utterance.reference = std::string(cells[3]);
    read_.push_back(std::move(utterance));
  }

  void readExpected(std::string_view cell, LabelledUtterance& utterance) const {
    if (cell == "-") return;
    if (cell.starts_with('?')) {
      utterance.areChoicesRight = true;
      cell.remove_prefix(1);
    }
    for (const std::string_view id : splitWords(cell, '|')) {
      if (std::ranges::find(rules_.taskIds, id) == rules_.taskIds.end()) failUnknown(id);
      utterance.expected.emplace_back(id);
    }
    if (utterance.expected.empty()) fail("nothing is expected; write - for out of scope");
  }

  [[noreturn]] void failUnknown(std::string_view id) const {
    std::string what = "the spec has no task \"" + std::string(id) + "\"";
    if (!rules_.taskIds.empty())
      what += "; did you mean \"" + nearestTo(id, rules_.taskIds) + "\"?";
    fail(what);
  }

  [[noreturn]] void fail(const std::string& what) const {
    throw UsageError(file_.string() + ":" + std::to_string(line_) + ": " + what);
  }

  std::filesystem::path file_;
  const LabelRules& rules_;
  std::size_t line_ = 0;
  std::vector<LabelledUtterance> read_;
};

}  // namespace

std::vector<LabelledUtterance> readLabelled(const std::vector<std::string>& files,
                                            const LabelRules& rules) {
  std::vector<LabelledUtterance> all;
  for (const std::string& file : files) {
    std::vector<LabelledUtterance> more = LabelReader(file, rules).read();
    all.insert(all.end(), std::make_move_iterator(more.begin()),
               std::make_move_iterator(more.end()));
  }
  return all;
}

}  // namespace zelvora::tool

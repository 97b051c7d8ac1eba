#include "example_spec.h"

namespace zelvora::tool {
namespace {

namespace fs = std::filesystem;

std::optional<fs::path> ifFile(fs::path path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored) ? std::optional(std::move(path)) : std::nullopt;
}

std::optional<fs::path> findExample(const fs::path& inTree) {
  if (auto here = ifFile(inTree)) return here;

  std::error_code unknown;
  const fs::path tool = fs::read_symlink("/proc/self/exe", unknown);
  if (unknown) return std::nullopt;
  const fs::path folder = tool.parent_path();
  if (auto installed = ifFile(folder / "../share/zelvora" / inTree)) return installed;
  return ifFile(folder / "../../.." / inTree);  // build/PRESET/bin
}

}  // namespace

std::optional<fs::path> findExampleSpec() { return findExample("examples/shop/shop.json"); }

std::optional<fs::path> findExampleCatalogue() {
  return findExample("examples/shop/catalogue.json");
}

}  // namespace zelvora::tool

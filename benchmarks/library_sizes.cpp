#include <benchmarks/library_sizes.h>

#include <filesystem>

namespace zelvora::bench {

std::vector<LibrarySize> librarySizes() {
  std::vector<LibrarySize> sizes;
  for (const char* const name : {"libzelvora.so", "libzelvora-host.so"}) {
    const std::filesystem::path file = std::filesystem::path(ZELVORA_STRIPPED) / name;
    sizes.push_back({.name = name, .megabytes = static_cast<double>(file_size(file)) / 1e6});
  }
  return sizes;
}

}  // namespace zelvora::bench

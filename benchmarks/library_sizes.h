#pragma once

#include <string>
#include <vector>

namespace zelvora::bench {

struct LibrarySize {
  std::string name;
  double megabytes = 0;  ///< As an application ships it: shared, optimised and stripped.
};

/// Throws std::filesystem::filesystem_error when a library is not there.
std::vector<LibrarySize> librarySizes();

}  // namespace zelvora::bench

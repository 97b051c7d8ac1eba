#include <ZelvoraSDK/platform/system.h>

#include <cstdio>
#include <string>

namespace zelvora {

void StandardOutputLogSink::write(std::string_view line) {
  // One call a line: the C library holds the stream's lock for its length.
  const std::string whole = std::string(line) + '\n';
  std::fwrite(whole.data(), 1, whole.size(), stdout);
  std::fflush(stdout);
}

}  // namespace zelvora

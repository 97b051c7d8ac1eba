#include <ZelvoraSDK/platform/system.h>

#include <cstdio>

namespace zelvora {

void StandardOutputLogSink::write(std::string_view line) {
  // Lines may be long, so none is copied to give it its end.
  ::flockfile(stdout);
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
  ::funlockfile(stdout);
}

}  // namespace zelvora

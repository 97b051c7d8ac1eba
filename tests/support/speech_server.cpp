#include <tests/support/speech_server.h>

#include <stdlib.h>

#include <string>
#include <vector>

#include <tests/support/unix_socket.h>

namespace zelvora::testing {

SpeechServer::SpeechServer() {
  const auto runtime = privateFolder(folder_.path() / "run");
  ::setenv("HOME", privateFolder(folder_.path() / "home").c_str(), 1);
  ::setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
  const std::string path = socket();
  // Clients look up XDG_RUNTIME_DIR only once, but a process may start several servers in its life.
  ::setenv("SPEECHD_ADDRESS", ("unix_socket:" + path).c_str(), 1);
  daemon_.emplace(std::vector<std::string>{"speech-dispatcher", "--run-single", "--timeout", "0",
                                           "--socket-path", path});
  awaitListening(*daemon_, path);
}

}  // namespace zelvora::testing

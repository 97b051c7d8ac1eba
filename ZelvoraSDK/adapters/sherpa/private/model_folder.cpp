#include <ZelvoraSDK/adapters/sherpa/private/model_folder.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string_view>
#include <thread>
#include <vector>

#include <ZelvoraSDK/base/error.h>

namespace zelvora::sherpa {
namespace {

namespace fs = std::filesystem;

/// A transducer for a phone has 5 to 300 MB.
constexpr std::uintmax_t kMaxModelBytes = std::uintmax_t{1} << 30;
/// A model that needs more to decode one second of silence is of no use on a phone.
constexpr std::chrono::seconds kLongestTrial{60};

Error badModel(const std::string& what) {
  return {"ZelvoraSpeechRecognizer", 5, "The speech model can't be used: " + what};
}

/// The one file in `folder` that begins with `name` and ends in ".onnx"; of two, the smaller one,
/// which is the quantised one.
fs::path networkIn(const fs::path& folder, const std::string& name) {
  fs::path found;
  std::error_code failed;
  for (const auto& entry : fs::directory_iterator(folder, failed)) {
    const std::string file = entry.path().filename().string();
    if (!file.starts_with(name) || !file.ends_with(".onnx")) continue;
    if (found.empty() || entry.file_size() < fs::file_size(found)) found = entry.path();
  }
  if (found.empty()) throw badModel(folder.string() + " has no " + name + "*.onnx");
  return found;
}

std::string contentOf(const fs::path& file) {
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(file, failed);
  if (failed || size == 0) throw badModel(file.string() + " is missing or empty");
  if (size > kMaxModelBytes) throw badModel(file.string() + " has more than 1 GiB");
  std::ifstream bytes(file, std::ios::binary);
  std::string content(std::istreambuf_iterator<char>(bytes), {});
  if (content.size() != size) throw badModel(file.string() + " can't be read");
  return content;
}

/// The names of the metadata stand in the file as they are.
std::string networkWith(const fs::path& folder, const std::string& name,
                        std::initializer_list<std::string_view> metadata) {
  const fs::path file = networkIn(folder, name);
  const std::string content = contentOf(file);
  for (const std::string_view key : metadata)
    if (content.find(key) == std::string::npos)
      throw badModel(file.string() + " is not of a streaming transducer: no " + std::string(key));
  return file.string();
}

std::string reasonOf(int status) {
  if (WIFEXITED(status))
    return "the trial failed with status " + std::to_string(WEXITSTATUS(status));
  return std::string("the trial ended with ") + strsignal(WTERMSIG(status));
}

/// Waits without bound only when the process is already killed.
int waitFor(pid_t child) {
  const auto end = std::chrono::steady_clock::now() + kLongestTrial;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      throw badModel("it decodes one second of silence in more than a minute");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds{20});
  }
  return status;
}

pid_t startTrial(const std::string& program, std::string folder) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
  std::string name = program;
  const std::array<char*, 3> arguments{name.data(), folder.data(), nullptr};
  pid_t child = 0;
  const int failed =
      posix_spawn(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) throw badModel(program + ", which tries models, can't be started");
  return child;
}

/// Installed, or where it was built.
std::string trialProgram() {
  if (access(ZELVORA_SHERPA_CHECK_INSTALLED, X_OK) == 0) return ZELVORA_SHERPA_CHECK_INSTALLED;
  return ZELVORA_SHERPA_CHECK_BUILT;
}

}  // namespace

ModelFiles modelFilesIn(const fs::path& folder) {
  std::error_code failed;
  if (!fs::is_directory(folder, failed)) throw badModel(folder.string() + " is no folder");
  ModelFiles files{.encoder = networkWith(folder, "encoder", {"model_type", "decode_chunk_len"}),
                   .decoder = networkWith(folder, "decoder", {"context_size", "vocab_size"}),
                   .joiner = networkWith(folder, "joiner", {"joiner_dim"}),
                   .tokens = (folder / "tokens.txt").string(),
                   .bpeVocabulary = {}};
  if (contentOf(files.tokens).find("<blk> 0") == std::string::npos)
    throw badModel(files.tokens + " has no token <blk>");
  if (fs::exists(folder / "bpe.vocab", failed))
    files.bpeVocabulary = (folder / "bpe.vocab").string();
  return files;
}

void tryModel(const fs::path& folder) {
  const int status = waitFor(startTrial(trialProgram(), folder.string()));
  if (status != 0) throw badModel(reasonOf(status));
}

}  // namespace zelvora::sherpa

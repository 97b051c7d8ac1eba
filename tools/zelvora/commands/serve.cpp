#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>

#include "../application.h"
#include "../commands.h"
#include "../serve/http_server.h"
#ifdef ZELVORA_SPEECH
#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>

#include "../serve/transcription.h"
#endif

namespace zelvora::tool {
namespace {

namespace fs = std::filesystem;

struct ServeOptions {
  std::optional<fs::path> spec;
  std::optional<fs::path> catalogue;
  std::optional<std::string> requiredToken;
  int port = 8080;
  bool quiet = false;
};

/// The bytes of a JSON file in which `read` finds nothing wrong.
template <class Read>
std::string checkedFile(const fs::path& path, const Read& read) {
  std::string bytes = readInputFile(path);
  try {
    const JsonDocument document = parseJson(bytes);
    read(JsonCursor(document.root()));
  } catch (const Error& error) {
    throw UsageError(path.string() + ": " + error.description());
  }
  return bytes;
}

serve::BackendOptions backendFor(const ServeOptions& options) {
  serve::BackendOptions backend{.requiredToken = options.requiredToken};
  const auto catalogue = options.catalogue ? options.catalogue : findExample("catalogue.json");
  if (catalogue)
    checkedFile(*catalogue,
                [&](const JsonCursor& in) { backend.catalogue = serve::catalogueIn(in); });
  if (options.spec)
    backend.spec =
        checkedFile(*options.spec, [](const JsonCursor& in) { serve::tasksIn(in, "en-US"); });
  return backend;
}

#ifdef ZELVORA_SPEECH
/// This system's recogniser, which expects the phrases of the spec served, else of the example's.
serve::Transcriber transcriberFor(const ServeOptions& options) {
  const auto spec = options.spec ? options.spec : findExample("shop.json");
  std::vector<std::string> vocabulary;
  if (spec) vocabulary = recognitionVocabulary(specInFile(*spec), "en-US");
  return serve::transcriberWith(
      std::make_shared<PocketsphinxRecognizerFactory>(std::move(vocabulary)));
}
#endif

int runServe(const ServeOptions& options, Output& out) {
  serve::BackendOptions backend = backendFor(options);
#ifdef ZELVORA_SPEECH
  backend.transcriber = transcriberFor(options);
#endif
  const bool quiet = options.quiet;
  std::unique_ptr<serve::HttpServer> server;
  try {
    server = std::make_unique<serve::HttpServer>(std::move(backend),
                                                 static_cast<std::uint16_t>(options.port),
                                                 [quiet](const std::string& line) {
                                                   if (!quiet) printError(line);
                                                 });
  } catch (const std::runtime_error& error) {
    throw UsageError("port " + std::to_string(options.port) + ": " + error.what());
  }
  out.write("Development backend on " + server->address() + "\n");
  out.flush();
  server->run();
  return kAnswered;
}

}  // namespace

Command serveCommand() {
  const auto options = std::make_shared<ServeOptions>();
  Command command{
      .name = "serve",
      .summary = "run a backend to develop against, on this machine alone; not for production",
      .about =
          "Runs a backend to develop against on 127.0.0.1 until Ctrl-C or SIGTERM: a tool for "
          "development, not for production. It prints one line that ends in its address and, on "
          "standard error, a line a request: method, path, status.\n\n"
          "It answers only requests whose `Host` is this machine, reads bodies of at most 32 MiB "
          "without a `Content-Encoding`, looks at the token before the body, and gives each "
          "connection 20 seconds to send its request."};
  command.options = {
      {.name = "--port",
       .value = "N",
       .meaning = "the port; 0 takes a free one",
       .otherwise = "8080",
       .take = into(options->port, 0, 65535)},
      {.name = "--catalogue",
       .value = "FILE",
       .meaning = "what the catalogue holds",
       .otherwise = "the example shop's, where it can be found",
       .take = into(options->catalogue),
       .completes = Completes::files},
      {.name = "--spec",
       .value = "FILE",
       .meaning = "tasks to search for requests that bring none",
       .otherwise = "none",
       .take = into(options->spec),
       .completes = Completes::files},
      {.name = "--require-token",
       .value = "T",
       .meaning = "the one bearer token accepted",
       .otherwise = "any",
       .take = into(options->requiredToken)},
      {.name = "--quiet", .meaning = "no line a request", .take = into(options->quiet)}};
  command.run = [options](Output& out) { return runServe(*options, out); };
  return command;
}

}  // namespace zelvora::tool

#include <CLI/CLI.hpp>
#include <iostream>
#include <optional>
#include <stdexcept>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>

#include "../commands.h"
#include "../example_spec.h"
#include "../input_file.h"
#include "../serve/http_server.h"
#include "../usage_error.h"
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
  const auto catalogue = options.catalogue ? options.catalogue : findExampleCatalogue();
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
  const auto spec = options.spec ? options.spec : findExampleSpec();
  std::vector<std::string> vocabulary;
  if (spec) vocabulary = recognitionVocabulary(specInFile(*spec), "en-US");
  return serve::transcriberWith(
      std::make_shared<PocketsphinxRecognizerFactory>(std::move(vocabulary)));
}
#endif

int runServe(const ServeOptions& options) {
  serve::BackendOptions backend = backendFor(options);
#ifdef ZELVORA_SPEECH
  backend.transcriber = transcriberFor(options);
#endif
  try {
    serve::serveUntilStopped(backend, options.port, [](const std::string& address) {
      std::cout << "Development backend on " << address << std::endl;
    });
  } catch (const std::runtime_error& error) {
    throw UsageError("port " + std::to_string(options.port) + ": " + error.what());
  }
  return kAnswered;
}

}  // namespace

void addServeCommand(CLI::App& tool, Run& run) {
  auto options = std::make_shared<ServeOptions>();
  CLI::App* command = tool.add_subcommand(
      "serve", "Run a backend to develop against, on this machine alone; not for production");
  command->add_option("--spec", options->spec, "Tasks to search for requests that bring none")
      ->type_name("FILE");
  command
      ->add_option("--catalogue", options->catalogue, "What the catalogue holds; else the shop's")
      ->type_name("FILE");
  command->add_option("--port", options->port, "Port on 127.0.0.1; 0 takes a free one")
      ->type_name("N")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  command
      ->add_option("--require-token", options->requiredToken,
                   "The one bearer token accepted; without it any will do")
      ->type_name("T");
  command->callback([options, &run] { run = [options] { return runServe(*options); }; });
}

}  // namespace zelvora::tool

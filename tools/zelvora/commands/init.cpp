#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "../commands.h"

namespace zelvora::tool {
namespace {

namespace fs = std::filesystem;

struct BundleFile {
  const char* name;
  std::string_view content;
};

constexpr BundleFile kFiles[] = {
    {"Info.plist", R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
  <key>CFBundleIdentifier</key>
  <string>org.example.library</string>
  <key>ZelvoraPublishableKey</key>
  <string>demo</string>
  <key>ZelvoraLocale</key>
  <string>en-US</string>
  <key>ZelvoraSTTMode</key>
  <string>localOnly</string>
</dict>
</plist>
)"},
    {"spec.json", R"({
  "app": { "id": "org.example.library", "default_locale": "en-US" },
  "routing": {
    "thresholds": {
      "execute_min_score": 6.0,
      "execute_min_conf": 0.7,
      "choices_min_score": 3.0,
      "choices_min_conf": 0.45,
      "close_to_second_delta": 2.0,
      "max_choices": 3,
      "semantic_enabled": true
    },
    "weights": {
      "keyword_phrase_hit": 6.0,
      "keyword_single_hit": 3.0,
      "example_token_hit": 0.6,
      "example_token_cap": 3.0
    },
    "stopwords": [
      "a", "an", "the", "i", "i'd", "we", "me", "you", "please", "can", "could", "want", "would",
      "like", "to", "show", "open", "go", "take", "what", "are", "is", "do"
    ]
  },
  "learning": {
    "enabled": true,
    "mode": "local",
    "boost": { "recent_choice_bonus": 0.03, "repeat_choice_bonus": 0.03, "max_total_bonus": 0.15 },
    "telemetry": { "enabled": false, "endpoint": "", "send_text": false }
  },
  "tasks": [
    {
      "id": "loans",
      "title": "My loans",
      "screenId": "loans",
      "keywords": ["my loans", "borrowed books", "due back"],
      "examples": ["my loans", "borrowed books", "due back"]
    },
    {
      "id": "catalogue",
      "title": "Find a book",
      "screenId": "catalogue",
      "keywords": ["find book", "search catalogue", "book shelf"],
      "examples": ["find book", "search catalogue", "book shelf"]
    },
    {
      "id": "hours",
      "title": "Opening hours",
      "screenId": "hours",
      "keywords": ["opening hours", "closing time", "library hours"],
      "examples": ["opening hours", "closing time", "library hours"]
    },
    {
      "id": "events",
      "title": "Events calendar",
      "screenId": "events",
      "keywords": ["events calendar", "story evening", "author reading"],
      "examples": ["events calendar", "story evening", "author reading"]
    },
    {
      "id": "card",
      "title": "Library card",
      "screenId": "card",
      "keywords": ["library card", "membership number", "renew membership"],
      "examples": ["library card", "membership number", "renew membership"],
      "action": { "type": "present", "id": "card-sheet" }
    }
  ]
}
)"},
    {"utterances.tsv",
     "# What people say, a tab, and the task that it shall open; \"-\" is out of scope.\n"
     "show me my loans\tloans\n"
     "which borrowed books do I have\tloans\n"
     "find a book\tcatalogue\n"
     "search the catalogue for poetry\tcatalogue\n"
     "what are the opening hours\thours\n"
     "when is closing time\thours\n"
     "is there a story evening\tevents\n"
     "the next author reading\tevents\n"
     "open my library card\tcard\n"
     "I want to renew my membership\tcard\n"
     "what is the weather on mars\t-\n"
     "play some jazz\t-\n"},
    {"README.md", R"(# A bundle to begin with

An application that a library's readers might use: `Info.plist` holds its settings, `spec.json` what can
be asked of it, `utterances.tsv` what people say and where it shall lead. Run from this folder:

    zelvora route --offline --bundle . --resource spec "show me my loans"
    zelvora explain --spec spec.json "when is closing time"
    zelvora lint spec.json
    zelvora eval --spec spec.json utterances.tsv
    zelvora shell --offline --spec spec.json

Now make it yours. Change the tasks: `id` and `screenId` are names of your application's own, `title` is
what users read. A keyword of two or more words is worth 6 points, a single word 3, and each word of an
example that is heard 0.6, at most 3 an example; a task opens from 6 points on. Write down in
`utterances.tsv` what people really say, before you tune the spec to it, and let `lint` and `eval` tell
what to mend. In the shell, a spec that is saved counts from the next line on.
)"},
};

/// Throws UsageError with the reason of `errno`.
[[noreturn]] void failOn(const fs::path& path) {
  throw UsageError(path.string() + ": " + std::generic_category().message(errno));
}

/// Writes a file that must not be there yet.
void writeNew(const fs::path& path, std::string_view content) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0) failOn(path);
  bool isWritten = true;
  while (isWritten && !content.empty()) {
    const ssize_t count = ::write(file, content.data(), content.size());
    isWritten = count >= 0 || errno == EINTR;
    if (count > 0) content.remove_prefix(static_cast<std::size_t>(count));
  }
  const int problem = errno;
  const bool isClosed = ::close(file) == 0;
  if (isWritten && isClosed) return;
  if (!isWritten) errno = problem;
  failOn(path);
}

int runInit(const fs::path& folder, Output& out) {
  std::error_code problem;
  for (const BundleFile& each : kFiles)
    if (fs::exists(fs::symlink_status(folder / each.name, problem)))
      throw UsageError((folder / each.name).string() + " is there already; nothing was written");
  fs::create_directories(folder, problem);
  if (problem) throw UsageError(folder.string() + ": " + problem.message());

  std::vector<fs::path> written;
  try {
    for (const BundleFile& each : kFiles) {
      written.push_back(folder / each.name);
      writeNew(written.back(), each.content);
    }
  } catch (const UsageError&) {
    const bool isOurs = errno != EEXIST;  // someone else's, made at this very moment
    if (!isOurs) written.pop_back();
    for (const fs::path& path : written) fs::remove(path, problem);
    throw;
  }
  const Style style = Style::forOutput();
  for (const fs::path& path : written) out.write(style.text(path.string()) + "\n");
  out.write("Try: zelvora shell --offline --spec " + style.text((folder / "spec.json").string()) +
            "\n");
  return kAnswered;
}

}  // namespace

Command initCommand() {
  const auto folder = std::make_shared<fs::path>();
  Command command{
      .name = "init",
      .summary = "write an application bundle to begin with",
      .about =
          "Writes a bundle that works at once into DIR, which it makes if need be: `Info.plist`, "
          "`spec.json` with five tasks, `utterances.tsv` for `zelvora eval`, and a README that "
          "says how to go on. Prints the names of the files. It never overwrites a file: if "
          "one of them is there, it writes nothing and ends with status 2.",
      .operands = {
          .shown = "DIR",
          .missing = "which folder?",
          .least = 1,
          .most = 1,
          .take = [folder](std::vector<std::string> folders) { *folder = folders.front(); },
          .completes = Completes::folders}};
  command.run = [folder](Output& out) { return runInit(*folder, out); };
  return command;
}

}  // namespace zelvora::tool

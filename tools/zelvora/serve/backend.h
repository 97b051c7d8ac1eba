#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "search.h"

namespace zelvora::serve {

/// What was said in a recording; absent when nothing was. `audio` holds the bytes of a sound file.
/// Called from several threads. Throws Error.
using Transcriber =
    std::function<std::optional<std::string>(const std::string& audio, const std::string& locale)>;

struct BackendOptions {
  std::vector<Destination> catalogue;
  std::string spec;  ///< Searched when a request brings no tasks of its own.
  std::optional<std::string> requiredToken;  ///< Absent: any token that is not blank will do.
  Transcriber transcriber;                   ///< Null: /api/stt answers 501.
};

/// A POST as the backend sees it.
struct Request {
  std::string path;
  std::string authorization;  ///< The header's value; empty without one.
  std::string body;
  std::string audio;   ///< The form's part of that name; empty without one.
  std::string locale;  ///< The header X-Locale.
};

struct Reply {
  int status = 200;
  std::string body;  ///< JSON with status 200, else a text for a person.
};

/// Why a request to `path` would not be answered, whatever its body; nothing when it would.
std::optional<Reply> refusedBeforeBody(const BackendOptions& options, std::string_view path,
                                       std::string_view authorization);

/// Answers one request. Safe to call from any thread.
Reply reply(const BackendOptions& options, const Request& request);

}  // namespace zelvora::serve

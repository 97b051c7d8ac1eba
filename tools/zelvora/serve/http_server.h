#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "backend.h"

namespace zelvora::serve {

/// The longest request body that is read, in bytes; more is answered with 413.
inline constexpr std::size_t kMaxBodyBytes = 32u << 20;

/// Serves on 127.0.0.1 until the process receives SIGINT or SIGTERM. Port 0 takes a free one;
/// `ready` is called with the address once connections are accepted. Prints a line a request to
/// standard error: method, path, status. REQUIRES: no other thread runs yet, so that the signals
/// come here. Throws std::runtime_error when the port can't be had.
void serveUntilStopped(const BackendOptions& options, int port,
                       const std::function<void(const std::string& address)>& ready);

}  // namespace zelvora::serve

#pragma once

#include <functional>
#include <string>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// Supplies the backend access token, with or without its "Bearer " prefix. Called whenever a
/// request needs one, on any thread and possibly several times at once; may fail.
using AccessTokenProvider = std::function<asio::awaitable<std::string>()>;

}  // namespace zelvora

#pragma once

#include <boost/asio/local/stream_protocol.hpp>
#include <optional>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora::speechd {

using Socket = asio::local::stream_protocol::socket;

/// Connects to the user's speech-dispatcher and starts it where none runs, which takes half a
/// second. Absent when there is none to be had.
std::optional<Socket> connectToDaemon(const asio::any_io_executor& executor);

}  // namespace zelvora::speechd

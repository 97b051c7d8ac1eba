#pragma once

// What a header needs of Boost.Asio when it only names its types. Code that awaits, spawns or
// implements an operation includes ZelvoraSDK/async/coroutine.h or Asio's own headers too.

namespace boost::asio {

class any_io_executor;
template <class Value, class Executor>
class awaitable;

}  // namespace boost::asio

namespace zelvora {

namespace asio = boost::asio;

/// An operation that a coroutine awaits: `asio::awaitable<Value>`.
template <class Value>
using Awaitable = asio::awaitable<Value, asio::any_io_executor>;

}  // namespace zelvora

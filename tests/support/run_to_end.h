#pragma once

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/use_future.hpp>
#include <utility>

#include <ZelvoraSDK/async/coroutine.h>

namespace zelvora::testing {

/// Runs `task` on this thread until it ends; returns what it returned or throws what it threw.
template <class Value>
Value runToEnd(asio::awaitable<Value> task) {
  asio::io_context context;
  auto ended = asio::co_spawn(context, std::move(task), asio::use_future);
  context.run();
  return ended.get();
}

}  // namespace zelvora::testing

#pragma once

#include <boost/asio/co_spawn.hpp>
#include <exception>
#include <utility>

#include <ZelvoraSDK/async/awaitable.h>

namespace zelvora {

/// Starts `task` on `executor` and returns; nobody waits for it. `onFailure(std::exception_ptr)` is
/// called there with what escapes from it. A task that is dropped with its executor fails nobody.
template <class OnFailure>
void spawn(const asio::any_io_executor& executor, asio::awaitable<void> task, OnFailure onFailure) {
  asio::co_spawn(executor, std::move(task),
                 [onFailure = std::move(onFailure)](std::exception_ptr failure) mutable {
                   if (failure) onFailure(std::move(failure));
                 });
}

}  // namespace zelvora

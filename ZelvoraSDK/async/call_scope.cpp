#include <ZelvoraSDK/async/call_scope.h>

namespace zelvora {

Error scopeClosed() { return Error("Zelvora", 0, "Zelvora deallocated"); }

Error callCancelled() { return Error("Zelvora", 1, "The call was cancelled"); }

Error threadsEnded() { return Error("Zelvora", 2, "The background threads have ended"); }

std::shared_ptr<CallScope> CallScope::make(Threads threads) {
  return std::shared_ptr<CallScope>(new CallScope(std::move(threads)));
}

std::shared_ptr<CallScope> CallScope::make(asio::any_io_executor threads) {
  return make([threads = std::move(threads)] { return threads; });
}

std::shared_ptr<CallScope> CallScope::makeChild() {
  auto child = make(threads_);
  child->parent_ = shared_from_this();
  child->numberAtParent_ = newNumber();
  atClose(child->numberAtParent_, [weak = std::weak_ptr(child)] {
    if (const auto held = weak.lock()) held->close();
  });
  return child;
}

CallScope::~CallScope() {
  if (parent_) parent_->forget(numberAtParent_);
}

void CallScope::close() {
  const auto ends = state_.with([](State& state) {
    state.closed = true;
    return std::exchange(state.ends, {});
  });
  for (const auto& [number, end] : ends) end();
}

bool CallScope::isClosed() const {
  return state_.with([](const State& state) { return state.closed; });
}

void CallScope::requireOpen() const {
  if (isClosed()) throw scopeClosed();
}

std::uint64_t CallScope::newNumber() {
  return state_.with([](State& state) { return ++state.lastNumber; });
}

void CallScope::atClose(std::uint64_t number, std::function<void()> end) {
  const bool closed = state_.with([&](State& state) {
    if (!state.closed) state.ends.emplace(number, std::move(end));
    return state.closed;
  });
  if (closed) end();
}

void CallScope::forget(std::uint64_t number) {
  // Destroyed outside the lock: it may be the last owner of anything.
  const auto forgotten = state_.with([&](State& state) { return state.ends.extract(number); });
}

}  // namespace zelvora

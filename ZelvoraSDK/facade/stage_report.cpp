#include <ZelvoraSDK/facade/stage_report.h>

#include <utility>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {

asio::awaitable<StageYield> reported(std::shared_ptr<const StageReporter> reporter,
                                     std::string stage, std::string asked,
                                     asio::awaitable<StageYield> work) {
  if (!reporter->listener) co_return co_await std::move(work);

  StageReport report{.stage = std::move(stage), .asked = std::move(asked)};
  const Timestamp began = reporter->clock->now();
  StageYield yield;
  std::exception_ptr failure;
  try {
    yield = co_await std::move(work);
    report.answer = yield ? describe(*yield) : "nothing";
  } catch (...) {
    failure = std::current_exception();
    report.answer = describeFailure(failure);
  }
  report.duration = reporter->clock->now() - began;
  reporter->listener(std::move(report));
  if (failure) std::rethrow_exception(failure);
  co_return yield;
}

}  // namespace zelvora

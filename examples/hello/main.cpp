#include <iostream>

#include <ZelvoraSDK/adapters/host/host_platform.h>
#include <ZelvoraSDK/async/main_loop.h>
#include <ZelvoraSDK/facade/zelvora.h>

int main() {
  zelvora::MainLoop loop;
  const auto platform = zelvora::hostPlatform(loop.executor(), {.bundle = "examples/shop"});
  zelvora::Zelvora shop(platform, {.name = "shop"});
  shop.onResult = [&](const zelvora::ZelvoraResult& outcome) {
    std::cout << describe(outcome) << '\n';
    loop.stop();
  };
  shop.routeAndCallback("open my cart");
  loop.run();
  platform.executors->stopBackground();  // it may not outlive the loop
}

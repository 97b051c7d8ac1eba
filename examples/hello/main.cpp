#include <iostream>

#include <ZelvoraSDK/async/main_loop.h>
#include <ZelvoraSDK/facade/zelvora.h>
#include <adapters/host/host_platform.h>

int main() {
  zelvora::MainLoop loop;
  zelvora::HostOptions host{.bundle = "examples/shop"};
  zelvora::Zelvora shop(hostPlatform(loop.executor(), host), {.name = "shop"});
  shop.onResult = [&](const zelvora::ZelvoraResult& outcome) {
    std::cout << describe(outcome) << '\n';
    loop.stop();
  };
  shop.routeAndCallback("open my cart");
  loop.run();
}

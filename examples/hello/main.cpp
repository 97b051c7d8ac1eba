#include <iostream>

#include <ZelvoraSDK/adapters/host.h>
#include <ZelvoraSDK/zelvora.h>

int main() {
  zelvora::MainLoop loop;
  zelvora::HostPlatform host(loop.executor(), {.bundle = "examples/shop"});
  zelvora::Zelvora shop(host.platform(), {.name = "shop"});
  shop.onResult = [&](const zelvora::ZelvoraResult& outcome) {
    std::cout << describe(outcome) << '\n';
    loop.stop();
  };
  shop.routeAndCallback("open my cart");
  loop.run();
}

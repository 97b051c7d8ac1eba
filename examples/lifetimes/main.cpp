// What docs/lifetimes.md shows. usage: lifetimes SPEC DATA-FOLDER

#include <cstdio>
#include <memory>
#include <optional>

#include <ZelvoraSDK/adapters/host.h>
#include <ZelvoraSDK/zelvora.h>

namespace {

/// One screen of an application: it owns what it uses, in the order that suits it.
class Screen {
 public:
  Screen(const char* spec, const char* data)
      : host_(loop_.executor(),
              {.dataFolder = data, .log = std::make_shared<zelvora::SilentLogSink>()}),
        zelvora_(std::in_place, withoutNetwork(host_.platform()),
                 zelvora::ZelvoraSettings{.publishableKey = "demo"},
                 zelvora::StoredSpec::fromFile(spec)) {}

  void run() {
    search("open my cart");
    search("track my order");  // the user typed on: the first answer is not wanted any more
    loop_.run();
    close();
  }

 private:
  static zelvora::Platform withoutNetwork(zelvora::Platform platform) {
    platform.urlSession = std::make_shared<zelvora::NoNetworkSession>("You are offline");
    return platform;
  }

  void search(const std::string& text) {
    latest_.cancel();
    latest_ = zelvora_->route(text, [this](const zelvora::ZelvoraResult& outcome) {
      std::printf("%s\n", describe(outcome).c_str());
      loop_.stop();
    });
  }

  void close() {
    zelvora_->onResult = [this](const zelvora::ZelvoraResult&) {
      zelvora_->recordUserChoice("basket");  // stored, although all ends here
      zelvora_.reset();
      loop_.stop();
    };
    zelvora_->routeAndCallback("open my cart");
    loop_.run();
  }

  zelvora::MainLoop loop_;
  zelvora::HostPlatform host_;
  std::optional<zelvora::Zelvora> zelvora_;
  zelvora::ZelvoraCall latest_;
};

}  // namespace

int main(int, char** arguments) { Screen(arguments[1], arguments[2]).run(); }

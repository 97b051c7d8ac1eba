// How an application tests its handling of commands: nothing leaves the process, and nobody has to
// speak.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <ZelvoraSDK/testing/test_platform.h>
#include <ZelvoraSDK/zelvora.h>

namespace {

namespace kit = zelvora::testing;

constexpr const char* kSpec = R"({"tasks":[
  {"id":"cart","title":"Cart","screenId":"cart_screen","keywords":["my cart"],
   "examples":["open my cart","show me my cart"]},
  {"id":"orders","title":"Orders","screenId":"orders_screen","keywords":["my orders"],
   "examples":["where are my orders","show my orders"]}]})";

/// The part of an application that is tested: it opens screens.
class Shop {
 public:
  Shop(const zelvora::Platform& platform, zelvora::ZelvoraSTTConfig speech)
      : zelvora_(platform, {.publishableKey = "shop", .sttConfig = speech},
                 zelvora::StoredSpec::fromJson(kSpec)) {
    zelvora_.onResult = [this](const zelvora::ZelvoraResult& result) {
      if (const auto* open = std::get_if<zelvora::ZelvoraExecute>(&result))
        screen = open->screenId;
      else
        message = describe(result);
    };
  }

  void type(const std::string& text) { zelvora_.routeAndCallback(text); }
  void listen() { zelvora_.startVoice(); }
  void stopListening() { zelvora_.stopVoice(); }
  [[nodiscard]] bool isListening() const { return zelvora_.stt() && zelvora_.stt()->isRecording(); }

  std::string screen = "home";
  std::string message;

 private:
  zelvora::Zelvora zelvora_;
};

TEST(ShopTest, OpensTheScreenThatWasTyped) {
  kit::TestPlatform test;
  Shop shop(test.platform(), zelvora::ZelvoraSTTConfig::localOnly());
  shop.type("open my cart");
  ASSERT_TRUE(test.runUntil([&] { return shop.screen != "home"; }));
  EXPECT_EQ(shop.screen, "cart_screen");
  EXPECT_TRUE(test.network->requests().empty());
}

TEST(ShopTest, OpensTheScreenThatWasSaid) {
  kit::TestPlatform test;
  test.speech.recognizer->lateResult = kit::heard("show my orders", {0.9, 0.9, 0.8}, true);
  Shop shop(test.platform(), zelvora::ZelvoraSTTConfig::localOnly());
  shop.listen();
  ASSERT_TRUE(test.runUntil([&] { return shop.isListening(); }));
  test.speech.microphone->play(std::vector<float>(1024, 0.5F));
  shop.stopListening();
  ASSERT_TRUE(test.runUntil([&] { return shop.screen != "home"; }));
  EXPECT_EQ(shop.screen, "orders_screen");
  EXPECT_FALSE(test.speech.microphone->isOn());
}

TEST(ShopTest, AsksTheCloudWhenTheDeviceIsNotSure) {
  kit::TestPlatform test;
  test.speech.recognizer->lateResult = kit::heard("show me my cat", {0.3}, true);
  test.network->answer(200, R"({"text":"show me my cart"})");
  Shop shop(test.platform(), zelvora::ZelvoraSTTConfig::hybrid());
  shop.listen();
  ASSERT_TRUE(test.runUntil([&] { return shop.isListening(); }));
  test.speech.microphone->play(std::vector<float>(1024, 0.5F));
  shop.stopListening();
  ASSERT_TRUE(test.runUntil([&] { return shop.screen != "home"; }));
  EXPECT_EQ(shop.screen, "cart_screen");
  EXPECT_TRUE(test.network->requests().at(0).url.ends_with("/api/stt"));
}

TEST(ShopTest, StaysWhereItIsWithoutABackend) {
  kit::TestPlatform test;
  Shop shop(test.platform(), zelvora::ZelvoraSTTConfig::localOnly());
  test.network->fail(zelvora::Error("Test", 1, "no connection"));
  shop.type("play some jazz");
  ASSERT_TRUE(test.runUntil([&] { return !shop.message.empty(); }));
  EXPECT_EQ(shop.screen, "home");
  EXPECT_NE(shop.message.find("no connection"), std::string::npos);
}

TEST(ShopTest, SurvivesAMicrophoneThatFailsAtAnyCall) {
  for (std::size_t number = 1; number < 20; ++number) {
    kit::TestPlatform test;
    test.speech.journal->calls.at(number, [] { throw zelvora::Error("Test", 1, "broken"); });
    Shop shop(test.platform(), zelvora::ZelvoraSTTConfig::localOnly());
    shop.listen();
    test.runUntil([&, looks = 0]() mutable { return shop.isListening() || ++looks > 20; });
    shop.stopListening();
    EXPECT_TRUE(test.runUntil([&] { return !shop.message.empty(); })) << "call " << number;
  }
}

}  // namespace

#include <ZelvoraSDK/routing/context_engine.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

using LastResult = SessionMemory::LastResult;

Timestamp at(double seconds) { return Timestamp{Seconds{seconds}}; }

TEST(SessionMemory, RemembersTheLastScreenOrPresentation) {
  SessionMemory memory;
  EXPECT_EQ(memory.lastResult(), std::nullopt);

  memory.update(ZelvoraExecute{.screenId = "orders", .taskId = "t1"}, at(1));
  memory.update(ZelvoraUnsupported{"?"}, at(2));
  memory.update(ZelvoraShowChoices{"?", {{.taskId = "t3", .screenId = "cart"}}}, at(3));
  EXPECT_EQ(memory.lastResult(), (LastResult{"t1", "orders", at(1)}));

  memory.update(ZelvoraPresent{.presentationId = "promo", .taskId = {}}, at(4));
  EXPECT_EQ(memory.lastResult(), (LastResult{{}, "promo", at(4)}));
}

TEST(SessionMemory, IsWithinAWindowUpToItsEnd) {
  SessionMemory memory;
  EXPECT_FALSE(memory.isWithinWindow(Seconds{60}, at(0)));
  memory.update(ZelvoraExecute{.screenId = "orders"}, at(100));
  EXPECT_TRUE(memory.isWithinWindow(Seconds{60}, at(160)));
  EXPECT_FALSE(memory.isWithinWindow(Seconds{60}, at(160.5)));
}

}  // namespace
}  // namespace zelvora

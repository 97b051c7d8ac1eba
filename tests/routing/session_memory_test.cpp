#include <ZelvoraSDK/routing/context_engine.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

using LastResult = SessionMemory::LastResult;

Timestamp after(double seconds) { return Timestamp{Seconds{seconds}}; }

TEST(SessionMemory, RemembersTheLastScreenOrPresentation) {
  SessionMemory memory;
  EXPECT_EQ(memory.lastResult(), std::nullopt);

  memory.update(ZelvoraExecute{.screenId = "orders", .taskId = "t1"}, after(1));
  memory.update(ZelvoraUnsupported{"?"}, after(2));
  memory.update(ZelvoraShowChoices{"?", {{.taskId = "t3", .screenId = "cart"}}}, after(3));
  EXPECT_EQ(memory.lastResult(), (LastResult{"t1", "orders", after(1)}));

  memory.update(ZelvoraPresent{.presentationId = "promo", .taskId = {}}, after(4));
  EXPECT_EQ(memory.lastResult(), (LastResult{{}, "promo", after(4)}));
}

TEST(SessionMemory, IsWithinAWindowUpToItsEnd) {
  SessionMemory memory;
  EXPECT_FALSE(memory.isWithinWindow(Seconds{60}, after(0)));
  memory.update(ZelvoraExecute{.screenId = "orders"}, after(100));
  EXPECT_TRUE(memory.isWithinWindow(Seconds{60}, after(160)));
  EXPECT_FALSE(memory.isWithinWindow(Seconds{60}, after(160.5)));
}

}  // namespace
}  // namespace zelvora

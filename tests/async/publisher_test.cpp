#include <ZelvoraSDK/async/callbacks.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using Subscription = ObservableObjectPublisher::Subscription;

TEST(Publisher, NotifiesListenersInOrderUntilTheyLeave) {
  ObservableObjectPublisher publisher;
  std::string told;
  Subscription a = publisher.subscribe([&] { told += 'a'; });
  std::optional<Subscription> b = publisher.subscribe([&] { told += 'b'; });
  publisher.send();
  b.reset();
  publisher.send();
  a = publisher.subscribe([&] { told += 'c'; });
  publisher.send();
  EXPECT_EQ(told, "abac");
}

TEST(Publisher, AllowsListenersToComeAndGoWhileItNotifies) {
  auto publisher = std::make_unique<ObservableObjectPublisher>();
  std::string told;
  std::vector<Subscription> kept;
  std::optional<Subscription> second;
  Subscription first = publisher->subscribe([&] {
    told += '1';
    second.reset();
    kept.push_back(publisher->subscribe([&] { told += 'n'; }));
  });
  second = publisher->subscribe([&] { told += '2'; });
  Subscription third = publisher->subscribe([&] {
    told += '3';
    third = {};
  });
  publisher->send();
  EXPECT_EQ(told, "13");
  Subscription last = publisher->subscribe([&] { publisher.reset(); });
  publisher->send();
  EXPECT_EQ(publisher, nullptr);
  EXPECT_EQ(told, "131n");
}

TEST(Published, NotifiesEveryAssignmentEvenOfTheSameValue) {
  ObservableObjectPublisher publisher;
  Published<std::string> field(publisher);
  std::vector<std::string> seen;
  const Subscription watching = publisher.subscribe([&] { seen.push_back(field.get()); });
  field = "one";
  field = "one";
  EXPECT_THAT(seen, ElementsAre("one", "one"));
}

}  // namespace
}  // namespace zelvora

#include "core/async/published.h"

#include <gtest/gtest.h>
#include <string>

namespace tarnwick {
namespace {

TEST(Published, AnnouncesEveryAssignmentBeforeStoringIt) {
  ChangeSignal changes;
  Published<std::string> text(changes, "old");
  std::vector<std::string> before;
  const auto subscription = changes.observe([&] { before.push_back(text.get()); });
  text = "new";
  text = "new";
  text.mutate([](std::string& value) { value += "er"; });
  EXPECT_EQ(before, (std::vector<std::string>{"old", "new", "new"}));
  EXPECT_EQ(text.get(), "newer");
}

TEST(ChangeSignal, AnObserverMayLeaveAndJoinWhileItIsTold) {
  ChangeSignal changes;
  int leaving = 0;
  int joined = 0;
  std::shared_ptr<void> first;
  std::shared_ptr<void> second;
  first = changes.observe([&] {
    ++leaving;
    second = changes.observe([&] { ++joined; });
    first.reset();
  });
  changes.announce();
  changes.announce();
  EXPECT_EQ(leaving, 1);
  EXPECT_GE(joined, 1);
}

}  // namespace
}  // namespace tarnwick

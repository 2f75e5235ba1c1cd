#include "base/HandlerList.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

TEST(HandlerListTest, HandlersAreCalledInTheOrderOfTheirComing) {
    HandlerList<int> list;
    std::string calls;
    const auto first = list.add([&](int value) { calls += "a" + std::to_string(value); });
    const auto second = list.add([&](int value) { calls += "b" + std::to_string(value); });
    list.call(1);
    EXPECT_EQ(calls, "a1b1");
}

TEST(HandlerListTest, AHandlerEndsWithItsToken) {
    HandlerList<> list;
    int calls = 0;
    auto token = list.add([&] { ++calls; });
    EXPECT_EQ(list.count(), 1U);
    token.reset();
    EXPECT_EQ(list.count(), 0U);
    list.call();
    EXPECT_EQ(calls, 0);
}

TEST(HandlerListTest, AHandlerMayDropOneThatComesLater) {
    HandlerList<> list;
    int calls = 0;
    SubscriptionPtr later;
    const auto first = list.add([&] { later.reset(); });
    later = list.add([&] { ++calls; });
    list.call();
    EXPECT_EQ(calls, 0);
}

TEST(HandlerListTest, AHandlerThatIsAddedMeanwhileIsCalledFromTheNextTimeOn) {
    HandlerList<> list;
    int calls = 0;
    SubscriptionPtr added;
    const auto first = list.add([&] {
        if (!added) {
            added = list.add([&] { ++calls; });
        }
    });
    list.call();
    EXPECT_EQ(calls, 0);
    list.call();
    EXPECT_EQ(calls, 1);
}

TEST(HandlerListTest, ATokenMayOutliveTheList) {
    const auto held = std::make_shared<int>();
    SubscriptionPtr token;
    {
        HandlerList<> list;
        token = list.add([held] {});
    }
    EXPECT_EQ(held.use_count(), 2);
    token.reset();
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace pelistra::testing

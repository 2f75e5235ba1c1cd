#include "base/Lifetime.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace pelistra {
namespace {

TEST(LifetimeTest, AGuardedClosureRunsAsOftenAsItIsCalled) {
    const Lifetime lifetime;
    int calls = 0;
    const std::function<void()> closure = lifetime.guard([&] { ++calls; });

    closure();
    closure();

    EXPECT_EQ(calls, 2);
}

TEST(LifetimeTest, AGuardedClosurePassesItsArgumentsOn) {
    const Lifetime lifetime;
    int sum = 0;
    const std::function<void(int, int)> closure =
        lifetime.guard([&](int left, int right) { sum = left + right; });

    closure(3, 4);

    EXPECT_EQ(sum, 7);
}

TEST(LifetimeTest, AGuardedClosureDoesNothingOnceItsTargetIsGone) {
    std::optional<Lifetime> lifetime(std::in_place);
    int calls = 0;
    const std::function<void()> closure = lifetime->guard([&] { ++calls; });
    const std::function<void()> copy = closure;
    lifetime.reset();

    closure();
    copy();

    EXPECT_EQ(calls, 0);
}

TEST(LifetimeTest, AGuardedClosureDoesNotKeepItsTargetAlive) {
    const auto target = std::make_shared<int>(1);
    const std::weak_ptr<int> seen = target;
    std::optional<Lifetime> lifetime(std::in_place);
    const auto closure = lifetime->guard([seen] { FAIL() << "the target is gone"; });
    lifetime.reset();

    auto run = closure;
    run();

    EXPECT_EQ(target.use_count(), 1);
}

} // namespace
} // namespace pelistra

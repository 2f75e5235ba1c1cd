#pragma once

#include "platform/Screens.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

// What every list of screens promises. Backend:
//   Screens& screens();                    begins with one screen of 1280 points
//   void addScreen();                      a second one of 640 x 480 points right of it
//   bool runUntil(condition);              as of a main queue
template <class Backend>
class ScreensContract : public ::testing::Test {
protected:
    [[nodiscard]] Screens& screens() { return backend_.screens(); }
    [[nodiscard]] bool hasScreens(std::size_t count) {
        return backend_.runUntil([this, count] { return screens().screens().size() == count; });
    }

    Backend backend_;
};

inline bool lies(const ScreenRect& inner, const ScreenRect& outer) {
    return inner.origin.x >= outer.origin.x && inner.origin.y >= outer.origin.y &&
           inner.maxX() <= outer.maxX() &&
           inner.origin.y + inner.size.height <= outer.origin.y + outer.size.height;
}

TYPED_TEST_SUITE_P(ScreensContract);

TYPED_TEST_P(ScreensContract, ThePrimaryScreenLiesAtTheOriginAndIsTheMainOne) {
    const auto screens = this->screens().screens();
    ASSERT_EQ(screens.size(), 1U);
    EXPECT_EQ(screens[0].frame.origin, (ScreenPoint{.x = 0, .y = 0}));
    EXPECT_EQ(screens[0].frame.size.width, 1280);
    EXPECT_TRUE(lies(screens[0].visibleFrame, screens[0].frame));
    EXPECT_EQ(screens[0].auxiliaryTopLeftArea, std::nullopt);
    EXPECT_EQ(screens[0].auxiliaryTopRightArea, std::nullopt);
    EXPECT_THAT(this->screens().main(), ::testing::Optional(screens[0]));
}

TYPED_TEST_P(ScreensContract, AFurtherScreenComesAfterThePrimaryOne) {
    this->backend_.addScreen();
    ASSERT_TRUE(this->hasScreens(2));
    const auto screens = this->screens().screens();
    EXPECT_EQ(screens[0].frame.origin.x, 0);
    EXPECT_EQ(screens[1].frame.origin.x, 1280);
    EXPECT_EQ(screens[1].frame.size, (Size{.width = 640, .height = 480}));
    EXPECT_TRUE(lies(screens[1].visibleFrame, screens[1].frame));
    EXPECT_THAT(this->screens().main(), ::testing::Optional(::testing::AnyOfArray(screens)));
}

TYPED_TEST_P(ScreensContract, AChangeIsToldUntilTheTokenDies) {
    int changes = 0;
    int others = 0;
    const auto token = this->screens().observeParameterChanges([&] { ++changes; });
    auto other = this->screens().observeParameterChanges([&] { ++others; });
    other.reset();
    this->backend_.addScreen();
    EXPECT_TRUE(this->backend_.runUntil([&] { return changes > 0; }));
    EXPECT_EQ(others, 0);
}

REGISTER_TYPED_TEST_SUITE_P(ScreensContract, ThePrimaryScreenLiesAtTheOriginAndIsTheMainOne,
                            AFurtherScreenComesAfterThePrimaryOne, AChangeIsToldUntilTheTokenDies);

} // namespace pelistra::testing

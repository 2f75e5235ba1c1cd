#include "platform/linux/views/Motion.h"

#include <gtest/gtest.h>

namespace pelistra::linux {
namespace {

constexpr ui::Spring stepSpring = {.response = 0.42, .dampingFraction = 0.86, .blendDuration = 0};

TEST(MotionTest, BeginsAtTheOldStateAndEndsAtTheNewOne) {
    for (const ui::Animation& animation :
         {ui::Animation(ui::EaseOut{.seconds = 0.12}), ui::Animation(stepSpring)}) {
        EXPECT_NEAR(progressAfter(animation, 0), 0, 1e-9);
        EXPECT_NEAR(progressAfter(animation, durationOf(animation)), 1, 0.002);
    }
}

TEST(MotionTest, EasesOutFastFirst) {
    const ui::Animation fade = ui::EaseOut{.seconds = 0.12};
    EXPECT_GT(progressAfter(fade, 0.06), 0.5);
    EXPECT_EQ(progressAfter(fade, 0.12), 1);
    EXPECT_DOUBLE_EQ(durationOf(fade), 0.12);
}

TEST(MotionTest, AnUnderdampedSpringGoesALittleBeyondItsEnd) {
    double furthest = 0;
    for (double time = 0; time < 1; time += 0.005) {
        furthest = std::max(furthest, progressAfter(stepSpring, time));
    }
    EXPECT_GT(furthest, 1);
    EXPECT_LT(furthest, 1.02);
}

TEST(MotionTest, EndsOnceItsTimeIsOver) {
    const auto begin = Motion::Clock::now();
    Motion motion(ui::EaseOut{.seconds = 0.12}, begin);
    EXPECT_EQ(motion.progress(), 0);
    motion.advanceTo(begin + std::chrono::milliseconds(60));
    EXPECT_FALSE(motion.hasEnded());
    EXPECT_GT(motion.progress(), 0);
    motion.advanceTo(begin + std::chrono::milliseconds(120));
    EXPECT_TRUE(motion.hasEnded());
    EXPECT_EQ(motion.progress(), 1);
}

} // namespace
} // namespace pelistra::linux

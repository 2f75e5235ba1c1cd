#include "platform/linux/screens/ScreenLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using linux::Coordinates;
using linux::RootRect;
using linux::ScreenFacts;
using linux::Strut;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::SizeIs;

constexpr RootRect fullHd{.x = 0, .y = 0, .width = 1920, .height = 1080};

Strut topStrut(std::uint32_t depth, std::uint32_t start, std::uint32_t end) {
    return {0, 0, depth, 0, 0, 0, 0, 0, start, end, 0, 0};
}

TEST(Coordinates, ScreenSpaceGrowsUpwardsFromThePrimaryMonitorsBottom) {
    const Coordinates coordinates(2, {.x = 100, .y = 50, .width = 1000, .height = 800});
    EXPECT_EQ(coordinates.toScreen({.x = 100, .y = 50, .width = 1000, .height = 56}),
              makeRect<ScreenSpace>(0, 372, 500, 28));
    EXPECT_EQ(coordinates.toGlobal({.x = 100, .y = 50, .width = 1000, .height = 56}),
              makeRect<GlobalSpace>(0, 0, 500, 28));
    EXPECT_EQ(coordinates.toScreen(100, 850), (ScreenPoint{.x = 0, .y = 0}));
}

TEST(Coordinates, PixelsComeBack) {
    const Coordinates coordinates(1.5, {.x = 640, .y = 0, .width = 1280, .height = 800});
    const RootRect pixels{.x = 700, .y = 31, .width = 21, .height = 42};
    EXPECT_EQ(coordinates.toPixels(coordinates.toScreen(pixels)), pixels);
    EXPECT_EQ(coordinates.toPixels(coordinates.toGlobal(pixels)), pixels);
}

TEST(ScreenLayout, NoMonitorGivesNoScreen) {
    ScreenFacts facts;
    facts.root = fullHd;
    EXPECT_THAT(linux::screensFrom(facts), IsEmpty());
    facts.monitors = {{.frame = {.x = 0, .y = 0, .width = 0, .height = 0}, .isPrimary = true}};
    EXPECT_THAT(linux::screensFrom(facts), IsEmpty());
}

TEST(ScreenLayout, ThePrimaryMonitorComesFirstAndIsTheOrigin) {
    ScreenFacts facts;
    facts.root = {.x = 0, .y = 0, .width = 3840, .height = 1200};
    facts.monitors = {
        {.frame = fullHd, .isPrimary = false},
        {.frame = {.x = 1920, .y = 120, .width = 1280, .height = 1024}, .isPrimary = true},
        {.frame = {.x = 3200, .y = 0, .width = 640, .height = 480}, .isPrimary = false}};
    const auto screens = linux::screensFrom(facts);
    ASSERT_THAT(screens, SizeIs(3));
    EXPECT_EQ(screens[0].frame, makeRect<ScreenSpace>(0, 0, 1280, 1024));
    EXPECT_EQ(screens[1].frame, makeRect<ScreenSpace>(-1920, 64, 1920, 1080));
    EXPECT_EQ(screens[2].frame, makeRect<ScreenSpace>(1280, 664, 640, 480));
    EXPECT_EQ(screens[0].visibleFrame, screens[0].frame);
}

TEST(ScreenLayout, EverythingIsInPoints) {
    ScreenFacts facts;
    facts.root = {.x = 0, .y = 0, .width = 3024, .height = 1964};
    facts.monitors = {{.frame = facts.root, .isPrimary = true}};
    facts.scale = 2;
    facts.barStrut = topStrut(56, 0, 3023);
    const auto screens = linux::screensFrom(facts);
    ASSERT_THAT(screens, SizeIs(1));
    EXPECT_EQ(screens[0].frame, makeRect<ScreenSpace>(0, 0, 1512, 982));
    EXPECT_EQ(screens[0].visibleFrame, makeRect<ScreenSpace>(0, 0, 1512, 954));
}

TEST(ScreenLayout, ABarTakesRoomOnItsOwnMonitorOnly) {
    ScreenFacts facts;
    facts.root = {.x = 0, .y = 0, .width = 3840, .height = 1080};
    facts.monitors = {{.frame = fullHd, .isPrimary = true},
                      {.frame = {.x = 1920, .y = 0, .width = 1920, .height = 1080}}};
    facts.barStrut = topStrut(28, 0, 1919);
    const auto screens = linux::screensFrom(facts);
    ASSERT_THAT(screens, SizeIs(2));
    EXPECT_EQ(screens[0].visibleFrame, makeRect<ScreenSpace>(0, 0, 1920, 1052));
    EXPECT_EQ(screens[1].visibleFrame, screens[1].frame);
}

// A bar on a monitor that begins below the root's top reserves from the root's edge.
TEST(ScreenLayout, AStrutIsMeasuredFromTheRoot) {
    ScreenFacts facts;
    facts.root = {.x = 0, .y = 0, .width = 1920, .height = 2160};
    facts.monitors = {
        {.frame = {.x = 0, .y = 1080, .width = 1920, .height = 1080}, .isPrimary = true},
        {.frame = fullHd, .isPrimary = false}};
    facts.barStrut = topStrut(1108, 0, 1919);
    const auto screens = linux::screensFrom(facts);
    ASSERT_THAT(screens, SizeIs(2));
    EXPECT_EQ(screens[0].visibleFrame, makeRect<ScreenSpace>(0, 0, 1920, 1052));
    // It cannot mean to take all of the monitor above.
    EXPECT_EQ(screens[1].visibleFrame, screens[1].frame);
}

TEST(ScreenLayout, EveryEdgeCountsAndAbsurdStrutsDoNot) {
    ScreenFacts facts;
    facts.root = fullHd;
    facts.monitors = {{.frame = fullHd, .isPrimary = true}};
    facts.barStrut = Strut{10, 20, 30, 40, 0, 1079, 0, 1079, 0, 1919, 0, 1919};
    EXPECT_EQ(linux::screensFrom(facts)[0].visibleFrame, makeRect<ScreenSpace>(10, 40, 1890, 1010));
    facts.barStrut = topStrut(0xffffffff, 0, 0xffffffff);
    EXPECT_EQ(linux::screensFrom(facts)[0].visibleFrame, makeRect<ScreenSpace>(0, 0, 1920, 1080));
}

TEST(ScreenLayout, TheWorkAreaCountsOnASingleMonitorOnly) {
    ScreenFacts facts;
    facts.root = fullHd;
    facts.monitors = {{.frame = fullHd, .isPrimary = true}};
    facts.barStrut = topStrut(28, 0, 1919);
    facts.workArea = RootRect{.x = 0, .y = 28, .width = 1920, .height = 1012};
    EXPECT_EQ(linux::screensFrom(facts)[0].visibleFrame, makeRect<ScreenSpace>(0, 40, 1920, 1012));
    facts.workArea = RootRect{.x = 5000, .y = 0, .width = 10, .height = 10};
    EXPECT_EQ(linux::screensFrom(facts)[0].visibleFrame, makeRect<ScreenSpace>(0, 0, 1920, 1052));
    facts.workArea = RootRect{.x = 0, .y = 500, .width = 1920, .height = 580};
    facts.monitors.push_back({.frame = {.x = 1920, .y = 0, .width = 800, .height = 600}});
    EXPECT_EQ(linux::screensFrom(facts)[0].visibleFrame, makeRect<ScreenSpace>(0, 0, 1920, 1052));
}

TEST(ScreenLayout, TheAreasBesideTheHousingBelongToTheScreenThatHoldsThem) {
    ScreenFacts facts;
    facts.root = {.x = 0, .y = 0, .width = 5000, .height = 2000};
    facts.monitors = {
        {.frame = {.x = 0, .y = 0, .width = 1600, .height = 1200}},
        {.frame = {.x = 1600, .y = 0, .width = 3024, .height = 1964}, .isPrimary = true}};
    facts.scale = 2;
    facts.auxiliaryAreas = {RootRect{.x = 1600, .y = 0, .width = 1300, .height = 56},
                            RootRect{.x = 3324, .y = 0, .width = 1300, .height = 56}};
    const auto screens = linux::screensFrom(facts);
    ASSERT_THAT(screens, SizeIs(2));
    EXPECT_THAT(screens[0].auxiliaryTopLeftArea, Optional(makeRect<ScreenSpace>(0, 954, 650, 28)));
    EXPECT_THAT(screens[0].auxiliaryTopRightArea,
                Optional(makeRect<ScreenSpace>(862, 954, 650, 28)));
    EXPECT_EQ(screens[1].auxiliaryTopLeftArea, std::nullopt);
    EXPECT_EQ(screens[1].auxiliaryTopRightArea, std::nullopt);
}

TEST(ScreenLayout, AreasOutsideEveryScreenAreNone) {
    ScreenFacts facts;
    facts.root = fullHd;
    facts.monitors = {{.frame = fullHd, .isPrimary = true}};
    facts.auxiliaryAreas = {RootRect{.x = 0, .y = 0, .width = 900, .height = 28},
                            RootRect{.x = 1100, .y = 0, .width = 900, .height = 28}};
    EXPECT_EQ(linux::screensFrom(facts)[0].auxiliaryTopLeftArea, std::nullopt);
    EXPECT_EQ(linux::screensFrom(facts)[0].auxiliaryTopRightArea, std::nullopt);
}

TEST(Resources, TheScaleIsThatOfASensibleDensity) {
    EXPECT_THAT(linux::resourceScaleIn("Xft.dpi:\t144\nXcursor.size:\t24\n"), Optional(1.5));
    EXPECT_THAT(linux::resourceScaleIn("Xft.dpi: 24"), Optional(0.25));
    EXPECT_THAT(linux::resourceScaleIn("Xft.dpi: 960"), Optional(10.0));
    EXPECT_EQ(linux::resourceScaleIn("Xft.dpi: 23.9"), std::nullopt);
    EXPECT_EQ(linux::resourceScaleIn("Xft.dpi: 1e9"), std::nullopt);
    EXPECT_EQ(linux::resourceScaleIn(""), std::nullopt);
}

TEST(Resources, ARectangleIsFourSensibleNumbers) {
    const auto rect = [](const std::vector<std::uint32_t>& words) {
        return linux::rootRectIn(words);
    };
    EXPECT_THAT(rect({1, 2, 3, 4}), Optional(RootRect{.x = 1, .y = 2, .width = 3, .height = 4}));
    EXPECT_THAT(rect({0xFFFFFFFF, 0, 0, 0}), Optional(RootRect{.x = -1}));
    EXPECT_THAT(rect({1U << 20U, 0, 0, 0}), Optional(RootRect{.x = 1 << 20}));
    EXPECT_EQ(rect({(1U << 20U) + 1, 0, 0, 0}), std::nullopt);
    EXPECT_EQ(rect({1, 1, 0x7FFFFFFF, 0x7FFFFFFF}), std::nullopt);
    EXPECT_EQ(rect({0x80000000, 0, 1, 1}), std::nullopt);
    EXPECT_EQ(rect({1, 2, 3}), std::nullopt);
    EXPECT_EQ(rect({1, 2, 3, 4, 5}), std::nullopt);
}

TEST(Resources, TheBarsScaleIsInHundredths) {
    const auto scale = [](const std::vector<std::uint32_t>& words) {
        return linux::scaleIn(words);
    };
    EXPECT_THAT(scale({100}), Optional(1.0));
    EXPECT_THAT(scale({150}), Optional(1.5));
    EXPECT_EQ(scale({}), std::nullopt);
    EXPECT_EQ(scale({0}), std::nullopt);
    EXPECT_EQ(scale({0xffffffff}), std::nullopt);
    EXPECT_EQ(scale({100, 100}), std::nullopt);
}

} // namespace

} // namespace pelistra::testing

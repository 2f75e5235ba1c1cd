#include "statusbar/StatusItemWindows.h"

#include "tests/platform/FakeApplication.h"
#include "tests/platform/FakeWindowList.h"

#include <gtest/gtest.h>

namespace pelistra {
namespace {

constexpr ProcessId ownPid = 4711;
constexpr ProcessId foreignPid = 99;
constexpr std::string_view dividerName = "PelistraV3.Divider";

class StatusItemWindowsTest : public ::testing::Test {
protected:
    StatusItemWindowsTest() { application_.pid = ownPid; }

    static WindowInfo dividerAt(double x) {
        return {.number = 7,
                .ownerPid = ownPid,
                .ownerName = "Pelistra",
                .name = std::string(dividerName),
                .layer = statusWindowLayer,
                .bounds = WindowBounds{.x = x, .y = 1, .width = 14, .height = 24}};
    }

    void list(std::vector<WindowInfo> windows) { windowList_.windows = std::move(windows); }

    [[nodiscard]] std::optional<Rect> dividerFrame() const {
        return windows_.statusWindowFrame(dividerName);
    }

    testing::Journal journal_;
    testing::FakeApplication application_{journal_};
    testing::FakeWindowList windowList_{journal_};
    StatusItemWindows windows_{windowList_, application_};
};

TEST_F(StatusItemWindowsTest, FindsTheFrameOfTheWindowWithThatName) {
    list({dividerAt(1200)});

    EXPECT_EQ(dividerFrame(), makeRect<GlobalSpace>(1200, 1, 14, 24));
}

TEST_F(StatusItemWindowsTest, TakesTheFirstMatchInTheListsOrder) {
    list({dividerAt(300), dividerAt(200)});

    EXPECT_EQ(dividerFrame()->minX(), 300);
}

TEST_F(StatusItemWindowsTest, ReadsTheListAfreshEveryTime) {
    list({dividerAt(300)});
    EXPECT_EQ(dividerFrame()->minX(), 300);

    list({dividerAt(400)});
    EXPECT_EQ(dividerFrame()->minX(), 400);
}

TEST_F(StatusItemWindowsTest, NoAnswerCountsAsAnEmptyList) {
    windowList_.windows.reset();

    EXPECT_EQ(dividerFrame(), std::nullopt);
}

TEST_F(StatusItemWindowsTest, AnotherProcessesWindowOfThatNameIsIgnored) {
    auto foreign = dividerAt(300);
    foreign.ownerPid = foreignPid;
    list({foreign, dividerAt(500)});

    EXPECT_EQ(dividerFrame()->minX(), 500);
}

TEST_F(StatusItemWindowsTest, AWindowOnAnotherLayerIsIgnored) {
    auto ordinary = dividerAt(300);
    ordinary.layer = 0;
    list({ordinary});

    EXPECT_EQ(dividerFrame(), std::nullopt);
}

TEST_F(StatusItemWindowsTest, TheNameMustBeTheSameText) {
    auto longer = dividerAt(300);
    longer.name = "PelistraV3.Divider2";
    auto lower = dividerAt(300);
    lower.name = "pelistrav3.divider";
    list({longer, lower});

    EXPECT_EQ(dividerFrame(), std::nullopt);
}

TEST_F(StatusItemWindowsTest, AMissingValueFailsTheEntry) {
    auto ownerless = dividerAt(300);
    ownerless.ownerPid.reset();
    auto layerless = dividerAt(300);
    layerless.layer.reset();
    auto nameless = dividerAt(300);
    nameless.name.reset();
    list({ownerless, layerless, nameless, dividerAt(500)});

    EXPECT_EQ(dividerFrame()->minX(), 500);
}

TEST_F(StatusItemWindowsTest, MissingBoundsMeanNoFrameEvenIfALaterWindowHasSome) {
    auto boundless = dividerAt(300);
    boundless.bounds.reset();
    list({boundless, dividerAt(500)});

    EXPECT_EQ(dividerFrame(), std::nullopt);
}

TEST_F(StatusItemWindowsTest, AMissingMemberOfTheBoundsCountsAsZero) {
    auto partial = dividerAt(300);
    partial.bounds =
        WindowBounds{.x = std::nullopt, .y = std::nullopt, .width = 14, .height = std::nullopt};
    list({partial});

    EXPECT_EQ(dividerFrame(), makeRect<GlobalSpace>(0, 0, 14, 0));

    partial.bounds = WindowBounds{};
    list({partial});

    EXPECT_EQ(dividerFrame(), Rect{});
}

} // namespace
} // namespace pelistra

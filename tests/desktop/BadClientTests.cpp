#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/TrayClient.h"

#include <algorithm>
#include <array>
#include <chrono>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

constexpr int largestWidth = 10'000;

// Tray clients that misbehave, beside two that do not: a real program and one of our own.
class BadClientTests : public ::testing::Test {
protected:
    void SetUp() override {
        desktop_.startBar();
        desktop_.startProgram("nabi");
        ASSERT_TRUE(good_.requestDock());
        ASSERT_TRUE(good_.waitUntilDocked());
        ASSERT_TRUE(waitFor([this] { return othersNow().size() == 2; }));
        others_ = othersNow();
    }

    void TearDown() override {
        EXPECT_TRUE(desktop_.bar().process().isRunning()) << desktop_.bar().process().output();
        // The two good ones are where they were, and the bar still docks newcomers.
        EXPECT_TRUE(waitFor([this] { return othersNow() == others_; }));
        TrayClient late(desktop_.display().name(), {.name = "Late"});
        EXPECT_TRUE(late.requestDock());
        EXPECT_TRUE(late.waitUntilDocked()) << desktop_.bar().process().output();
        EXPECT_LE(std::ranges::count(desktop_.bar().process().output(), '\n'), allowedLines());
    }

    // A fault of its own, and of a flood of faults one line in a while.
    [[nodiscard]] std::ptrdiff_t allowedLines() const {
        constexpr std::chrono::seconds pause{10};
        return 2 + ((std::chrono::steady_clock::now() - begin_) / pause);
    }

    // They came first, so they stand at the right end and newcomers do not move them.
    std::vector<Desktop::Item> othersNow() {
        good_.handleEvents();
        std::vector<Desktop::Item> items = desktop_.items();
        std::erase_if(items, [](const Desktop::Item& item) {
            return item.className != "Good" && item.className != "Nabi";
        });
        return items;
    }

    Desktop desktop_;
    TrayClient good_{desktop_.display().name(), {.name = "Good"}};
    std::vector<Desktop::Item> others_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

TEST_F(BadClientTests, OneThatDiesRightAfterAskingForADock) {
    for (int round = 0; round < 20; ++round) {
        TrayClient dying(desktop_.display().name(), {.name = "Dying"});
        ASSERT_TRUE(dying.requestDock());
        dying.die();
    }
    EXPECT_TRUE(
        waitFor([this] { return !desktop_.item("Dying") && desktop_.items().size() == 2; }));
}

// The X server gives the number of a dead client, and with it its windows' numbers, to the next
// one: what the bar still hears of the dead window must not harm the new one.
TEST_F(BadClientTests, OneThatDiesAndLeavesItsNumberToAnother) {
    int successors = 0;
    for (int round = 0; round < 200; ++round) {
        TrayClient dying(desktop_.display().name(), {.name = "Dying"});
        ASSERT_TRUE(dying.requestDock());
        dying.die();
        TrayClient next(desktop_.display().name(), {.name = "Next"});
        successors += next.window() == dying.window() ? 1 : 0;
        ASSERT_TRUE(next.requestDock());
        ASSERT_TRUE(next.waitUntilDocked()) << "round " << round;
    }
    EXPECT_GT(successors, 0);
}

TEST_F(BadClientTests, OneWhoseWindowNeverExisted) {
    TrayClient gone(desktop_.display().name(), {.name = "Gone"});
    gone.destroyWindow();
    ASSERT_TRUE(gone.requestDock());
}

TEST_F(BadClientTests, OneThatDestroysItsDockedWindow) {
    TrayClient icon(desktop_.display().name(), {.name = "Short"});
    ASSERT_TRUE(icon.requestDock());
    ASSERT_TRUE(icon.waitUntilDocked());
    icon.destroyWindow();
    EXPECT_TRUE(waitFor([this] { return desktop_.items().size() == 2; }));
}

TEST_F(BadClientTests, OneThatAsksForWidthsThatCannotBe) {
    TrayClient greedy(desktop_.display().name(), {.name = "Greedy"});
    ASSERT_TRUE(greedy.requestDock());
    ASSERT_TRUE(greedy.waitUntilDocked());
    greedy.askForWidth(30'000);
    EXPECT_TRUE(waitFor([&] { return greedy.x().frame(greedy.window())->width == largestWidth; }));
    greedy.askForWidth(0);
    EXPECT_TRUE(waitFor([&] { return greedy.x().frame(greedy.window())->width < 100; }));
    EXPECT_GE(greedy.x().frame(greedy.window())->width, 1);
}

TEST_F(BadClientTests, OneThatFloodsWithResizeRequests) {
    TrayClient flood(desktop_.display().name(), {.name = "Flood"});
    ASSERT_TRUE(flood.requestDock());
    ASSERT_TRUE(flood.waitUntilDocked());
    constexpr std::uint32_t rounds = 2'000;
    for (std::uint32_t round = 0; round < rounds; ++round) {
        const std::array<std::uint32_t, 2> size{20 + (round % 50), 1 + (round % 90)};
        xcb_configure_window(flood.x().get(), flood.window(),
                             XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
    }
    flood.requestSize(37, 28);
    EXPECT_TRUE(waitFor([&] { return flood.x().frame(flood.window())->width == 37; }));
}

TEST_F(BadClientTests, OneWithTitlesThatAreNoText) {
    TrayClient titled(desktop_.display().name(), {.name = "Titled"});
    ASSERT_TRUE(titled.requestDock());
    ASSERT_TRUE(titled.waitUntilDocked());
    const std::string endless(std::size_t{200} * 1024, 'x');
    const std::string broken("\xff\xfe\x80 \0 \x1b[31m", 11);
    for (const std::string& title : {endless, broken, std::string()}) {
        for (const char* type : {"UTF8_STRING", "STRING", "CARDINAL"}) {
            titled.setTitle(title, type);
        }
    }
    titled.askForWidth(55);
    EXPECT_TRUE(waitFor([&] { return titled.x().frame(titled.window())->width == 55; }));
}

TEST_F(BadClientTests, OneThatAsksAgainAndAgain) {
    TrayClient eager(desktop_.display().name(), {.name = "Eager"});
    for (int round = 0; round < 30; ++round) {
        ASSERT_TRUE(eager.requestDock());
    }
    ASSERT_TRUE(eager.waitUntilDocked());
    EXPECT_TRUE(waitFor([this] { return desktop_.items().size() == 3; }));
}

TEST_F(BadClientTests, OneThatReparentsItselfAway) {
    TrayClient leaving(desktop_.display().name(), {.name = "Leaving"});
    ASSERT_TRUE(leaving.requestDock());
    XClient& x = leaving.x();
    // So soon it may be the window manager's doing: the bar insists for a while, but not for ever.
    EXPECT_TRUE(waitFor([&] {
        if (x.topLevel(leaving.window()) == x.topLevel(x.barWindow())) {
            xcb_reparent_window(x.get(), leaving.window(), x.root(), 0, 0);
            x.sync();
        }
        return desktop_.bar().process().output().find("it is let go") != std::string::npos;
    }));
    EXPECT_TRUE(waitFor([this] { return desktop_.items().size() == 2; }));
    EXPECT_TRUE(x.exists(leaving.window()));
    EXPECT_NE(x.topLevel(leaving.window()), x.topLevel(x.barWindow()));
}

TEST_F(BadClientTests, OneThatUnmapsItselfButSaysItIsShown) {
    TrayClient blinking(desktop_.display().name(), {.name = "Blinking"});
    ASSERT_TRUE(blinking.requestDock());
    ASSERT_TRUE(blinking.waitUntilDocked());
    xcb_unmap_window(blinking.x().get(), blinking.window());
    blinking.x().sync();
    EXPECT_TRUE(waitFor([&] { return blinking.x().isViewable(blinking.window()); }));
}

TEST_F(BadClientTests, OneThatHidesAndShowsItselfByItsFlag) {
    TrayClient hiding(desktop_.display().name(), {.name = "Hiding"});
    ASSERT_TRUE(hiding.requestDock());
    ASSERT_TRUE(hiding.waitUntilDocked());
    hiding.setMappedFlag(false);
    EXPECT_TRUE(waitFor([&] { return !hiding.x().isViewable(hiding.window()); }));
    hiding.setMappedFlag(true);
    EXPECT_TRUE(waitFor([&] { return hiding.x().isViewable(hiding.window()); }));
}

} // namespace
} // namespace pelistra::testing

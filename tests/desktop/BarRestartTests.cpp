#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/TrayClient.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

const std::vector<std::string> programs{"nabi", "volumeicon", "pnmixer", "qlipper", "qmidinet"};
// How long the desktop is without a bar: not at all, about as long as programs and the window
// manager need to notice, and long enough for all of them to have settled without one.
const std::vector<std::chrono::milliseconds> pauses{
    std::chrono::milliseconds(0), std::chrono::milliseconds(5), std::chrono::milliseconds(50),
    std::chrono::milliseconds(500)};

// A bar that dies leaves every icon to the window manager, which takes it for a window like any
// other; the next bar and the window manager then both reach for it.
class BarRestartTests : public ::testing::Test {
protected:
    void SetUp() override {
        desktop_.startBar();
        for (const std::string& program : programs) {
            desktop_.startProgram(program);
        }
        ASSERT_TRUE(waitFor([this] { return isWhole(); })) << describeAll();
        order_ = desktop_.order();
    }

    // Every icon is on the bar and nothing of the window manager's is around one.
    bool isWhole() {
        const std::vector<Desktop::Item> items = desktop_.items();
        XClient& x = desktop_.x();
        const xcb_window_t bar = x.topLevel(x.barWindow());
        const bool docked = std::ranges::all_of(
            items, [&](const Desktop::Item& item) { return x.topLevel(item.window) == bar; });
        const std::vector<xcb_window_t> managed = x.managedWindows();
        return items.size() == programs.size() && docked && desktop_.everythingIsOnScreen() &&
               managed == std::vector{x.barWindow()};
    }

    void restart(int signal, std::chrono::milliseconds pause) {
        desktop_.bar().process().signal(signal);
        ASSERT_TRUE(desktop_.bar().process().waitForExit());
        std::this_thread::sleep_for(pause);
        desktop_.startBar();
        // For a while: some programs make a new icon once they notice, however late that is.
        EXPECT_TRUE(waitFor([this] {
            return staysTrue([this] { return isWhole(); }, std::chrono::milliseconds(200));
        })) << "after "
            << pause.count() << " ms without a bar: " << describeAll();
        EXPECT_EQ(desktop_.order(), order_);
    }

    std::string describeAll() {
        std::string text = ::testing::PrintToString(desktop_.items()) + ", managed:";
        for (const xcb_window_t window : desktop_.x().managedWindows()) {
            text += " " + desktop_.x().windowClass(window).second;
        }
        return text + "\n" + desktop_.bar().process().output();
    }

    Desktop desktop_;
    std::vector<std::string> order_;
};

TEST_F(BarRestartTests, EveryIconComesBackFromAKilledBarHoweverSoonTheNextOneStarts) {
    for (int round = 0; round < 3; ++round) {
        for (const std::chrono::milliseconds pause : pauses) {
            ASSERT_NO_FATAL_FAILURE(restart(SIGKILL, pause));
        }
    }
}

TEST_F(BarRestartTests, EveryIconComesBackFromABarThatEnded) {
    for (const std::chrono::milliseconds pause : pauses) {
        ASSERT_NO_FATAL_FAILURE(restart(SIGTERM, pause));
    }
}

// As a program does whose tray died under another bar: its icon has become a window.
TEST_F(BarRestartTests, AnIconThatTheWindowManagerHasTakenComesToTheBar) {
    TrayClient icon(desktop_.display().name(), {.name = "Orphan"});
    XClient& x = icon.x();
    xcb_map_window(x.get(), icon.window());
    ASSERT_TRUE(waitFor([&] {
        icon.handleEvents();
        return x.managedWindows().size() == 2 && x.parent(icon.window()) != x.root();
    }));
    ASSERT_TRUE(icon.requestDock());
    const auto isDocked = [&] {
        icon.handleEvents();
        return x.topLevel(icon.window()) == x.topLevel(x.barWindow()) &&
               x.isViewable(icon.window()) && x.managedWindows() == std::vector{x.barWindow()};
    };
    // The window manager may be about to do something with it, and the bar fetches it back.
    EXPECT_TRUE(waitFor([&] { return staysTrue(isDocked, std::chrono::milliseconds(200)); }))
        << describeAll();
}

} // namespace
} // namespace pelistra::testing

#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/TrayClient.h"

#include <algorithm>
#include <array>
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAreArray;

constexpr int barHeight = 28;
const std::vector<std::string> oneOfEachToolkit{"nabi", "pnmixer", "copyq", "qmidinet"};

class BarOnDesktopTests : public ::testing::Test {
protected:
    explicit BarOnDesktopTests(const Desktop::Size& size = {}) : desktop_(size) {}

    void startPrograms() {
        for (const std::string& program : oneOfEachToolkit) {
            desktop_.startProgram(program);
        }
    }

    // Starts the bar again and waits until it holds `count` icons, all shown.
    void restartBar(std::size_t count) {
        desktop_.startBar();
        EXPECT_TRUE(waitFor([&] {
            return desktop_.items().size() == count && desktop_.everythingIsOnScreen();
        })) << desktop_.bar().process().output();
    }

    // The file in which the bar keeps the order, as it is now.
    std::string rememberedOrder() {
        return contentOf(desktop_.display().stateFolder() / "pelistra" / "menubar-order");
    }

    // Maps a window whose wanted state is full screen.
    void showFullScreen(TrayClient& client) {
        XClient& x = client.x();
        const std::array<std::uint32_t, 1> state{x.atom("_NET_WM_STATE_FULLSCREEN")};
        x11::setWords(x.connection(), client.window(), x.atom("_NET_WM_STATE"), x.atom("ATOM"),
                      state);
        xcb_map_window(x.get(), client.window());
        x.sync();
    }

    Desktop desktop_;
};

TEST_F(BarOnDesktopTests, StandsOnTopOfTheScreenAndReservesItsPlace) {
    desktop_.startBar();
    XClient& x = desktop_.x();
    const xcb_window_t bar = x.barWindow();
    EXPECT_TRUE(
        waitFor([&] { return x.frame(bar) == WindowFrame{.width = 1280, .height = barHeight}; }));
    EXPECT_TRUE(waitFor([&] { return x.isViewable(bar); }));
    EXPECT_TRUE(x.hasAtom(bar, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK"));
    EXPECT_THAT(x.words(bar, "_NET_WM_STRUT_PARTIAL"),
                ElementsAre(0, 0, barHeight, 0, 0, 0, 0, 0, 0, 1279, 0, 0));
    // The window manager keeps others out of it, on every desktop.
    EXPECT_TRUE(waitFor([&] {
        const std::vector<std::uint32_t> area = x.words(x.root(), "_NET_WORKAREA");
        return area.size() >= 4 && area[1] == barHeight && area[3] == 800 - barHeight;
    }));
    EXPECT_THAT(x.words(bar, "_NET_WM_DESKTOP"), ElementsAre(0xffffffffU));
}

using BarPictureOnDesktopTests = UnderCompositor<BarOnDesktopTests>;
INSTANTIATE_TEST_SUITE_P(Under, BarPictureOnDesktopTests, ::testing::ValuesIn(everyCompositor),
                         compositorTestName);

TEST_P(BarPictureOnDesktopTests, ShowsIconsOfEveryToolkitComplete) {
    desktop_.startBar();
    startPrograms();
    ASSERT_TRUE(waitFor([this] { return desktop_.everythingIsOnScreen(); }));
    for (const Desktop::Item& item : desktop_.items()) {
        EXPECT_EQ(item.frame.width, barHeight) << item.className;
        EXPECT_EQ(item.frame.height, barHeight) << item.className;
        // An icon has shades; a slot that was never painted has one colour.
        EXPECT_TRUE(waitFor([&] { return desktop_.x().capture(item.frame).colours() >= 8; }))
            << item.className;
        // No black box around it: the corners look like the bar beside the icons.
        const Picture icon = desktop_.x().capture(item.frame);
        EXPECT_NE(icon.at(0, 0), 0U) << item.className;
        EXPECT_NE(icon.at(icon.width() - 1, icon.height() - 2), 0U) << item.className;
    }
}

TEST_F(BarOnDesktopTests, NewIconsComeInAtTheLeftEnd) {
    desktop_.startBar();
    desktop_.startProgram("nabi");
    desktop_.startProgram("copyq");
    desktop_.startProgram("pnmixer");
    EXPECT_THAT(desktop_.order(), ElementsAre("Pnmixer", "copyq", "Nabi"));
    const std::vector<Desktop::Item> items = desktop_.items();
    for (std::size_t index = 1; index < items.size(); ++index) {
        EXPECT_EQ(items[index - 1].frame.right(), items[index].frame.x);
    }
}

TEST_F(BarOnDesktopTests, EveryIconSurvivesABarThatIsKilledOrEnded) {
    desktop_.startBar();
    startPrograms();
    const std::vector<std::string> order = desktop_.order();
    for (const int signal : {SIGKILL, SIGTERM, SIGKILL}) {
        desktop_.bar().process().signal(signal);
        ASSERT_TRUE(desktop_.bar().process().waitForExit());
        restartBar(oneOfEachToolkit.size());
        EXPECT_EQ(desktop_.order(), order);
        for (const std::string& program : oneOfEachToolkit) {
            EXPECT_TRUE(desktop_.program(program).isRunning()) << program;
        }
    }
}

TEST_F(BarOnDesktopTests, EndsWithStatusZeroWhenAskedTo) {
    BarUnderTest& bar = desktop_.startBar();
    startPrograms();
    EXPECT_EQ(bar.process().terminate(), (ExitStatus{.status = 0})) << bar.process().output();
    for (const std::string& program : oneOfEachToolkit) {
        EXPECT_TRUE(desktop_.program(program).isRunning()) << program;
    }
}

TEST_F(BarOnDesktopTests, TheDraggedOrderOutlivesBarAndPrograms) {
    for (const UserInput::Modifiers& modifiers :
         {UserInput::Modifiers{keys::super}, UserInput::Modifiers{keys::alt, keys::shift}}) {
        desktop_.startBar();
        startPrograms();
        ASSERT_TRUE(waitFor([this] { return desktop_.everythingIsOnScreen(); }));
        std::vector<std::string> order = desktop_.order();
        const std::string rememberedBefore = rememberedOrder();
        const Desktop::Item leftmost = desktop_.items().front();
        ASSERT_TRUE(desktop_.dragItem(leftmost.className, desktop_.items().back().frame.midX() + 4,
                                      modifiers));
        std::ranges::rotate(order, order.begin() + 1);
        EXPECT_TRUE(waitFor([&] { return desktop_.order() == order; }))
            << ::testing::PrintToString(desktop_.order());
        ASSERT_TRUE(waitFor([&] { return rememberedOrder() != rememberedBefore; }));
        desktop_.bar().process().signal(SIGKILL);
        ASSERT_TRUE(desktop_.bar().process().waitForExit());
        desktop_.endPrograms();
        desktop_.startBar();
        startPrograms();
        EXPECT_EQ(desktop_.order(), order);
        desktop_.endPrograms();
        ASSERT_TRUE(waitFor([this] { return desktop_.items().empty(); }));
    }
}

TEST_P(BarPictureOnDesktopTests, LiesBelowFullScreenWindows) {
    desktop_.startBar();
    TrayClient film(desktop_.display().name(), {.name = "Film", .colour = 0x204060});
    showFullScreen(film);
    XClient& x = desktop_.x();
    ASSERT_TRUE(waitFor([&] { return x.frame(film.window()) == x.rootFrame(); }));
    EXPECT_TRUE(waitFor([&] { return x.isAbove(film.window(), x.barWindow()); }));
    EXPECT_TRUE(waitFor([&] {
        film.handleEvents();
        return x.capture({.width = 1280, .height = barHeight}).pixelsOf(0x204060) ==
               std::size_t{1280} * barHeight;
    }));
}

TEST_F(BarOnDesktopTests, FollowsTheScreensSize) {
    desktop_.startBar();
    startPrograms();
    const std::vector<std::string> order = desktop_.order();
    XClient& x = desktop_.x();
    for (const auto& [width, height] : {std::pair(1000, 700), std::pair(1280, 720)}) {
        desktop_.setScreenSize(width, height);
        EXPECT_TRUE(waitFor([&] {
            return x.frame(x.barWindow()) == WindowFrame{.width = width, .height = barHeight};
        }));
        EXPECT_TRUE(waitFor([&] { return desktop_.everythingIsOnScreen(); }));
        EXPECT_EQ(desktop_.order(), order);
        EXPECT_TRUE(waitFor([&] {
            const std::vector<std::uint32_t> strut =
                x.words(x.barWindow(), "_NET_WM_STRUT_PARTIAL");
            return strut.size() == 12 && strut[9] == static_cast<std::uint32_t>(width - 1);
        }));
    }
}

TEST_F(BarOnDesktopTests, StandsOnThePrimaryOfTwoMonitors) {
    desktop_.setMonitors({800, 480});
    desktop_.startBar();
    XClient& x = desktop_.x();
    EXPECT_TRUE(waitFor(
        [&] { return x.frame(x.barWindow()) == WindowFrame{.width = 800, .height = barHeight}; }));
    desktop_.startProgram("nabi");
    EXPECT_LE(desktop_.items().front().frame.right(), 800);
    EXPECT_THAT(x.words(x.barWindow(), "_NET_WM_STRUT_PARTIAL"),
                ElementsAre(0, 0, barHeight, 0, 0, 0, 0, 0, 0, 799, 0, 0));
}

TEST_F(BarOnDesktopTests, SaysItsScaleAgainOnceTheWindowManagerHasMadeItThatHigh) {
    desktop_.startBar();
    XClient& x = desktop_.x();
    ASSERT_TRUE(waitFor([&] { return x.isViewable(x.barWindow()); }));
    XClient watcher(desktop_.display().name());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(watcher.get(), x.trayOwner(), XCB_CW_EVENT_MASK, &events);
    const std::uint32_t moves = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(watcher.get(), x.barWindow(), XCB_CW_EVENT_MASK, &moves);
    watcher.sync();
    x11::setText(x.connection(), x.root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING,
                 "Xft.dpi: 192");
    x.sync();
    bool isHigh = false;
    bool toldAfterwards = false;
    EXPECT_TRUE(waitFor([&] {
        while (const x11::EventPtr event = watcher.connection().pollEvent()) {
            if (x11::typeOf(*event) == XCB_CONFIGURE_NOTIFY) {
                isHigh = isHigh ||
                         x11::eventAs<xcb_configure_notify_event_t>(*event).height == 2 * barHeight;
            } else if (x11::typeOf(*event) == XCB_PROPERTY_NOTIFY) {
                toldAfterwards =
                    toldAfterwards ||
                    (isHigh && x11::eventAs<xcb_property_notify_event_t>(*event).atom ==
                                   x.atom("_PELISTRA_MENUBAR_SCALE"));
            }
        }
        return toldAfterwards;
    }));
}

TEST_F(BarOnDesktopTests, IsTwiceAsHighAtScaleTwo) {
    desktop_.startBar({"--scale", "2"});
    XClient& x = desktop_.x();
    EXPECT_TRUE(waitFor([&] {
        return x.frame(x.barWindow()) == WindowFrame{.width = 1280, .height = 2 * barHeight};
    }));
    EXPECT_TRUE(waitFor([this] { return desktop_.bar().scale() == 2; }));
    desktop_.startProgram("copyq");
    EXPECT_TRUE(waitFor([&] { return desktop_.items().front().frame.width == 2 * barHeight; }));
}

TEST_F(BarOnDesktopTests, TheHousingIsKeptFreeOfIcons) {
    // So wide that the icons must give way: three fit right of it.
    desktop_.startBar({"--camera-housing", "1000,180"});
    startPrograms();
    XClient& x = desktop_.x();
    EXPECT_THAT(x.words(x.trayOwner(), "_PELISTRA_MENUBAR_AUXILIARY_AREAS"),
                ElementsAre(0, 0, 1000, barHeight, 1180, 0, 100, barHeight));
    EXPECT_TRUE(waitFor([&] {
        return std::ranges::all_of(desktop_.items(), [](const Desktop::Item& item) {
            return item.frame.right() <= 1000 || item.frame.x >= 1180;
        });
    })) << ::testing::PrintToString(desktop_.items());
}

} // namespace
} // namespace pelistra::testing

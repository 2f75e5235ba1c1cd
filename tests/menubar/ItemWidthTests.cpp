#include "tests/menubar/BarFixture.h"

#include <algorithm>
#include <array>
#include <chrono>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;

// A client has sent it, not the server.
constexpr int sentConfigureNotify = XCB_CONFIGURE_NOTIFY | 0x80;

class ItemWidthTests : public BarFixture {
protected:
    using BarFixture::BarFixture;

    [[nodiscard]] bool becomes(const TrayClient& client, int width) {
        return eventually([&] { return frameOf(client).width == width; });
    }
    // Changes of its place are then its own business, no request that the bar is asked about.
    void decideForItself(TrayClient& client) {
        const std::uint32_t yes = 1;
        xcb_change_window_attributes(client.x().get(), client.window(), XCB_CW_OVERRIDE_REDIRECT,
                                     &yes);
        client.x().sync();
    }
    void requestHeight(TrayClient& client, std::uint32_t height) {
        xcb_configure_window(client.x().get(), client.window(), XCB_CONFIG_WINDOW_HEIGHT, &height);
        client.x().sync();
    }
};

TEST_F(ItemWidthTests, ResizeRequestsAreGrantedAndTheOthersMakeRoom) {
    startBar();
    TrayClient& right = dockNamed("right");
    TrayClient& left = dockNamed("left");
    right.askForWidth(100);
    EXPECT_TRUE(becomes(right, 100));
    EXPECT_EQ(frameOf(right).right(), screenWidth);
    EXPECT_TRUE(eventually([&] { return frameOf(left).right() == screenWidth - 100; }));
    right.askForWidth(40);
    EXPECT_TRUE(eventually([&] { return frameOf(left).right() == screenWidth - 40; }));
}

TEST_F(ItemWidthTests, AHeightIsNeverGranted) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    icon.requestSize(60, 273);
    requestHeight(icon, 500);
    icon.askForWidth(44);
    EXPECT_TRUE(becomes(icon, 44));
    EXPECT_EQ(frameOf(icon).height, barHeight);
    EXPECT_EQ(x_.frame(x_.barWindow())->height, barHeight);
}

TEST_F(ItemWidthTests, APictureIsGivenASquareSlotWhateverItsSize) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    for (const std::uint32_t side : {273U, 16U, 200U, 22U}) {
        icon.requestSize(side, side);
        icon.requestSize(side, side);
    }
    dockNamed("other");
    EXPECT_TRUE(becomes(icon, barHeight));
}

TEST_F(ItemWidthTests, WidthsAreBounded) {
    startBar();
    TrayClient& item = dock({.name = "item", .preferredPosition = 0});
    item.askForWidth(30'000);
    EXPECT_TRUE(becomes(item, 10'000));
    // Requests for no width at all the server refuses by itself; hints may ask for it.
    item.askForWidth(0);
    EXPECT_TRUE(becomes(item, 1));
    item.askForWidth(14);
    EXPECT_TRUE(becomes(item, 14));
}

TEST_F(ItemWidthTests, ScaledWidthsAreBoundedInPoints) {
    startBar({"--scale", "2"});
    TrayClient& item = dock({.name = "item", .preferredPosition = 0});
    EXPECT_TRUE(becomes(item, 2 * barHeight));
    item.askForWidth(30'000);
    EXPECT_TRUE(becomes(item, 20'000));
}

TEST_F(ItemWidthTests, AGrownDividerPushesTheOthersOutAliveAndMapped) {
    startBar();
    const TrayClient& control = dock({.name = "control", .preferredPosition = 0});
    TrayClient& divider = dock({.name = "divider", .preferredPosition = 1});
    TrayClient& icon = dockNamed("icon");
    divider.askForWidth(14);
    EXPECT_TRUE(eventually([&] { return frameOf(icon).right() == screenWidth - 28 - 14; }));
    divider.askForWidth(2560);
    EXPECT_TRUE(eventually([&] { return frameOf(icon).right() == screenWidth - 28 - 2560; }));
    EXPECT_LT(frameOf(icon).x, 0);
    EXPECT_TRUE(x_.isViewable(icon.window()));
    EXPECT_EQ(frameOf(control).right(), screenWidth);
    EXPECT_THAT(names(), ElementsAre("icon", "divider", "control"));
    divider.askForWidth(14);
    EXPECT_TRUE(eventually([&] { return frameOf(icon).right() == screenWidth - 28 - 14; }));
}

TEST_F(ItemWidthTests, EveryResizeRequestIsAnswered) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    handleEvents();
    // Nothing changes, so the server itself has nothing to tell.
    icon.requestSize(28, 28);
    bool told = false;
    EXPECT_TRUE(waitFor([&] {
        while (const x11::EventPtr event = icon.x().connection().pollEvent()) {
            if (event->response_type == sentConfigureNotify) {
                const auto& notice = x11::eventAs<xcb_configure_notify_event_t>(*event);
                // In root coordinates.
                told = notice.x == screenWidth - barHeight && notice.y == 0 &&
                       notice.width == barHeight && notice.height == barHeight;
            }
        }
        return told;
    }));
}

TEST_F(ItemWidthTests, AMovedItemIsToldWhereItIs) {
    startBar();
    TrayClient& right = dockNamed("right");
    TrayClient& left = dockNamed("left");
    handleEvents();
    right.askForWidth(90);
    bool told = false;
    EXPECT_TRUE(waitFor([&] {
        right.handleEvents();
        while (const x11::EventPtr event = left.x().connection().pollEvent()) {
            if (event->response_type == sentConfigureNotify) {
                told = x11::eventAs<xcb_configure_notify_event_t>(*event).x ==
                       screenWidth - 90 - barHeight;
            }
        }
        return told;
    }));
}

TEST_F(ItemWidthTests, AFloodDoesNotHoldTheOthersUp) {
    startBar();
    TrayClient& flood = dockNamed("flood");
    TrayClient& good = dockNamed("good");
    for (std::uint32_t round = 0; round < 20'000; ++round) {
        const std::uint32_t width = 20 + round % 50;
        xcb_configure_window(flood.x().get(), flood.window(), XCB_CONFIG_WINDOW_WIDTH, &width);
    }
    flood.x().connection().flush();
    good.askForWidth(77);
    EXPECT_TRUE(becomes(good, 77));
    flood.askForWidth(33);
    EXPECT_TRUE(becomes(flood, 33));
}

TEST_F(ItemWidthTests, ManyItemsAreDockedAndLaidOut) {
    startBar();
    for (int i = 0; i < 60; ++i) {
        dockNamed("item" + std::to_string(i));
    }
    const std::vector<WindowFrame> frames = x_.barItemFrames();
    ASSERT_EQ(frames.size(), 60U);
    EXPECT_TRUE(std::ranges::is_sorted(frames, {}, &WindowFrame::x));
    EXPECT_LT(frames.front().x, 0);
    EXPECT_EQ(frames.back().right(), screenWidth);
    // None is cut in two by the screen's edge.
    EXPECT_TRUE(std::ranges::all_of(
        frames, [](const WindowFrame& frame) { return frame.x >= 0 || frame.right() <= 0; }));
}

TEST_F(ItemWidthTests, TheHousingIsKeptFree) {
    startBar({"--camera-housing", "1100,100"});
    EXPECT_THAT(x_.words(x_.trayOwner(), "_PELISTRA_MENUBAR_AUXILIARY_AREAS"),
                ElementsAre(0, 0, 1100, barHeight, 1200, 0, 80, barHeight));
    for (const char* name : {"a", "b", "c", "d"}) {
        dockNamed(name);
    }
    const std::vector<WindowFrame> frames = x_.barItemFrames();
    ASSERT_EQ(frames.size(), 4U);
    // Two fit beside it, with a little distance; the others stand left of it.
    EXPECT_EQ(frames[3].right(), screenWidth);
    EXPECT_EQ(frames[2].right(), screenWidth - barHeight);
    EXPECT_EQ(frames[1].right(), 1096);
    EXPECT_EQ(frames[0].right(), 1096 - barHeight);
}

using ItemWidthPictureTests = UnderCompositor<ItemWidthTests>;
INSTANTIATE_TEST_SUITE_P(Under, ItemWidthPictureTests, ::testing::ValuesIn(everyCompositor),
                         compositorTestName);

// As Tk's tray icons do.
TEST_P(ItemWidthPictureTests, AWindowThatResizesItselfIsPutBackAndStaysComplete) {
    startBar();
    TrayClient& icon = dock({.name = "own", .colour = 0xff0000});
    decideForItself(icon);
    for (const std::uint32_t side : {22U, 48U, 16U}) {
        icon.requestSize(side, side);
        EXPECT_TRUE(becomes(icon, barHeight));
        EXPECT_TRUE(eventually([&] { return frameOf(icon).height == barHeight; }));
        EXPECT_TRUE(eventually([&] { return pixel(screenWidth - 3, barHeight - 4) == 0xff0000; }));
        EXPECT_TRUE(eventually([&] { return pixel(screenWidth - barHeight + 2, 2) == 0xff0000; }));
    }
}

TEST_F(ItemWidthTests, AWindowThatResizesItselfGetsTheWidthThatItTook) {
    startBar();
    TrayClient& icon = dockNamed("own");
    TrayClient& left = dockNamed("left");
    decideForItself(icon);
    icon.requestSize(90, 20);
    EXPECT_TRUE(eventually([&] { return frameOf(left).right() == screenWidth - 90; }));
    EXPECT_TRUE(eventually([&] {
        return frameOf(icon) ==
               WindowFrame{.x = screenWidth - 90, .width = 90, .height = barHeight};
    }));
}

TEST_F(ItemWidthTests, AWindowThatMovesItselfIsPutBack) {
    startBar();
    TrayClient& icon = dockNamed("own");
    decideForItself(icon);
    const std::array<std::uint32_t, 2> place{9, 5};
    xcb_configure_window(icon.x().get(), icon.window(), XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         place.data());
    icon.x().sync();
    EXPECT_TRUE(eventually([&] {
        return frameOf(icon) ==
               WindowFrame{.x = screenWidth - barHeight, .width = barHeight, .height = barHeight};
    }));
}

TEST_F(ItemWidthTests, AWindowThatNeverAcceptsItsSizeDoesNotKeepTheBarBusy) {
    startBar();
    TrayClient& stubborn = dockNamed("stubborn");
    decideForItself(stubborn);
    // Against every size that it is given; the bar gives in.
    EXPECT_TRUE(waitFor([&] {
        if (stubborn.x().frame(stubborn.window())->width != 22) {
            stubborn.requestSize(22, 22);
            return false;
        }
        return staysTrue([&] { return stubborn.x().frame(stubborn.window())->width == 22; },
                         std::chrono::milliseconds(100));
    }));
    // And serves others.
    const TrayClient& other = dockNamed("other");
    EXPECT_EQ(frameOf(other).right(), screenWidth - barHeight);
}

} // namespace
} // namespace pelistra::testing

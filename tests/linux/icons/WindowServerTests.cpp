#include "platform/linux/icons/X11WindowServer.h"

#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/linux/icons/TestTray.h"

#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <unistd.h>

namespace pelistra::testing {
namespace {

using linux::TrayIcon;
using linux::TrayReader;
using linux::X11WindowServer;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class WindowServerTest : public ::testing::Test {
protected:
    WindowServerTest() {
        for (int i = 0; i < 3; ++i) {
            icons.push_back(client.makeWindow(24, 28));
            client.setText(icons.back(), "_NET_WM_NAME", "UTF8_STRING",
                           "icon " + std::to_string(i));
            tray.embed(icons.back(), 100 * i, 24, 28);
        }
    }

    std::int32_t count() {
        std::int32_t result = 0;
        EXPECT_EQ(windowCount(1, 0, &result), windowServerSuccess);
        return result;
    }
    std::vector<WindowId> list(std::int32_t capacity) {
        std::vector<WindowId> ids(static_cast<std::size_t>(capacity));
        std::int32_t listed = 0;
        EXPECT_EQ(menuBarWindowList(1, 0, capacity, ids.data(), &listed), windowServerSuccess);
        ids.resize(static_cast<std::size_t>(listed));
        return ids;
    }
    std::optional<Rect> frame(WindowId window) {
        Rect result;
        return windowFrame(1, window, &result) == windowServerSuccess ? std::optional(result)
                                                                      : std::nullopt;
    }
    void moveIcon(std::size_t index, int x) {
        const auto container = tray.x().parent(icons[index]);
        const auto value = static_cast<std::uint32_t>(x);
        xcb_configure_window(tray.x().get(), container, XCB_CONFIG_WINDOW_X, &value);
        tray.x().sync();
    }

    PrivateDisplay display;
    std::unique_ptr<x11::Connection> connection = connect(display);
    TestTray tray{display.name(), TestTray::Kind::Ours};
    IconClient client{display.name()};
    std::vector<WindowId> icons;
    TrayReader reader{*connection};
    X11WindowServer server{reader, [](const TrayIcon&) { return "Owner"; }};
    LibraryHandle handle = server.open("SkyLight", library_mode::lazy);
    MainConnectionFunction mainConnection =
        server.resolveMainConnection(handle, "SLSMainConnectionID");
    WindowCountFunction windowCount = server.resolveWindowCount(handle, "SLSGetWindowCount");
    MenuBarWindowListFunction menuBarWindowList =
        server.resolveMenuBarWindowList(handle, "SLSGetProcessMenuBarWindowList");
    WindowFrameFunction windowFrame =
        server.resolveWindowFrame(handle, "SLSGetScreenRectForWindow");
};

TEST_F(WindowServerTest, KnowsItsFourFunctionsAndNoOther) {
    EXPECT_NE(handle, nullptr);
    EXPECT_TRUE(mainConnection && windowCount && menuBarWindowList && windowFrame);
    EXPECT_FALSE(server.resolveMainConnection(handle, "SLSGetWindowCount"));
    EXPECT_FALSE(server.resolveWindowCount(handle, ""));
    EXPECT_FALSE(server.resolveMenuBarWindowList(handle, "x"));
    EXPECT_FALSE(server.resolveWindowFrame(handle, "x"));
}

TEST_F(WindowServerTest, OneRunDescribesOneMoment) {
    EXPECT_EQ(mainConnection(), 1);
    EXPECT_EQ(count(), 3);
    EXPECT_EQ(list(3), icons);
    moveIcon(0, 500);
    const auto infos = server.copyWindowInfo();
    ASSERT_TRUE(infos.has_value());
    ASSERT_THAT(*infos, SizeIs(3));
    EXPECT_EQ(infos->front().bounds->x, 0);
    EXPECT_EQ(frame(icons[0]), (makeRect<GlobalSpace>(0, 0, 24, 28)));
}

TEST_F(WindowServerTest, TheNextRunSeesTheNextMoment) {
    mainConnection();
    EXPECT_EQ(count(), 3);
    EXPECT_EQ(list(3), icons);
    moveIcon(0, 500);
    mainConnection();
    EXPECT_EQ(frame(icons[0]), (makeRect<GlobalSpace>(500, 0, 24, 28)));
    EXPECT_EQ(server.copyWindowInfo()->front().bounds->x, 500);
}

TEST_F(WindowServerTest, AListIsSharedOnceOnly) {
    mainConnection();
    EXPECT_EQ(count(), 3);
    EXPECT_EQ(list(3), icons);
    EXPECT_TRUE(server.copyWindowInfo().has_value());
    moveIcon(0, 500);
    EXPECT_EQ(server.copyWindowInfo()->front().bounds->x, 500);
}

TEST_F(WindowServerTest, ARunThatFoundNothingIsNotShared) {
    tray.publish({});
    mainConnection();
    EXPECT_EQ(count(), 0);
    EXPECT_THAT(list(3), IsEmpty());
    tray.publish(icons);
    EXPECT_THAT(*server.copyWindowInfo(), SizeIs(3));
}

TEST_F(WindowServerTest, ListsNoMoreThanThereIsRoomFor) {
    mainConnection();
    EXPECT_EQ(list(2), (std::vector<WindowId>{icons[0], icons[1]}));
    EXPECT_THAT(list(0), IsEmpty());
}

TEST_F(WindowServerTest, AFrameOutsideARunIsLive) {
    moveIcon(2, 700);
    mainConnection();
    EXPECT_EQ(frame(icons[2]), (makeRect<GlobalSpace>(700, 0, 24, 28)));
    EXPECT_EQ(frame(0x7fffff), std::nullopt);
}

TEST_F(WindowServerTest, DescribesEveryWindowInFull) {
    const auto infos = server.copyWindowInfo();
    ASSERT_TRUE(infos.has_value());
    ASSERT_THAT(*infos, SizeIs(3));
    EXPECT_EQ((*infos)[1],
              (WindowInfo{.number = icons[1],
                          .ownerPid = ::getpid(),
                          .ownerName = "Owner",
                          .name = "icon 1",
                          .layer = 25,
                          .bounds = WindowBounds{.x = 100, .y = 0, .width = 24, .height = 28}}));
}

TEST_F(WindowServerTest, ADeadServerIsNoAnswer) {
    display.killServer();
    mainConnection();
    std::int32_t number = 0;
    EXPECT_NE(windowCount(1, 0, &number), windowServerSuccess);
    EXPECT_EQ(number, 0);
    WindowId id = 0;
    EXPECT_NE(menuBarWindowList(1, 0, 1, &id, &number), windowServerSuccess);
    EXPECT_EQ(server.copyWindowInfo(), std::nullopt);
    EXPECT_EQ(frame(icons[0]), std::nullopt);
}

} // namespace
} // namespace pelistra::testing

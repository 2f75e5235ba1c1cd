#include "tests/menubar/BarFixture.h"

#include <chrono>
#include <csignal>
#include <utility>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DockingTests : public BarFixture {};

TEST_F(DockingTests, PublishesWhatProgramsWantToKnow) {
    startBar();
    const xcb_window_t owner = x_.trayOwner();
    EXPECT_THAT(x_.words(owner, "_NET_SYSTEM_TRAY_ORIENTATION"), ElementsAre(0));
    const auto visual = x_.words(owner, "_NET_SYSTEM_TRAY_VISUAL");
    ASSERT_EQ(visual.size(), 1U);
    EXPECT_EQ(x_.connection().visual(visual.front()).depth, 32);
    EXPECT_EQ(x_.words(owner, "_NET_SYSTEM_TRAY_COLORS").size(), 12U);
    EXPECT_THAT(x_.words(owner, "_PELISTRA_MENUBAR_SCALE"), ElementsAre(100));
    EXPECT_THAT(x_.barItems(), IsEmpty());
    EXPECT_TRUE(x_.windowProperty(owner, "_PELISTRA_MENUBAR_ITEMS"));
    EXPECT_FALSE(x_.windowProperty(owner, "_PELISTRA_MENUBAR_AUXILIARY_AREAS"));
    const auto version = x_.windowProperty(owner, "_PELISTRA_MENUBAR_VERSION");
    ASSERT_TRUE(version);
    EXPECT_EQ(version->type, x_.atom("UTF8_STRING"));
    EXPECT_FALSE(version->text().empty());
}

TEST_F(DockingTests, CountsTheChangesThatOthersCanSee) {
    startBar();
    const xcb_window_t owner = x_.trayOwner();
    const auto serial = [&] { return x_.words(owner, "_PELISTRA_MENUBAR_SERIAL"); };
    auto last = serial();
    ASSERT_EQ(last.size(), 1U);
    const auto hasCounted = [&] { return std::exchange(last, serial()) != last; };
    constexpr std::chrono::milliseconds quiet{150};
    const auto comesToRest = [&] {
        return waitFor([&] { return staysTrue([&] { return !hasCounted(); }, quiet); });
    };

    TrayClient& icon = dockNamed("icon");
    EXPECT_TRUE(hasCounted());
    EXPECT_TRUE(comesToRest());
    icon.setTitle("another title", "STRING");
    EXPECT_TRUE(eventually(hasCounted));
    EXPECT_TRUE(comesToRest());
    icon.askForWidth(60);
    EXPECT_TRUE(eventually(hasCounted));
    EXPECT_TRUE(eventually([&] { return frameOf(icon).width == 60; }));
    EXPECT_TRUE(comesToRest());
    icon.die();
    EXPECT_TRUE(eventually(hasCounted));
}

TEST_F(DockingTests, ARestartedBarDoesNotRepeatTheSerials) {
    const auto serial = [&] { return x_.words(x_.trayOwner(), "_PELISTRA_MENUBAR_SERIAL"); };
    startBar();
    const auto last = serial();
    ASSERT_EQ(last.size(), 1U);
    stopBar(SIGTERM);
    startBar();
    // With the same steps behind it, a bar that counts from one would be at the same number.
    EXPECT_NE(serial(), last);
}

TEST_F(DockingTests, EmbedsAClientAndTellsIt) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    EXPECT_TRUE(eventually([&] { return icon.wasEmbedded(); }));
    EXPECT_TRUE(x_.isViewable(icon.window()));
    // In a container of its own inside the bar.
    EXPECT_EQ(x_.parent(x_.parent(icon.window())), x_.barWindow());
    EXPECT_EQ(frameOf(icon),
              (WindowFrame{.x = screenWidth - barHeight, .width = barHeight, .height = barHeight}));
}

TEST_F(DockingTests, AnnouncesItselfToThoseThatWait) {
    XClient waiting(display_.name());
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(waiting.get(), waiting.root(), XCB_CW_EVENT_MASK, &events);
    waiting.sync();
    startBar();
    bool announced = false;
    EXPECT_TRUE(waitFor([&] {
        while (const x11::EventPtr event = waiting.connection().pollEvent()) {
            if (x11::typeOf(*event) != XCB_CLIENT_MESSAGE) {
                continue;
            }
            const auto& message = x11::eventAs<xcb_client_message_event_t>(*event);
            announced = announced || (message.type == x_.atom("MANAGER") &&
                                      message.data.data32[0] != XCB_CURRENT_TIME &&
                                      message.data.data32[1] == x_.atom("_NET_SYSTEM_TRAY_S0") &&
                                      message.data.data32[2] == x_.trayOwner());
        }
        return announced;
    }));
}

TEST_F(DockingTests, AMissingEmbedInfoMeansMapped) {
    startBar();
    TrayClient& icon = dock({.name = "plain", .withEmbedInfo = false});
    EXPECT_TRUE(eventually([&] { return x_.isViewable(icon.window()); }));
}

TEST_F(DockingTests, AnUnmappedClientIsEmbeddedWithoutASlot) {
    startBar();
    TrayClient& hidden = dock({.name = "hidden", .mappedFlag = false});
    EXPECT_TRUE(eventually([&] { return hidden.wasEmbedded(); }));
    EXPECT_THAT(names(), IsEmpty());
    const TrayClient& other = dockNamed("other");
    EXPECT_EQ(frameOf(other).right(), screenWidth);
    hidden.setMappedFlag(true);
    // Docked first, it stands right of the newcomer.
    EXPECT_TRUE(eventually([&] { return frameOf(hidden).right() == screenWidth; }));
    EXPECT_TRUE(eventually([&] { return x_.isViewable(hidden.window()); }));
    EXPECT_TRUE(comesToBe({"other", "hidden"}));
}

TEST_F(DockingTests, TheMappedFlagWorksBothWaysWhileDocked) {
    startBar();
    TrayClient& right = dockNamed("right");
    TrayClient& left = dockNamed("left");
    right.setMappedFlag(false);
    EXPECT_TRUE(eventually([&] { return !x_.isMapped(right.window()); }));
    EXPECT_TRUE(eventually([&] { return frameOf(left).right() == screenWidth; }));
    EXPECT_TRUE(comesToBe({"left"}));
    // It is still embedded.
    EXPECT_EQ(x_.parent(x_.parent(right.window())), x_.barWindow());
    right.setMappedFlag(true);
    EXPECT_TRUE(eventually([&] { return x_.isViewable(right.window()); }));
    EXPECT_TRUE(eventually([&] { return frameOf(right).right() == screenWidth; }));
}

TEST_F(DockingTests, AClientThatUnmapsItselfIsMappedAgain) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    for (int round = 0; round < 3; ++round) {
        xcb_unmap_window(icon.x().get(), icon.window());
        icon.x().sync();
        EXPECT_TRUE(eventually([&] { return x_.isViewable(icon.window()); }));
    }
    EXPECT_TRUE(comesToBe({"icon"}));
}

TEST_F(DockingTests, RepeatedRequestsDockOnce) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    const xcb_window_t container = x_.parent(icon.window());
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(icon.requestDock());
    }
    dockNamed("next");
    EXPECT_TRUE(comesToBe({"next", "icon"}));
    EXPECT_EQ(x_.parent(icon.window()), container);
}

TEST_F(DockingTests, AWindowThatIsTakenAwayRightAfterItCameIsFetchedBack) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    const XClient thief(display_.name());
    const xcb_window_t frame = thief.connection().newId();
    xcb_create_window(thief.get(), XCB_COPY_FROM_PARENT, frame, thief.root(), 0, 100, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_window_t container = x_.parent(icon.window());
    xcb_reparent_window(thief.get(), icon.window(), frame, 0, 0);
    thief.sync();
    EXPECT_TRUE(eventually([&] {
        return x_.parent(x_.parent(icon.window())) == x_.barWindow() &&
               x_.parent(icon.window()) != container && x_.isViewable(icon.window());
    }));
    EXPECT_TRUE(comesToBe({"icon"}));
    EXPECT_EQ(frameOf(icon).right(), screenWidth);
}

TEST_F(DockingTests, AWindowThatKeepsLeavingIsLetGo) {
    allowComplaints(1);
    startBar();
    TrayClient& icon = dockNamed("icon");
    TrayClient& other = dockNamed("other");
    constexpr int fetchedBack = 3;
    for (int time = 0; time <= fetchedBack; ++time) {
        const xcb_window_t container = x_.parent(icon.window());
        xcb_reparent_window(icon.x().get(), icon.window(), icon.x().root(), 5, 50);
        icon.x().sync();
        if (time < fetchedBack) {
            ASSERT_TRUE(eventually([&] {
                return x_.parent(icon.window()) != x_.root() &&
                       x_.parent(icon.window()) != container && x_.isViewable(icon.window());
            }));
        }
    }
    EXPECT_TRUE(bar().process().waitForOutput("it is let go"));
    EXPECT_TRUE(comesToBe({"other"}));
    EXPECT_TRUE(eventually([&] { return frameOf(other).right() == screenWidth; }));
    EXPECT_EQ(x_.parent(icon.window()), x_.root());
    // And may come back.
    ASSERT_TRUE(icon.requestDock());
    EXPECT_TRUE(comesToBe({"other", "icon"}));
}

TEST_F(DockingTests, AWindowThatMovesIntoOneOfItsProgramIsLetGoAtOnce) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    const XClient& x = icon.x();
    const xcb_window_t home = x.connection().newId();
    xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, home, x.root(), 0, 100, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_reparent_window(x.get(), icon.window(), home, 0, 0);
    x.sync();
    EXPECT_TRUE(eventually([&] { return names().empty(); }));
    // The bar has handled the move by the time that it docks another one.
    dockNamed("next");
    EXPECT_EQ(x_.parent(icon.window()), home);
    EXPECT_TRUE(comesToBe({"next"}));
}

TEST_F(DockingTests, AWindowThatStayedForAWhileMayLeave) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    TrayClient& other = dockNamed("other");
    EXPECT_TRUE(staysTrue(
        [&] {
            handleEvents();
            return names().size() == 2;
        },
        std::chrono::milliseconds(2'100)));
    xcb_reparent_window(icon.x().get(), icon.window(), icon.x().root(), 5, 50);
    icon.x().sync();
    EXPECT_TRUE(comesToBe({"other"}));
    EXPECT_TRUE(eventually([&] { return frameOf(other).right() == screenWidth; }));
    EXPECT_EQ(x_.parent(icon.window()), x_.root());
}

TEST_F(DockingTests, TellsAWindowManagerToLetAWindowGo) {
    startBar();
    XClient manager(display_.name());
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(manager.get(), manager.root(), XCB_CW_EVENT_MASK, &events);
    manager.sync();
    // Never mapped, so that nothing but a notice by hand can say that it is withdrawn.
    TrayClient& icon = dockNamed("icon");
    bool toldBeforeItMoved = false;
    bool moved = false;
    EXPECT_TRUE(waitFor([&] {
        while (const x11::EventPtr event = manager.connection().pollEvent()) {
            const int type = x11::typeOf(*event);
            if (type == XCB_UNMAP_NOTIFY && !moved) {
                const auto& notice = x11::eventAs<xcb_unmap_notify_event_t>(*event);
                toldBeforeItMoved = toldBeforeItMoved || (notice.window == icon.window() &&
                                                          notice.event == manager.root());
            } else if (type == XCB_REPARENT_NOTIFY) {
                moved = moved ||
                        x11::eventAs<xcb_reparent_notify_event_t>(*event).window == icon.window();
            }
        }
        return moved;
    }));
    EXPECT_TRUE(toldBeforeItMoved);
}

TEST_F(DockingTests, DeadAndDestroyedClientsLeaveNoGap) {
    startBar();
    TrayClient& dying = dockNamed("dying");
    TrayClient& destroyed = dockNamed("destroyed");
    TrayClient& good = dockNamed("good");
    dying.die();
    destroyed.destroyWindow();
    EXPECT_TRUE(eventually([&] { return frameOf(good).right() == screenWidth; }));
    EXPECT_TRUE(comesToBe({"good"}));
    EXPECT_EQ(x_.children(x_.barWindow()).size(), 1U);
}

TEST_F(DockingTests, WindowsThatCannotBeDockedAreRefusedWithALine) {
    allowComplaints(1);
    startBar();
    TrayClient inputOnly(display_.name(), {.name = "unused"});
    const XClient& x = inputOnly.x();
    const xcb_window_t window = x.connection().newId();
    xcb_create_window(x.get(), 0, window, x.root(), 0, 0, 10, 10, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    for (const xcb_window_t wrong : {window, x.root(), x_.barWindow(), xcb_window_t{0x7ffffff}}) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = x_.trayOwner();
        message.type = x_.atom("_NET_SYSTEM_TRAY_OPCODE");
        message.data.data32[2] = wrong;
        xcb_send_event(x.get(), 0, x_.trayOwner(), 0, reinterpret_cast<const char*>(&message));
    }
    x.sync();
    EXPECT_TRUE(bar().process().waitForOutput("cannot be docked"));
    dockNamed("good");
    EXPECT_TRUE(comesToBe({"good"}));
}

TEST_F(DockingTests, IconsOutliveTheBarHoweverItEnds) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    for (const int signal : {SIGTERM, SIGKILL, SIGINT, SIGKILL, SIGHUP}) {
        stopBar(signal);
        EXPECT_TRUE(eventually([&] { return x_.parent(icon.window()) == x_.root(); }));
        startBar();
        ASSERT_TRUE(icon.requestDock());
        EXPECT_TRUE(eventually([&] { return x_.isViewable(icon.window()); }));
        EXPECT_TRUE(comesToBe({"icon"}));
    }
}

TEST_F(DockingTests, AKilledBarLeavesIconsUnmappedForNoWindowManagerToTake) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    {
        const XClient manager(display_.name());
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
        xcb_change_window_attributes(manager.get(), manager.root(), XCB_CW_EVENT_MASK, &events);
        manager.sync();
        stopBar(SIGKILL);
        EXPECT_TRUE(eventually([&] { return x_.parent(icon.window()) == x_.root(); }));
        EXPECT_FALSE(x_.isMapped(icon.window()));
        manager.sync();
        while (const x11::EventPtr event = manager.connection().pollEvent()) {
            EXPECT_NE(x11::typeOf(*event), XCB_MAP_REQUEST);
        }
    }
    startBar();
}

TEST_F(DockingTests, AnOrderlyEndLeavesIconsUnmappedAndEndsWithZero) {
    startBar();
    const TrayClient& icon = dockNamed("icon");
    EXPECT_EQ(bar().process().terminate(), (ExitStatus{.status = 0})) << bar().process().output();
    EXPECT_EQ(x_.parent(icon.window()), x_.root());
    EXPECT_FALSE(x_.isMapped(icon.window()));
    startBar();
}

TEST_F(DockingTests, ASecondTrayThatTakesOverGetsTheIcons) {
    BarUnderTest& first = startBar();
    TrayClient& icon = dockNamed("icon");
    const xcb_window_t firstOwner = x_.trayOwner();
    const BarUnderTest second(display_, x_, {"--replace"});
    EXPECT_EQ(first.process().waitForExit(), (ExitStatus{.status = 0}));
    EXPECT_THAT(first.process().output(), HasSubstr("took the system tray over"));
    EXPECT_NE(x_.trayOwner(), firstOwner);
    EXPECT_TRUE(x_.exists(icon.window()));
    ASSERT_TRUE(icon.requestDock());
    EXPECT_TRUE(comesToBe({"icon"}));
    forgetBar();
}

} // namespace
} // namespace pelistra::testing

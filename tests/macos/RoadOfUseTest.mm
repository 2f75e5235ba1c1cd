#include "tests/macos/LaunchedApplication.h"
#include "tests/macos/standins/MenuBar.h"

#include <gmock/gmock.h>

#include <unistd.h>

// One use after the other, with the core between the front end and a menu bar that places windows
// by the items' lengths.
namespace pelistra::macos {
namespace {

using namespace pelistra::testing::standins;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class RoadOfUseTest : public LaunchedApplication {};

TEST_F(RoadOfUseTest, CollapsesOpensTheRowAndExpands) {
    collapse();
    EXPECT_EQ(menuBarFrame(secondWindow)->origin.x, 1512 - 24 - 50 - collapsedLength - 30);
    EXPECT_THAT(messagesOf("overflow-store"), ElementsAre("Snapshotted 2 overflow item(s)"));

    clickArrow();
    EXPECT_TRUE(panelIsVisible());
    // 48 x 2 + 128 is less than the least width of 280; centred under the arrow and held on screen.
    EXPECT_TRUE(NSEqualRects([panel() frame], NSMakeRect(1512 - 8 - 280, 982 - 24 - 84, 280, 78)));
    EXPECT_NE(item("剪贴板"), nil);
    EXPECT_NE(item("音量"), nil);
    takePicture(panel(), "second-row");

    waitForLatch();
    clickArrow();
    EXPECT_FALSE(panelIsVisible());

    clickArrow(true);
    EXPECT_EQ(dividerLength(), 14);
    EXPECT_THAT(messagesOf("status-bar"),
                ElementsAre("Expanded hidden section",
                            "Status order dividerX=1424.000000 controlX=1488.000000 valid=true",
                            "Collapsed divider to length 3024.000000", "Expanded hidden section"));
}

TEST_F(RoadOfUseTest, TheArrowsPictureTellsTheState) {
    fillMenuBar();
    launch();
    world().journal.clear();
    clickArrow();
    EXPECT_THAT(recorded("NSStatusBarButton PelistraV3.Divider setImage"),
                ElementsAre("NSStatusBarButton PelistraV3.Divider setImage nil"));
    waitForLatch();
    clickArrow();
    waitForLatch();
    clickArrow();
    EXPECT_THAT(recorded("NSStatusBarButton PelistraV3.Control setImage"),
                ElementsAre("NSStatusBarButton PelistraV3.Control setImage chevron.down "
                            "template=YES \"打开第二行溢出栏\"",
                            "NSStatusBarButton PelistraV3.Control setImage chevron.up "
                            "template=YES \"关闭第二行溢出栏\"",
                            "NSStatusBarButton PelistraV3.Control setImage chevron.down "
                            "template=YES \"打开第二行溢出栏\""));
}

TEST_F(RoadOfUseTest, AnEmptySectionSaysSo) {
    launch();
    clickArrow();
    ASSERT_EQ(dividerLength(), collapsedLength);
    waitForLatch();
    clickArrow();
    EXPECT_THAT(textsIn([panel() contentView]),
                ElementsAre("隐藏区为空", "分隔线左侧暂时没有可放入第二行的图标。"));
    EXPECT_THAT(messagesOf("overflow-store"), ElementsAre("Snapshotted 0 overflow item(s)"));
}

TEST_F(RoadOfUseTest, LinesAreLoggedAtTheirLevels) {
    openRow();
    click(item("剪贴板"), NSEventTypeRightMouseDown, NSEventTypeRightMouseUp);
    EXPECT_TRUE(runUntil([] { return messagesOf("private-activation").size() == 1; }));
    for (const LogLine& line : world().log) {
        EXPECT_EQ(line.subsystem, "com.pelistra.app");
        EXPECT_EQ(line.type, OS_LOG_TYPE_INFO) << line.message;
    }
    EXPECT_THAT(recorded("os_log_create"),
                ::testing::UnorderedElementsAre("os_log_create com.pelistra.app status-bar",
                                                "os_log_create com.pelistra.app overflow-store",
                                                "os_log_create com.pelistra.app event-posting",
                                                "os_log_create com.pelistra.app "
                                                "private-activation"));
}

TEST_F(RoadOfUseTest, AClickOnAnIconOpensItsOutermostApplication) {
    openRow();
    click(item("音量"), NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    EXPECT_THAT(recorded("NSWorkspace openURL"), ElementsAre("NSWorkspace openURL /Apps/V.app"));
    EXPECT_FALSE(panelIsVisible());
}

TEST_F(RoadOfUseTest, AnApplicationThatDoesNotOpenIsActivated) {
    openRow();
    world().opensUrls = false;
    click(item("剪贴板"), NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    EXPECT_THAT(recorded("NSRunningApplication"),
                ElementsAre("NSRunningApplication 100 activateWithOptions 1"));
    EXPECT_FALSE(panelIsVisible());
}

TEST_F(RoadOfUseTest, AnApplicationWithoutWindowKeepsTheRowAndSaysSo) {
    openRow();
    world().opensUrls = false;
    world().applications.at(firstPid).activates = false;
    click(item("剪贴板"), NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    EXPECT_TRUE(panelIsVisible());
    EXPECT_TRUE(runUntil([] { return !textsIn([panel() contentView]).empty(); }));
    EXPECT_THAT(textsIn([panel() contentView]),
                ElementsAre("剪贴板 没有可打开的主窗口；可右键点击该图标，尝试打开原托盘菜单。"));
}

TEST_F(RoadOfUseTest, AnApplicationThatIsGoneIsSaid) {
    openRow();
    world().applications.erase(firstPid);
    click(item("剪贴板"), NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    EXPECT_TRUE(runUntil([] { return !textsIn([panel() contentView]).empty(); }));
    EXPECT_THAT(textsIn([panel() contentView]), ElementsAre("该菜单栏项目已经退出。"));
}

// The fields of both events, in their order.
std::vector<std::pair<std::uint32_t, std::int64_t>> fieldsFor(pid_t pid, std::uint32_t window) {
    return {{40, pid}, {91, window}, {92, window}, {51, window}, {1, 1}};
}

TEST_F(RoadOfUseTest, ARightClickRevealsTheIconAndClicksIt) {
    openRow();
    world().journal.clear();
    click(item("剪贴板"), NSEventTypeRightMouseDown, NSEventTypeRightMouseUp);
    EXPECT_FALSE(panelIsVisible());
    EXPECT_TRUE(runUntil([] { return world().postedEvents.size() == 2; }));

    // The item lay at 1364 - 3010; it comes back to 4 points inside the screen's left edge, or to
    // its home; without anything known of its home, the divider is shortened in full.
    const NSRect frame = *menuBarFrame(firstWindow);
    EXPECT_THAT(frame.origin.x, Ge(2));
    const PostedEvent down{.pid = firstPid,
                           .type = 1,
                           .x = NSMidX(frame),
                           .y = NSMidY(frame),
                           .button = 0,
                           .fields = fieldsFor(firstPid, firstWindow)};
    PostedEvent up = down;
    up.type = 2;
    EXPECT_THAT(world().postedEvents, ElementsAre(down, up));
    EXPECT_THAT(recorded("CGEventSourceCreate"), ElementsAre("CGEventSourceCreate -1"));
    EXPECT_THAT(messagesOf("private-activation"),
                ElementsAre("Posted a PID-scoped click to window 1001"));
    EXPECT_THAT(messagesOf("status-bar"),
                Contains("Temporarily revealed and activated window 1001"));
    EXPECT_THAT(recorded("NSStatusBarButton PelistraV3.Control setToolTip"),
                Contains("NSStatusBarButton PelistraV3.Control setToolTip "
                         "\"点击：重新折叠临时显示的图标\""));
    EXPECT_THAT(recorded("NSStatusBarButton PelistraV3.Control setImage").back(),
                HasSubstr("chevron.right"));

    clickArrow();
    EXPECT_EQ(dividerLength(), collapsedLength);
    EXPECT_THAT(recorded("NSStatusBarButton PelistraV3.Control setToolTip").back(),
                HasSubstr("左键：折叠或打开第二行"));
}

TEST_F(RoadOfUseTest, AnEventThatCannotBeMadeReopensTheRowWithAMessage) {
    openRow();
    world().failingEventTypes = {2};
    click(item("剪贴板"), NSEventTypeRightMouseDown, NSEventTypeRightMouseUp);
    EXPECT_TRUE(runUntil([] { return panelIsVisible(); }));
    EXPECT_THAT(world().postedEvents, IsEmpty());
    EXPECT_EQ(dividerLength(), collapsedLength);
    EXPECT_THAT(textsIn([panel() contentView]),
                ElementsAre("目标图标已显示，但没有响应定向点击。"));
    // The event that had been made was released, and so was the source.
    EXPECT_EQ(liveCounts().coreObjects, 0U);
}

TEST_F(RoadOfUseTest, AnOutsideClickClosesTheRow) {
    openRow();
    EXPECT_EQ(liveCounts().monitors, 1U);
    clickElsewhere(NSEventTypeLeftMouseUp);
    runFor(0.02);
    EXPECT_TRUE(panelIsVisible());
    clickElsewhere(NSEventTypeRightMouseDown);
    EXPECT_TRUE(runUntil([] { return !panelIsVisible(); }));
    EXPECT_EQ(liveCounts().monitors, 0U);
}

TEST_F(RoadOfUseTest, ARefusedMonitorLeavesTheRowUsable) {
    world().refusesMonitors = true;
    openRow();
    EXPECT_EQ(liveCounts().monitors, 0U);
    clickArrow();
    EXPECT_FALSE(panelIsVisible());
}

TEST_F(RoadOfUseTest, TheArrangeButtonExpands) {
    openRow();
    click(item("展开原菜单栏图标并重新整理"), NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    EXPECT_EQ(dividerLength(), 14);
    EXPECT_FALSE(panelIsVisible());
}

TEST_F(RoadOfUseTest, PermissionRefusedThenGranted) {
    openRow();
    click(item("允许屏幕录制"), NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    EXPECT_TRUE(runUntil([] { return !textsIn([panel() contentView]).empty(); }));
    EXPECT_THAT(textsIn([panel() contentView]),
                ElementsAre("允许屏幕录制后，请重新启动 Pelistra，即可显示菜单栏原图标。"));
    EXPECT_THAT(recorded("CGWindowListCreateImage"), IsEmpty());

    world().captureRequestGrants = true;
    click(item("允许屏幕录制"), NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    EXPECT_THAT(recorded("CGWindowListCreateImage"),
                ElementsAre("CGWindowListCreateImageFromArray CGRectNull 1001 9",
                            "CGWindowListCreateImageFromArray CGRectNull 1002 9"));
    // A picture's size in points is its size in pixels.
    EXPECT_THAT(recorded("NSImage initWithCGImage"),
                ElementsAre("NSImage initWithCGImage 60x48 {60, 48}",
                            "NSImage initWithCGImage 60x48 {60, 48}"));
    EXPECT_TRUE(runUntil([] { return item("允许屏幕录制") == nil; }));
    takePicture(panel(), "second-row-with-pictures");
    EXPECT_EQ(liveCounts().coreObjects, 0U);
}

TEST_F(RoadOfUseTest, PicturesAreMissingWhereTheSystemGivesNone) {
    world().captureGranted = true;
    world().captureFunctionExists = false;
    openRow();
    EXPECT_THAT(recorded("dlsym RTLD_DEFAULT"),
                Contains("dlsym RTLD_DEFAULT CGWindowListCreateImageFromArray"));
    EXPECT_THAT(recorded("NSImage initWithCGImage"), IsEmpty());
    EXPECT_NE(item("剪贴板"), nil);
}

TEST_F(RoadOfUseTest, TheListIsRefreshedEveryTwoSecondsWhileCollapsed) {
    collapse();
    EXPECT_THAT(recorded("NSRunLoop"), ElementsAre("NSRunLoop addTimer 2 NSRunLoopCommonModes"));
    EXPECT_EQ(liveCounts().timers, 1U);
    world().journal.clear();
    EXPECT_TRUE(runUntil([] { return !recorded("SLSGetWindowCount").empty(); }));
    EXPECT_THAT(recorded("SLSGetWindowCount"), ElementsAre("SLSGetWindowCount 77 0 0"));
    clickArrow(true);
    EXPECT_EQ(liveCounts().timers, 0U);
}

TEST_F(RoadOfUseTest, ScreenChangesRecomputeTheLengthAndMoveTheRow) {
    openRow();
    world().screens = {
        {.frame = NSMakeRect(0, 0, 2560, 1440), .visibleFrame = NSMakeRect(0, 0, 2560, 1416)}};
    tellScreenChange();
    EXPECT_TRUE(runUntil([] { return dividerLength() == 5120; }));
    EXPECT_TRUE(runUntil([] { return NSMaxX([panel() frame]) == 2560 - 8; }));
}

TEST_F(RoadOfUseTest, AWrongOrderIsRefused) {
    fillMenuBar();
    world().dividerIsRightOfControl = true;
    launch();
    clickArrow();
    EXPECT_EQ(dividerLength(), 14);
    EXPECT_THAT(messagesOf("status-bar"),
                ElementsAre("Expanded hidden section",
                            "Status order dividerX=1498.000000 controlX=1474.000000 valid=false",
                            "Pelistra status items have an invalid saved order",
                            "Refusing to collapse because divider is not left of control",
                            "Expanded hidden section"));
    EXPECT_EQ(world().log.back().type, OS_LOG_TYPE_INFO);
    EXPECT_EQ(world().log[world().log.size() - 2].type, OS_LOG_TYPE_ERROR);
}

TEST_F(RoadOfUseTest, WithoutWindowListNothingCollapses) {
    fillMenuBar();
    world().windowListIsNull = true;
    launch();
    clickArrow();
    EXPECT_EQ(dividerLength(), 14);
    EXPECT_THAT(messagesOf("status-bar"), Contains("Status item windows are not ready"));
}

TEST_F(RoadOfUseTest, WithoutButtonsNothingHappens) {
    world().statusItemsHaveButtons = false;
    fillMenuBar();
    launch();
    EXPECT_THAT(recorded("NSStatusBarButton"), IsEmpty());
    EXPECT_EQ(dividerLength(), 14);
    EXPECT_EQ(liveCounts().statusItems, 2U);
}

TEST_F(RoadOfUseTest, WithoutScreensTheRowDoesNotOpen) {
    collapse();
    world().screens.clear();
    tellScreenChange();
    EXPECT_TRUE(runUntil([] { return dividerLength() == 3456; }));
    clickArrow();
    EXPECT_FALSE(panelIsVisible());
    world().screens = {
        {.frame = NSMakeRect(0, 0, 1512, 982), .visibleFrame = NSMakeRect(0, 0, 1512, 958)}};
    layOutMenuBar();
}

TEST_F(RoadOfUseTest, TheSwitchCollapsesAtStart) {
    setArguments({"--start-collapsed", "--verify-section-layout"});
    fillMenuBar();
    launch();
    EXPECT_EQ(dividerLength(), collapsedLength);
}

TEST_F(RoadOfUseTest, TheSelfTestMeasuresTheDividersWindow) {
    setArguments({"--verify-section-layout"});
    fillMenuBar();
    launch();
    EXPECT_TRUE(runUntil([] {
        return messagesOf("status-bar").back() == "Expanded hidden section" &&
               messagesOf("status-bar").size() > 3;
    }));
    EXPECT_THAT(messagesOf("status-bar"),
                Contains("Verification collapsed dividerWidth=3024.0 pointerUnchanged=true"));
}

class MissingSymbolTest : public RoadOfUseTest,
                          public ::testing::WithParamInterface<std::size_t> {};

TEST_P(MissingSymbolTest, StopsTheSearchAndDisablesDiscovery) {
    const std::vector<std::string> symbols = {"SLSMainConnectionID", "SLSGetWindowCount",
                                              "SLSGetProcessMenuBarWindowList",
                                              "SLSGetScreenRectForWindow"};
    world().missingSymbols = {symbols[GetParam()]};
    fillMenuBar();
    launch();
    std::vector<std::string> expected;
    for (std::size_t i = 0; i <= GetParam(); ++i) {
        expected.push_back("dlsym handle " + symbols[i]);
    }
    EXPECT_EQ(recorded("dlsym handle"), expected);
    EXPECT_THAT(recorded("dlclose"), ElementsAre("dlclose handle"));
    EXPECT_EQ(liveCounts().openLibraries, 0U);
    EXPECT_THAT(world().log,
                Contains(LogLine{.subsystem = "com.pelistra.app",
                                 .category = "private-menu-bar",
                                 .type = OS_LOG_TYPE_ERROR,
                                 .message = "Required SkyLight symbols are unavailable; "
                                            "second-row discovery is disabled"}));
    clickArrow();
    waitForLatch();
    clickArrow();
    EXPECT_THAT(textsIn([panel() contentView]),
                ElementsAre("当前系统不支持", "当前 macOS 版本不支持第二行菜单栏读取。"));
}

INSTANTIATE_TEST_SUITE_P(EverySymbol, MissingSymbolTest, ::testing::Range<std::size_t>(0, 4));

TEST_F(RoadOfUseTest, WithoutTheLibraryNothingIsResolved) {
    world().skyLightExists = false;
    launch();
    EXPECT_THAT(recorded("dlopen"),
                ElementsAre("dlopen /System/Library/PrivateFrameworks/SkyLight.framework/SkyLight "
                            "5"));
    EXPECT_THAT(recorded("dlsym"), IsEmpty());
    EXPECT_THAT(recorded("dlclose"), IsEmpty());
}

// GNUstep keeps windows of its own, for tool tips and as caches of pictures.
std::vector<std::string> ourWindows() {
    std::vector<std::string> titles;
    @autoreleasepool {
        for (NSWindow* window in [NSApp windows]) {
            if ([window class] == [NSWindow class] || [window class] == [NSPanel class]) {
                titles.emplace_back([[window title] UTF8String]);
            }
        }
    }
    return titles;
}

TEST_F(RoadOfUseTest, NothingIsLeftBehindAtTheEnd) {
    const auto windows = ourWindows();
    EXPECT_EQ(liveCounts(), Counts{});
    @autoreleasepool {
        openRow();
        rightClickArrow();
        click(item("展开原菜单栏图标并重新整理"), NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
        waitForLatch();
        clickArrow();
        waitForLatch();
        clickArrow();
        EXPECT_TRUE(panelIsVisible());
        const Counts during = liveCounts();
        EXPECT_EQ(during.statusItems, 2U);
        EXPECT_EQ(during.monitors, 1U);
        EXPECT_EQ(during.timers, 1U);
        EXPECT_THAT(during.observers, Ge(3U));
        // Both items' windows, the panel and the settings window.
        EXPECT_THAT(ourWindows(), SizeIs(windows.size() + 4));
        quit();
        // What was put off for a fixed time is over after that.
        waitForLatch();
    }
    Counts after = liveCounts();
    // The library stays open as long as the process, like the one bridge that opened it.
    after.openLibraries = 0;
    EXPECT_EQ(after, Counts{});
    EXPECT_EQ(ourWindows(), windows);
}

TEST_F(RoadOfUseTest, TenOpeningsLeaveNoMoreThanOne) {
    fillMenuBar();
    launch();
    const auto openAndCloseAll = [] {
        @autoreleasepool {
            clickArrow();
            waitForLatch();
            clickArrow();
            EXPECT_TRUE(panelIsVisible());
            waitForLatch();
            rightClickArrow();
            NSView* settings = [windowTitled(@"Pelistra Settings") contentView];
            click(find(settings, [NSButton class], "重新查看使用引导"), NSEventTypeLeftMouseDown,
                  NSEventTypeLeftMouseUp);
            EXPECT_TRUE(
                runUntil([] { return [windowTitled(@"Welcome to Pelistra") isVisible] == YES; }));
            [windowTitled(@"Welcome to Pelistra") close];
            [windowTitled(@"Pelistra Settings") close];
            clickArrow(true);
            waitForLatch();
        }
    };
    openAndCloseAll();
    const Counts once = liveCounts();
    EXPECT_GT(once.views, 20U);
    EXPECT_GE(once.windowControllers, 1U);
    for (int turn = 0; turn < 10; ++turn) {
        openAndCloseAll();
    }
    EXPECT_EQ(liveCounts(), once);
}

} // namespace
} // namespace pelistra::macos

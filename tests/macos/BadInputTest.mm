#include "platform/macos/PelistraApp.h"
#include "tests/macos/LaunchedApplication.h"
#include "tests/macos/standins/MenuBar.h"

#include <gmock/gmock.h>

#include <unistd.h>

// What the system refuses, lacks or says wrongly, with the core between the front end and the
// stand-in menu bar.
namespace pelistra::macos {
namespace {

using namespace pelistra::testing::standins;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr double lengthWithoutScreens = 3456;

class BadInputTest : public LaunchedApplication {
  protected:
    static void rightClick(const std::string& tooltip) {
        NSView* clicked = item(tooltip);
        ASSERT_NE(clicked, nil);
        click(clicked, NSEventTypeRightMouseDown, NSEventTypeRightMouseUp);
    }

    // Waits until the open row says that and nothing else.
    static void expectMessage(const std::string& message) {
        EXPECT_TRUE(runUntil([&message] {
            return panelIsVisible() &&
                   textsIn([panel() contentView]) == std::vector<std::string>{message};
        })) << ::testing::PrintToString(textsIn([panel() contentView]));
    }

    static NSDictionary* ownWindow(NSString* name, NSDictionary* bounds) {
        return @{
            @"kCGWindowName" : name,
            @"kCGWindowLayer" : @25,
            @"kCGWindowOwnerPID" : @(getpid()),
            @"kCGWindowBounds" : bounds
        };
    }
};

TEST_F(BadInputTest, WithoutSkyLightTheSectionCollapsesAndTheRowSaysWhy) {
    world().skyLightExists = false;
    fillMenuBar();
    launch();
    EXPECT_THAT(world().log,
                Contains(LogLine{.subsystem = "com.pelistra.app",
                                 .category = "private-menu-bar",
                                 .type = OS_LOG_TYPE_ERROR,
                                 .message = "Required SkyLight symbols are unavailable; "
                                            "second-row discovery is disabled"}));
    clickArrow();
    EXPECT_EQ(dividerLength(), collapsedLength);
    waitForLatch();
    clickArrow();
    EXPECT_TRUE(panelIsVisible());
    EXPECT_THAT(textsIn([panel() contentView]),
                ElementsAre("当前系统不支持", "当前 macOS 版本不支持第二行菜单栏读取。"));
    EXPECT_THAT(messagesOf("private-menu-bar"), SizeIs(1));
    EXPECT_EQ(liveCounts().openLibraries, 0U);
}

TEST_F(BadInputTest, PermissionThatComesLaterGivesPicturesAtTheNextCollapse) {
    openRow();
    EXPECT_NE(item("允许屏幕录制，以显示菜单栏原图标"), nil);
    EXPECT_THAT(recorded("CGWindowListCreateImage"), IsEmpty());
    world().captureGranted = true;
    world().uncapturableWindows = {firstWindow};
    clickArrow(true);
    clickArrow();
    EXPECT_THAT(recorded("CGWindowListCreateImage"), SizeIs(2));
    EXPECT_THAT(recorded("NSImage initWithCGImage"), SizeIs(1));
    EXPECT_TRUE(runUntil([] { return item("允许屏幕录制，以显示菜单栏原图标") == nil; }));
}

TEST_F(BadInputTest, PermissionThatIsWithdrawnLeavesApplicationIcons) {
    world().captureGranted = true;
    openRow();
    EXPECT_EQ(item("允许屏幕录制，以显示菜单栏原图标"), nil);
    EXPECT_THAT(recorded("NSImage initWithCGImage"), SizeIs(2));
    clickArrow();
    waitForLatch();
    world().captureGranted = false;
    world().journal.clear();
    clickArrow(true);
    clickArrow();
    waitForLatch();
    clickArrow();
    EXPECT_TRUE(runUntil([] { return item("允许屏幕录制，以显示菜单栏原图标") != nil; }));
    EXPECT_NE(item("剪贴板"), nil);
    EXPECT_NE(item("音量"), nil);
    EXPECT_THAT(recorded("CGWindowListCreateImage"), IsEmpty());
}

TEST_F(BadInputTest, ItemsWithoutButtonsStillCollapse) {
    world().statusItemsHaveButtons = false;
    setArguments({"--start-collapsed"});
    fillMenuBar();
    launch();
    EXPECT_EQ(dividerLength(), collapsedLength);
    EXPECT_THAT(recorded("NSStatusBarButton"), IsEmpty());
}

TEST_F(BadInputTest, TheSelfTestWithoutButtonsMeasuresNothing) {
    world().statusItemsHaveButtons = false;
    setArguments({"--verify-section-layout"});
    fillMenuBar();
    launch();
    EXPECT_TRUE(runUntil([] {
        const auto lines = messagesOf("status-bar");
        return std::ranges::count(lines, "Expanded hidden section") == 2;
    }));
    EXPECT_THAT(messagesOf("status-bar"),
                Contains("Verification collapsed dividerWidth=-1.0 pointerUnchanged=true"));
}

TEST_F(BadInputTest, TheSelfTestSeesAPointerThatMoved) {
    setArguments({"--verify-section-layout"});
    fillMenuBar();
    launch();
    world().pointer.y += 0.5;
    const std::string line = "Verification collapsed dividerWidth=3024.0 pointerUnchanged=false";
    EXPECT_TRUE(
        runUntil([&line] { return std::ranges::count(messagesOf("status-bar"), line) == 1; }));
}

TEST_F(BadInputTest, WithoutScreensFromTheStartTheSectionCollapses) {
    setArguments({"--start-collapsed"});
    fillMenuBar();
    world().screens.clear();
    launch();
    EXPECT_EQ(dividerLength(), lengthWithoutScreens);
    EXPECT_EQ(messagesOf("status-bar").back(), "Collapsed divider to length 3456.000000");
    clickArrow();
    EXPECT_FALSE(panelIsVisible());
}

TEST_F(BadInputTest, WithoutScreensNothingIsRevealed) {
    openRow();
    const auto screens = world().screens;
    NSView* clicked = item("剪贴板");
    world().screens.clear();
    click(clicked, NSEventTypeRightMouseDown, NSEventTypeRightMouseUp);
    EXPECT_FALSE(panelIsVisible());
    EXPECT_EQ(dividerLength(), lengthWithoutScreens);
    world().screens = screens;
    clickArrow();
    expectMessage("无法读取该图标的当前位置。");
}

TEST_F(BadInputTest, AWindowThatIsGoneIsSaid) {
    openRow();
    NSView* clicked = item("剪贴板");
    world().hiddenItems.erase(world().hiddenItems.begin());
    layOutMenuBar();
    click(clicked, NSEventTypeRightMouseDown, NSEventTypeRightMouseUp);
    expectMessage("无法读取该图标的当前位置。");
    EXPECT_EQ(dividerLength(), collapsedLength);
}

TEST_F(BadInputTest, AnApplicationThatIsGoneIsNotClicked) {
    openRow();
    world().applications.erase(firstPid);
    rightClick("剪贴板");
    expectMessage("目标图标已显示，但没有响应定向点击。");
    EXPECT_THAT(recorded("CGEventSourceCreate"), IsEmpty());
    EXPECT_THAT(world().postedEvents, IsEmpty());
    EXPECT_EQ(dividerLength(), collapsedLength);
}

TEST_F(BadInputTest, AnApplicationThatIsGoneLeavesTheRow) {
    openRow();
    world().applications.erase(firstPid);
    clickArrow();
    waitForLatch();
    clickArrow();
    EXPECT_TRUE(runUntil([] { return item("剪贴板") == nil; }));
    EXPECT_NE(item("音量"), nil);
}

TEST_F(BadInputTest, WithoutAnEventSourceNothingIsPosted) {
    openRow();
    world().eventSourcesFail = true;
    rightClick("音量");
    expectMessage("目标图标已显示，但没有响应定向点击。");
    EXPECT_THAT(world().postedEvents, IsEmpty());
    EXPECT_EQ(liveCounts().coreObjects, 0U);
}

TEST_F(BadInputTest, APointerThatMovesMeanwhileIsAFault) {
    openRow();
    world().pointerMovesWithPosts = true;
    rightClick("剪贴板");
    expectMessage("目标图标已显示，但没有响应定向点击。");
    EXPECT_THAT(world().postedEvents, SizeIs(2));
    EXPECT_THAT(world().log,
                Contains(LogLine{.subsystem = "com.pelistra.app",
                                 .category = "private-activation",
                                 .type = OS_LOG_TYPE_FAULT,
                                 .message = "Targeted activation unexpectedly changed pointer "
                                            "position; disabling this result"}));
    EXPECT_THAT(messagesOf("private-activation"), SizeIs(1));

    // Nothing is remembered: the next one is tried as usual.
    world().pointerMovesWithPosts = false;
    rightClick("剪贴板");
    EXPECT_TRUE(runUntil([] { return world().postedEvents.size() == 4; }));
    EXPECT_THAT(messagesOf("private-activation"),
                Contains("Posted a PID-scoped click to window 1001"));
}

TEST_F(BadInputTest, AnItemBehindTheHousingIsRevealedInFullAndThenGivenUp) {
    // The housing covers all but a margin at either side, so that no icon is ever clear of it.
    world().screens[0].auxiliaryTopLeftArea = NSMakeRect(0, 950, 10, 32);
    world().screens[0].auxiliaryTopRightArea = NSMakeRect(1502, 950, 10, 32);
    openRow();
    world().journal.clear();
    rightClick("剪贴板");
    expectMessage("该图标完全展开后仍位于刘海或可见区域之外。");
    EXPECT_THAT(recorded("NSStatusItem PelistraV3.Divider setLength 14"), SizeIs(1));
    EXPECT_THAT(recorded("dispatch_after 220000000"), SizeIs(2));
    EXPECT_THAT(world().postedEvents, IsEmpty());
    EXPECT_EQ(dividerLength(), collapsedLength);
}

class SecondCopyTest : public LaunchedApplication {
  protected:
    void SetUp() override {
        LaunchedApplication::SetUp();
        world().bundleIdentifier = "com.pelistra.app";
        world().applications[12] = {.name = "P", .bundleIdentifier = "com.pelistra.app"};
    }

    void finishLaunching() {
        [app_.get() applicationWillFinishLaunching:none_];
        [app_.get() applicationDidFinishLaunching:none_];
    }

    Owned<PelistraApp*> app_ = Owned<PelistraApp*>::adopt([[PelistraApp alloc] init]);
    NSNotification* none_ = nil;
};

TEST_F(SecondCopyTest, SaysSoInFrontAndEndsWithoutTouchingTheMenuBar) {
    finishLaunching();
    EXPECT_THAT(world().journal,
                ElementsAre("NSApplication activateIgnoringOtherApps: YES",
                            "NSAlert runModal \"Pelistra 已在运行\" \"两份 Pelistra "
                            "会争用菜单栏的同一位置。请先退出正在运行的那一份，再打开这一份。\"",
                            "NSApplication terminate:"));
    EXPECT_EQ(liveCounts().statusItems, 0U);
    EXPECT_THAT(world().log, IsEmpty());
}

TEST_F(SecondCopyTest, AnswersNothingWhileItSaysSo) {
    [app_.get() applicationWillFinishLaunching:none_];
    EXPECT_FALSE([app_.get() applicationShouldHandleReopen:NSApp hasVisibleWindows:NO]);
    [app_.get() showSettings:nil];
    EXPECT_EQ(windowTitled(@"Pelistra Settings"), nil);
}

TEST_F(BadInputTest, BoundsThatAreNoNumbersAreNoFrame) {
    world().otherWindows = {
        ownWindow(
            @"PelistraV3.Control",
            @{@"X" : @"1488",
              @"Y" : @0}),
    };
    fillMenuBar();
    launch();
    EXPECT_THAT(messagesOf("status-bar"), Contains("Status item windows are not ready"));
    clickArrow();
    EXPECT_EQ(dividerLength(), 14);
}

TEST_F(BadInputTest, MissingBoundsCountAsZero) {
    world().otherWindows = { ownWindow(@"PelistraV3.Divider", @{@"Width" : @14}) };
    fillMenuBar();
    launch();
    EXPECT_THAT(messagesOf("status-bar"),
                Contains("Status order dividerX=0.000000 controlX=1488.000000 valid=true"));
}

} // namespace
} // namespace pelistra::macos

#include "tests/macos/LaunchedApplication.h"
#include "tests/macos/standins/MenuBar.h"

#include <gmock/gmock.h>

// What start-up asks of AppKit, character for character and in its order.
namespace pelistra::macos {
namespace {

using namespace pelistra::testing::standins;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;

class StartTest : public LaunchedApplication {
  protected:
    static std::vector<std::string> ofItems() {
        std::vector<std::string> lines;
        for (const std::string& line : world().journal) {
            if (line.starts_with("NSStatus")) {
                lines.push_back(line);
            }
        }
        return lines;
    }
};

TEST_F(StartTest, BecomesAnAccessoryFirst) {
    launch();
    EXPECT_EQ(world().journal.front(), "NSApplication setActivationPolicy 1");
}

TEST_F(StartTest, SetsTheStatusItemsUpInOrder) {
    launch();
    const std::string toolTip =
        "\"左键：折叠或打开第二行；按住 Option 点击：展开整理；右键：设置\"";
    EXPECT_THAT(
        ofItems(),
        ElementsAre("NSStatusBar statusItemWithLength 0",
                    "NSStatusItem #0 setAutosaveName \"PelistraV3.Control\"",
                    "NSStatusBar statusItemWithLength 0",
                    "NSStatusItem #1 setAutosaveName \"PelistraV3.Divider\"",
                    "NSStatusItem PelistraV3.Control setVisible YES",
                    "NSStatusItem PelistraV3.Divider setVisible YES",
                    "NSStatusItem PelistraV3.Control setLength -2",
                    "NSStatusBarButton PelistraV3.Control setImage chevron.right template=YES "
                    "\"隐藏左侧图标\"",
                    "NSStatusBarButton PelistraV3.Control setTarget object",
                    "NSStatusBarButton PelistraV3.Control setAction perform:",
                    "NSStatusBarButton PelistraV3.Control sendActionOn 0x14",
                    "NSStatusBarButton PelistraV3.Control setToolTip " + toolTip,
                    "NSStatusItem PelistraV3.Divider setLength 14",
                    "NSStatusBarButton PelistraV3.Divider setImage drawn template=YES "
                    "\"Pelistra 隐藏区分隔线\"",
                    "NSStatusBarButton PelistraV3.Divider setTarget nil",
                    "NSStatusBarButton PelistraV3.Divider setAction null",
                    "NSStatusBarButton PelistraV3.Divider setToolTip \"按住 Command "
                    "拖动图标：放到此线左侧会被 Pelistra 折叠\"",
                    "NSStatusBarButton PelistraV3.Control setToolTip " + toolTip,
                    "NSStatusBarButton PelistraV3.Divider setImage drawn template=YES "
                    "\"Pelistra 隐藏区分隔线\"",
                    "NSStatusBarButton PelistraV3.Control setImage chevron.right template=YES "
                    "\"隐藏左侧图标\"",
                    "NSStatusItem PelistraV3.Divider setLength 14"));
}

TEST_F(StartTest, WritesTheFirstPositionsOnce) {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    [defaults setBool:NO forKey:@"NSStatusItem Visible PelistraV3.Divider"];
    [defaults setObject:@7 forKey:@"NSStatusItem Preferred Position PelistraV3.Divider"];
    launch();
    EXPECT_EQ(
        [[defaults objectForKey:@"NSStatusItem Preferred Position PelistraV3.Control"] doubleValue],
        0);
    EXPECT_NE([defaults objectForKey:@"NSStatusItem Preferred Position PelistraV3.Control"], nil);
    EXPECT_EQ(
        [[defaults objectForKey:@"NSStatusItem Preferred Position PelistraV3.Divider"] doubleValue],
        7);
    EXPECT_TRUE([defaults boolForKey:@"NSStatusItem Visible PelistraV3.Control"]);
    EXPECT_TRUE([defaults boolForKey:@"NSStatusItem Visible PelistraV3.Divider"]);
}

TEST_F(StartTest, TheDividersPictureIsAThinBar) {
    launch();
    NSImage* image = [[statusItem(@"PelistraV3.Divider") button] image];
    EXPECT_TRUE(NSEqualSizes([image size], NSMakeSize(12, 18)));
    NSImage* canvas = [[[NSImage alloc] initWithSize:NSMakeSize(12, 18)] autorelease];
    [canvas lockFocus];
    [[NSColor whiteColor] set];
    NSRectFill(NSMakeRect(0, 0, 12, 18));
    [[[image representations] firstObject] draw];
    NSBitmapImageRep* bitmap =
        [[[NSBitmapImageRep alloc] initWithFocusedViewRect:NSMakeRect(0, 0, 12, 18)] autorelease];
    [canvas unlockFocus];
    const auto darkness = [bitmap](NSInteger x, NSInteger y) {
        NSColor* color = [[bitmap colorAtX:x
                                         y:y] colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
        return 1 - [color redComponent];
    };
    EXPECT_GT(darkness(5, 9), 0.5);
    EXPECT_GT(darkness(6, 9), 0.5);
    EXPECT_LT(darkness(3, 9), 0.1);
    EXPECT_LT(darkness(8, 9), 0.1);
    EXPECT_LT(darkness(5, 0), 0.1);
    EXPECT_LT(darkness(5, 17), 0.1);
}

TEST_F(StartTest, ObservesScreensByTheirNotification) {
    launch();
    EXPECT_THAT(recorded("NSNotificationCenter"),
                ElementsAre("NSNotificationCenter addObserver "
                            "\"NSApplicationDidChangeScreenParametersNotification\" queue=main"));
    quit();
    EXPECT_THAT(recorded("NSNotificationCenter removeObserver"),
                ElementsAre("NSNotificationCenter removeObserver"));
}

TEST_F(StartTest, LogsUnderTheSubsystem) {
    launch();
    EXPECT_THAT(world().log, Contains(LogLine{.subsystem = "com.pelistra.app",
                                              .category = "status-bar",
                                              .type = OS_LOG_TYPE_INFO,
                                              .message = "Expanded hidden section"}));
}

TEST_F(StartTest, TheDividerDoesNotAnswerAPress) {
    launch();
    EXPECT_EQ([[[statusItem(@"PelistraV3.Divider") button] cell] highlightsBy], NSNoCellMask);
    EXPECT_NE([[[statusItem(@"PelistraV3.Control") button] cell] highlightsBy], NSNoCellMask);
}

TEST_F(StartTest, ItemsThatTheControlCentreOwnsAreFoundByTheirOwnWindows) {
    world().controlCentre = 400;
    fillMenuBar();
    launch();
    EXPECT_THAT(messagesOf("status-bar"),
                Contains("Status order dividerX=1424.000000 controlX=1488.000000 valid=true"));
    EXPECT_THAT(messagesOf("window-list"), ::testing::SizeIs(1));
    clickArrow();
    EXPECT_EQ(dividerLength(), collapsedLength);
}

TEST_F(StartTest, MalformedWindowsAreNotOurs) {
    // Another process's window of that name, and entries of wrong types.
    world().otherWindows = {
        @{
            @"kCGWindowName" : @"PelistraV3.Divider",
            @"kCGWindowLayer" : @25,
            @"kCGWindowOwnerPID" : @1,
            @"kCGWindowNumber" : @5
        },
        @{@"kCGWindowName" : @7, @"kCGWindowLayer" : @"25", @"kCGWindowOwnerPID" : @"x"},
        @{},
    };
    fillMenuBar();
    launch();
    EXPECT_THAT(messagesOf("status-bar"),
                Contains("Status order dividerX=1424.000000 controlX=1488.000000 valid=true"));
}

} // namespace
} // namespace pelistra::macos

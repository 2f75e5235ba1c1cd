#include "platform/macos/MacPlatform.h"
#include "platform/macos/NotificationObserver.h"
#include "platform/macos/OtherCopy.h"
#include "platform/macos/PelistraApp.h"
#include "tests/macos/standins/MenuBar.h"
#include "tests/macos/standins/World.h"

#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <set>
#include <unistd.h>

namespace {

// Who left an object that is gone by now.
std::set<std::string>& leftAndGone() {
    static std::set<std::string> names;
    return names;
}

} // namespace

@interface Left : NSObject {
  @public
    std::string from;
}
@end

@implementation Left
- (void)dealloc {
    leftAndGone().insert(from);
    [super dealloc];
}
@end

namespace pelistra::macos {
namespace {

using namespace pelistra::testing::standins;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::SizeIs;

TEST(DispatchMainQueueTest, RunsBlocksOnTheNextTurnInOrder) {
    DispatchMainQueue queue;
    std::string order;
    queue.async([&order] { order += "a"; });
    queue.async([&order] { order += "b"; });
    EXPECT_EQ(order, "");
    EXPECT_TRUE(runUntil([&order] { return order.size() == 2; }));
    EXPECT_EQ(order, "ab");
}

TEST(DispatchMainQueueTest, ADelayIsNeverCutShort) {
    DispatchMainQueue queue;
    bool ran = false;
    const auto start = std::chrono::steady_clock::now();
    queue.asyncAfter(Seconds(0.05), [&ran] { ran = true; });
    EXPECT_TRUE(runUntil([&ran] { return ran; }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    EXPECT_THAT(recorded("dispatch_after"), ElementsAre("dispatch_after 50000000"));
}

TEST(DispatchMainQueueTest, ATimerEndsWithItsToken) {
    DispatchMainQueue queue;
    int ticks = 0;
    auto token = queue.repeatingTimer(Seconds(0.01), [&ticks] { ++ticks; });
    EXPECT_TRUE(runUntil([&ticks] { return ticks >= 3; }));
    token.reset();
    const int before = ticks;
    runFor(0.05);
    EXPECT_EQ(ticks, before);
    EXPECT_EQ(liveCounts().timers, 0U);
}

// What the run loop calls without an event leaves nothing for the next event to clear away.
TEST(PoolTest, QueueTimersNotificationsAndMonitorsHaveTheirOwn) {
    DispatchMainQueue queue;
    leftAndGone().clear();
    int turns = 0;
    const auto leave = [](const std::string& from) {
        Left* object = [[Left alloc] init];
        object->from = from;
        [object autorelease];
    };
    @autoreleasepool {
        queue.async([&leave] { leave("async"); });
        queue.asyncAfter(Seconds(0), [&leave] { leave("asyncAfter"); });
        const auto timer = queue.repeatingTimer(Seconds(0.001), [&leave] { leave("timer"); });
        const NotificationObserver observer(@"Left", [&leave] { leave("notification"); });
        GlobalEventMonitor monitor;
        const auto clicks =
            monitor.addMonitor(maskOf(EventType::LeftMouseDown), [&leave] { leave("monitor"); });
        // Inside this pool nothing but their own can release what they left.
        while (leftAndGone().size() < 3) {
            [[NSRunLoop mainRunLoop] runMode:NSDefaultRunLoopMode
                                  beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.01]];
            ASSERT_LT(++turns, 1000);
        }
        [[NSNotificationCenter defaultCenter] postNotificationName:@"Left" object:nil];
        clickElsewhere(NSEventTypeLeftMouseDown);
        EXPECT_THAT(leftAndGone(),
                    ElementsAre("async", "asyncAfter", "monitor", "notification", "timer"));
    }
}

TEST(NotificationObserverTest, HandlesOnTheMainThreadUntilItDies) {
    NSString* const name = @"SomethingHasChanged";
    NSNotificationCenter* center = [NSNotificationCenter defaultCenter];
    std::string threads;
    {
        const NotificationObserver observer(
            name, [&threads] { threads += [NSThread isMainThread] ? "main " : "other "; });
        [center postNotificationName:name object:nil];
        [center postNotificationName:name object:NSApp];
        runFor(0.02);
        EXPECT_EQ(threads, "main main ");
    }
    [center postNotificationName:name object:nil];
    runFor(0.02);
    EXPECT_EQ(threads, "main main ");
}

TEST(UnifiedLogTest, LogsPublicLinesByLevel) {
    UnifiedLog log;
    log.write("s", "c", LogLevel::Info, "100% done");
    log.write("s", "c", LogLevel::Error, "two\nlines");
    log.write("s", "d", LogLevel::Fault, "中文");
    EXPECT_THAT(world().log, ElementsAre(LogLine{"s", "c", OS_LOG_TYPE_INFO, "100% done"},
                                         LogLine{"s", "c", OS_LOG_TYPE_ERROR, "two lines"},
                                         LogLine{"s", "d", OS_LOG_TYPE_FAULT, "中文"}));
    EXPECT_THAT(recorded("os_log_create"), ElementsAre("os_log_create s c", "os_log_create s d"));
}

TEST(StandardUserDefaultsTest, KeepsWhatIsWritten) {
    StandardUserDefaults defaults;
    EXPECT_FALSE(defaults.hasObject("absent"));
    EXPECT_FALSE(defaults.boolForKey("absent"));
    defaults.setBool(true, "flag");
    defaults.setNumber(1.5, "number");
    EXPECT_TRUE(defaults.boolForKey("flag"));
    EXPECT_EQ([[[NSUserDefaults standardUserDefaults] objectForKey:@"number"] doubleValue], 1.5);
}

TEST(AppKitScreensTest, ReportsTheAreasBesideAHousing) {
    world().screens[0].auxiliaryTopLeftArea = NSMakeRect(0, 950, 650, 32);
    world().screens[0].auxiliaryTopRightArea = NSMakeRect(862, 950, 650, 32);
    world().screens.push_back(
        {.frame = NSMakeRect(1512, 0, 100, 100), .visibleFrame = NSMakeRect(1512, 0, 100, 100)});
    const auto screens = AppKitScreens().screens();
    ASSERT_THAT(screens, SizeIs(2));
    EXPECT_THAT(screens[0].auxiliaryTopRightArea,
                Optional(makeRect<ScreenSpace>(862, 950, 650, 32)));
    EXPECT_THAT(screens[0].auxiliaryTopLeftArea, Optional(makeRect<ScreenSpace>(0, 950, 650, 32)));
    EXPECT_EQ(screens[0].visibleFrame, makeRect<ScreenSpace>(0, 70, 1512, 888));
    EXPECT_EQ(screens[1].auxiliaryTopLeftArea, std::nullopt);
    world().screens.clear();
    EXPECT_EQ(AppKitScreens().main(), std::nullopt);
}

TEST(AppKitStatusBarTest, AButtonWithoutAWindowIsNowhere) {
    AppKitStatusBar bar;
    const auto item = bar.statusItem(24);
    item->setAutosaveName("一");
    ASSERT_NE(item->button(), nullptr);
    EXPECT_NE(item->button()->windowFrame(), std::nullopt);
    EXPECT_NE(item->button()->frameOnScreen(), std::nullopt);
    [[statusItem(@"一") button] removeFromSuperview];
    EXPECT_EQ(item->button()->windowFrame(), std::nullopt);
    EXPECT_EQ(item->button()->frameOnScreen(), std::nullopt);
}

TEST(AppKitImagesTest, AnUnknownSymbolIsNull) {
    AppKitImages images;
    EXPECT_EQ(images.systemSymbol("no.such.symbol", "x"), nullptr);
    const auto known = images.systemSymbol("chevron.up", "描述");
    ASSERT_NE(known, nullptr);
    EXPECT_STREQ([[nativeImage(known) accessibilityDescription] UTF8String], "描述");
    const auto drawn = images.drawn({.width = 12, .height = 18},
                                    [](Canvas&, const Canvas::DrawRect&) { return false; });
    EXPECT_EQ(drawn->size(), (Size{.width = 12, .height = 18}));
}

// The list, without items of our own to add.
std::optional<std::vector<WindowInfo>> windowList() {
    UnifiedLog log;
    return CoreGraphicsWindowList([] { return std::vector<WindowInfo>(); }, log).copyWindowInfo();
}

TEST(CoreGraphicsWindowListTest, ReadsWhatHasTheRightType) {
    world().otherWindows = {
        @{
            @"kCGWindowNumber" : @7,
            @"kCGWindowOwnerPID" : @"8",
            @"kCGWindowLayer" : @25,
            @"kCGWindowName" : @9,
            @"kCGWindowOwnerName" : @"名",
            @"kCGWindowBounds" : @{@"X" : @-5.5}
        },
        @{@"kCGWindowBounds" : @"none"},
        @{@"kCGWindowBounds" : @{@"X" : @1, @"Width" : @"3"}},
        @{@"kCGWindowBounds" : @{@"X" : @1, @2 : @3}},
        @{@"kCGWindowLayer" : @25.5, @"kCGWindowOwnerPID" : @0.5},
        @{@"kCGWindowOwnerPID" : @4294967297},
        @{@"kCGWindowLayer" : @25.0, @"kCGWindowOwnerPID" : @-1},
    };
    const auto windows = windowList();
    ASSERT_TRUE(windows.has_value());
    ASSERT_THAT(*windows, SizeIs(7));
    EXPECT_EQ((*windows)[0], (WindowInfo{.number = 7U,
                                         .ownerPid = std::nullopt,
                                         .ownerName = "名",
                                         .name = std::nullopt,
                                         .layer = 25,
                                         .bounds = WindowBounds{.x = -5.5,
                                                                .y = std::nullopt,
                                                                .width = std::nullopt,
                                                                .height = std::nullopt}}));
    EXPECT_EQ((*windows)[1], WindowInfo{});
    // Bounds are numbers under texts, or none.
    EXPECT_EQ((*windows)[2], WindowInfo{});
    EXPECT_EQ((*windows)[3], WindowInfo{});
    // A number that is no such integer is none.
    EXPECT_EQ((*windows)[4], WindowInfo{});
    EXPECT_EQ((*windows)[5], WindowInfo{});
    EXPECT_EQ((*windows)[6].layer, 25);
    EXPECT_EQ((*windows)[6].ownerPid, -1);
}

TEST(CoreGraphicsWindowListTest, AddsOurItemsWhenTheListHasNone) {
    WindowInfo control;
    control.number = 7;
    control.ownerPid = getpid();
    control.layer = 25;
    control.name = "一";
    WindowInfo divider = control;
    divider.number = 8;
    divider.name = "二";
    UnifiedLog log;
    CoreGraphicsWindowList list([&] { return std::vector{control, divider}; }, log);
    // One of the numbers is listed as somebody else's already, and stays theirs alone.
    world().otherWindows = { @{@"kCGWindowNumber" : @8, @"kCGWindowOwnerPID" : @400} };
    WindowInfo withoutNumber = divider;
    withoutNumber.number.reset();
    for (int times = 0; times < 2; ++times) {
        const auto windows = list.copyWindowInfo();
        ASSERT_THAT(windows, Optional(SizeIs(3)));
        EXPECT_EQ((*windows)[0].ownerPid, 400);
        EXPECT_EQ((*windows)[1], control);
        EXPECT_EQ((*windows)[2], withoutNumber);
    }
    EXPECT_THAT(world().log, SizeIs(1));

    // Where the list has one, it is believed.
    world().otherWindows = { @{@"kCGWindowLayer" : @25, @"kCGWindowOwnerPID" : @(getpid())} };
    EXPECT_THAT(list.copyWindowInfo(), Optional(SizeIs(1)));
}

TEST(CoreGraphicsWindowListTest, AnAnswerOfAnotherShapeIsNone) {
    world().otherWindows = { @{@"kCGWindowNumber" : @7} };
    EXPECT_THAT(windowList(), Optional(SizeIs(1)));
    world().otherWindows = { @{@"kCGWindowNumber" : @7}, @{@5 : @7} };
    EXPECT_EQ(windowList(), std::nullopt);
    world().windowListIsNull = true;
    EXPECT_EQ(windowList(), std::nullopt);
}

TEST(CoreGraphicsScreenCaptureTest, SaysWhyThereIsNoPicture) {
    CoreGraphicsScreenCapture capture;
    EXPECT_EQ(std::get<CaptureRefusal>(capture.captureWindow(5, 9)), CaptureRefusal::NoImage);
    EXPECT_THAT(recorded("CFArrayCreate"), ElementsAre("CFArrayCreate 1 no callbacks"));
    world().captureFunctionExists = false;
    EXPECT_EQ(std::get<CaptureRefusal>(capture.captureWindow(5, 9)), CaptureRefusal::NoImage);
    world().arraysFail = true;
    EXPECT_EQ(std::get<CaptureRefusal>(capture.captureWindow(5, 9)), CaptureRefusal::NoWindowArray);
    EXPECT_EQ(liveCounts().coreObjects, 0U);
}

TEST(WorkspaceApplicationsTest, TellsWhatTheSystemTells) {
    world().applications = {{10, {.name = "A"}}, {11, {.name = "B", .hasIcon = false}}};
    WorkspaceApplications applications;
    const auto icon = applications.runningApplication(10)->icon();
    ASSERT_NE(icon, nullptr);
    // An application may change its icon while it runs.
    EXPECT_NE(applications.runningApplication(10)->icon(), icon);
    EXPECT_EQ(applications.runningApplication(11)->icon(), nullptr);
    EXPECT_EQ(applications.runningApplication(12), nullptr);
    EXPECT_EQ(applications.runningApplication(11)->bundleUrl(), std::nullopt);
    EXPECT_THAT(applications.runningApplication(11)->localizedName(), Optional(std::string("B")));
    EXPECT_THAT(applications.processIdentifiers(), ElementsAre(10, 11));
}

TEST(OtherCopyTest, IsAnotherProcessOfTheSameBundle) {
    EXPECT_FALSE(anotherCopyRuns(nil));
    world().applications = {{getpid(), {.name = "P", .bundleIdentifier = "com.pelistra.app"}},
                            {10, {.name = "A", .bundleIdentifier = "test.other"}},
                            {11, {.name = "B"}}};
    EXPECT_FALSE(anotherCopyRuns(@"com.pelistra.app"));
    world().applications[12] = {.name = "P", .bundleIdentifier = "com.pelistra.app"};
    EXPECT_TRUE(anotherCopyRuns(@"com.pelistra.app"));
    world().applications[12].isTerminated = true;
    EXPECT_FALSE(anotherCopyRuns(@"com.pelistra.app"));
}

TEST(MainAppLoginItemTest, TellsTheSystemsWords) {
    MainAppLoginItem item;
    EXPECT_EQ(item.status(), LoginItemStatus::NotRegistered);
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.status(), LoginItemStatus::Enabled);
    world().loginItemRefusal = "不允许";
    EXPECT_THAT(item.unregisterItem(), Optional(std::string("不允许")));
    EXPECT_EQ(item.status(), LoginItemStatus::Enabled);
    world().loginItemStatus = SMAppServiceStatusNotFound;
    EXPECT_EQ(item.status(), LoginItemStatus::NotFound);
}

TEST(MainAppLoginItemTest, AReadOnlyPlaceIsNotRegistered) {
    world().volumeIsReadOnly = true;
    MainAppLoginItem item;
    EXPECT_THAT(item.registerItem(), Optional(::testing::HasSubstr("应用程序")));
    EXPECT_THAT(recorded("SMAppService"), IsEmpty());
    // What is registered already can be taken back.
    EXPECT_EQ(item.unregisterItem(), std::nullopt);
}

TEST(CoreGraphicsEventPostingTest, ReleasesWhatItMade) {
    UnifiedLog log;
    CoreGraphicsEventPosting posting(log);
    world().eventSourcesFail = true;
    EXPECT_EQ(posting.source(EventSourceState::Private), nullptr);
    world().eventSourcesFail = false;
    {
        const auto source = posting.source(EventSourceState::Private);
        const auto event = posting.mouseEvent(*source, EventType::LeftMouseDown, {.x = 1, .y = 2},
                                              MouseButton::Left);
        EXPECT_EQ(liveCounts().coreObjects, 2U);
        EXPECT_TRUE(posting.postToPid(9, *event));
    }
    EXPECT_EQ(liveCounts().coreObjects, 0U);
    EXPECT_THAT(
        world().postedEvents,
        ElementsAre(PostedEvent{.pid = 9, .type = 1, .x = 1, .y = 2, .button = 0, .fields = {}}));
}

TEST(CoreGraphicsEventPostingTest, SaysOnceWhetherPostingIsPermitted) {
    UnifiedLog log;
    for (const bool permitted : {true, false}) {
        world().postingPermitted = permitted;
        CoreGraphicsEventPosting posting(log);
        const auto source = posting.source(EventSourceState::Private);
        const auto event = posting.mouseEvent(*source, EventType::LeftMouseDown, {.x = 1, .y = 2},
                                              MouseButton::Left);
        EXPECT_TRUE(posting.postToPid(9, *event));
        EXPECT_TRUE(posting.postToPid(9, *event));
    }
    EXPECT_THAT(world().log,
                ElementsAre(LogLine{"com.pelistra.app", "event-posting", OS_LOG_TYPE_INFO,
                                    "Posting events is permitted"},
                            LogLine{"com.pelistra.app", "event-posting", OS_LOG_TYPE_ERROR,
                                    "Posting events is not permitted; posted clicks may be "
                                    "dropped silently"}));
    EXPECT_THAT(recorded("CGPreflightPostEventAccess"), SizeIs(2));
}

// The class that the entry point makes the application's delegate.
TEST(PelistraAppTest, StartsTheOrganiserAndAnswersTheMenu) {
    [[NSUserDefaults standardUserDefaults] setBool:YES forKey:@"hasCompletedOnboarding.unknown"];
    // GNUstep rearranges the menu of a program that is called as its first menu.
    std::string program = "macos_tests";
    std::string known = "--show-onboarding-never";
    std::array<char*, 2> arguments = {program.data(), known.data()};
    [NSProcessInfo initializeWithArguments:arguments.data() count:2 environment:environ];
    @autoreleasepool {
        PelistraApp* app = [[PelistraApp alloc] init];
        NSNotification* none = [NSNotification notificationWithName:@"none" object:nil];
        [app applicationWillFinishLaunching:none];
        EXPECT_THAT(recorded("NSStatusBar "), IsEmpty());
        EXPECT_THAT(world().log,
                    ElementsAre(LogLine{"com.pelistra.app", "application", OS_LOG_TYPE_ERROR,
                                        "Unknown switch is ignored: --show-onboarding-never"}));
        [app applicationDidFinishLaunching:none];
        runFor(0.05);
        EXPECT_NE(statusItem(@"PelistraV3.Divider"), nil);

        NSMenuItem* settings = [[[[NSApp mainMenu] itemAtIndex:0] submenu] itemAtIndex:0];
        EXPECT_STREQ([[settings keyEquivalent] UTF8String], ",");
        [NSApp sendAction:[settings action] to:[settings target] from:settings];
        EXPECT_THAT(recorded("NSWindowController showWindow:"), SizeIs(1));
        // Opened once more, it shows the same.
        EXPECT_FALSE([app applicationShouldHandleReopen:NSApp hasVisibleWindows:NO]);
        EXPECT_THAT(recorded("NSWindowController showWindow:"), SizeIs(2));
        [NSApp setMainMenu:nil];
        [app release];
        runFor(0.05);
    }
    EXPECT_EQ(liveCounts().statusItems, 0U);
}

} // namespace
} // namespace pelistra::macos

#include "tests/macos/LaunchedApplication.h"

#include "tests/macos/standins/MenuBar.h"

#include <algorithm>
#include <cstdlib>

namespace pelistra::macos {

using namespace pelistra::testing::standins;

namespace {

NSString* const onboardingKey = @"hasCompletedOnboarding.unknown";

} // namespace

void LaunchedApplication::SetUp() {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    for (NSString* name in @[ @"PelistraV3.Control", @"PelistraV3.Divider" ]) {
        [defaults
            removeObjectForKey:[@"NSStatusItem Preferred Position " stringByAppendingString:name]];
        [defaults removeObjectForKey:[@"NSStatusItem Visible " stringByAppendingString:name]];
    }
    setOnboardingCompleted(true);
    setArguments({});
}

void LaunchedApplication::TearDown() {
    quit();
    setArguments({});
}

void LaunchedApplication::fillMenuBar() {
    world().applications = {
        {firstPid,
         {.name = "剪贴板", .bundleIdentifier = "test.clip", .bundlePath = "/Apps/C.app"}},
        {secondPid, {.name = "音量", .bundlePath = "/Apps/V.app/Contents/Library/Helper.app"}},
        {300, {.name = "时钟"}}};
    world().hiddenItems = {{.window = firstWindow, .ownerPid = firstPid, .ownerName = "剪贴板"},
                           {.window = secondWindow, .ownerPid = secondPid, .ownerName = "音量"}};
    world().itemsBetween = {
        {.window = 1003, .ownerPid = 300, .ownerName = "时钟", .windowName = "Clock", .width = 50}};
    layOutMenuBar();
}

void LaunchedApplication::setOnboardingCompleted(bool completed) {
    [[NSUserDefaults standardUserDefaults] setBool:completed forKey:onboardingKey];
}

void LaunchedApplication::setArguments(const std::vector<std::string>& switches) {
    std::vector<std::string> all{"/Applications/Pelistra.app/Contents/MacOS/Pelistra"};
    all.insert(all.end(), switches.begin(), switches.end());
    std::vector<char*> pointers;
    for (std::string& argument : all) {
        pointers.push_back(argument.data());
    }
    [NSProcessInfo initializeWithArguments:pointers.data()
                                     count:static_cast<int>(pointers.size())
                               environment:environ];
}

void LaunchedApplication::launch() {
    platform_ = std::make_unique<MacPlatform>();
    delegate_ = std::make_unique<AppDelegate>(platform_->platform());
    delegate_->applicationDidFinishLaunching();
    runFor(0.05);
}

void LaunchedApplication::quit() {
    delegate_.reset();
    // What was put off until the next turn may still use the platform.
    runFor(0.02);
    platform_.reset();
}

void LaunchedApplication::collapse() {
    fillMenuBar();
    launch();
    clickArrow();
    ASSERT_EQ(dividerLength(), collapsedLength);
    waitForLatch();
}

void LaunchedApplication::openRow() {
    collapse();
    clickArrow();
    ASSERT_TRUE(panelIsVisible());
    waitForLatch();
}

NSView* LaunchedApplication::item(const std::string& tooltip) {
    return find([panel() contentView], [NSButton class], tooltip);
}

void LaunchedApplication::clickArrow(bool option) {
    click([statusItem(@"PelistraV3.Control") button], NSEventTypeLeftMouseDown,
          NSEventTypeLeftMouseUp, option ? NSEventModifierFlagOption : 0);
}

void LaunchedApplication::rightClickArrow() {
    click([statusItem(@"PelistraV3.Control") button], NSEventTypeRightMouseDown,
          NSEventTypeRightMouseUp);
}

void LaunchedApplication::waitForLatch() {
    // Served after what the click put off for the same time.
    constexpr Seconds latchTime{0.25};
    bool isOver = false;
    {
        const Unrecorded inside;
        DispatchMainQueue().asyncAfter(latchTime, [&isOver] { isOver = true; });
    }
    EXPECT_TRUE(runUntil([&isOver] { return isOver; }));
}

double LaunchedApplication::dividerLength() { return [statusItem(@"PelistraV3.Divider") length]; }

std::vector<std::string> LaunchedApplication::messagesOf(const std::string& category) {
    std::vector<std::string> result;
    for (const LogLine& line : world().log) {
        if (line.category == category) {
            result.push_back(line.message);
        }
    }
    return result;
}

NSWindow* LaunchedApplication::windowTitled(NSString* title) {
    for (NSWindow* window in [NSApp windows]) {
        if ([[window title] isEqual:title]) {
            return window;
        }
    }
    return nil;
}

NSPanel* LaunchedApplication::panel() {
    return static_cast<NSPanel*>(windowTitled(@"Pelistra 第二行"));
}

bool LaunchedApplication::panelIsVisible() { return [panel() isVisible] == YES; }

namespace {

void collectTexts(NSView* view, std::vector<std::string>& texts) {
    NSString* text = nil;
    if ([view isKindOfClass:[NSTextField class]]) {
        text = [static_cast<NSTextField*>(view) stringValue];
    } else if ([view isKindOfClass:[NSButton class]]) {
        text = [static_cast<NSButton*>(view) title];
    }
    if ([text length] > 0) {
        texts.emplace_back([text UTF8String]);
    }
    for (NSView* subview in [view subviews]) {
        collectTexts(subview, texts);
    }
}

bool begins(NSString* text, const std::string& with) {
    return text != nil && std::string_view([text UTF8String]).starts_with(with);
}

bool isNamed(NSView* view, const std::string& text) {
    if (begins([view toolTip], text) || begins([view accessibilityLabel], text)) {
        return true;
    }
    return
        [view isKindOfClass:[NSButton class]] && begins([static_cast<NSButton*>(view) title], text);
}

NSEvent* mouseEvent(NSView* view, NSEventType type, NSUInteger modifiers) {
    const NSRect bounds = [view bounds];
    const NSPoint location = [view convertPoint:NSMakePoint(NSMidX(bounds), NSMidY(bounds))
                                         toView:nil];
    return [NSEvent mouseEventWithType:type
                              location:location
                         modifierFlags:modifiers
                             timestamp:[[NSDate date] timeIntervalSinceReferenceDate]
                          windowNumber:[[view window] windowNumber]
                               context:nil
                           eventNumber:0
                            clickCount:1
                              pressure:1];
}

} // namespace

std::vector<std::string> textsIn(NSView* view) {
    std::vector<std::string> texts;
    collectTexts(view, texts);
    return texts;
}

NSView* find(NSView* in, Class kind, const std::string& text) {
    if ([in isKindOfClass:kind] && isNamed(in, text)) {
        return in;
    }
    for (NSView* subview in [in subviews]) {
        NSView* found = find(subview, kind, text);
        if (found != nil) {
            return found;
        }
    }
    return nil;
}

void click(NSView* view, NSEventType down, NSEventType up, NSUInteger modifiers) {
    // The button's tracking loop takes the second event from the queue.
    [NSApp postEvent:mouseEvent(view, down, modifiers) atStart:NO];
    [NSApp postEvent:mouseEvent(view, up, modifiers) atStart:NO];
    runFor(0.02);
    constexpr NSUInteger buttons =
        NSLeftMouseDownMask | NSLeftMouseUpMask | NSRightMouseDownMask | NSRightMouseUpMask;
    EXPECT_TRUE(runUntil([] {
        return [NSApp nextEventMatchingMask:buttons
                                  untilDate:[NSDate distantPast]
                                     inMode:NSDefaultRunLoopMode
                                    dequeue:NO] == nil;
    }));
}

void takePicture(NSWindow* window, const std::string& name) {
    const char* folder = std::getenv("PELISTRA_PICTURES");
    if (folder == nullptr) {
        return;
    }
    const Unrecorded inside;
    [window display];
    // The whole screen, as the X server has it.
    const std::string command = std::string("import -window root ") + folder + "/" + name + ".png";
    runFor(0.3);
    if (std::system(command.c_str()) != 0) {
        ADD_FAILURE() << command;
    }
}

} // namespace pelistra::macos

#include "tests/macos/LaunchedApplication.h"

#include <gmock/gmock.h>

namespace pelistra::macos {
namespace {

using namespace pelistra::testing::standins;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class WindowsTest : public LaunchedApplication {
  protected:
    // Calls to windows, without those of other classes.
    static std::vector<std::string> ofWindows() {
        std::vector<std::string> lines;
        for (const std::string& line : world().journal) {
            if (line.starts_with("NSWindow ") || line.starts_with("NSWindowController ") ||
                line.starts_with("NSPanel ") || line.starts_with("NSApplication activate")) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    void launchWith(const std::vector<std::string>& switches, NSString* title) {
        setArguments(switches);
        launch();
        ASSERT_TRUE(runUntil([title] { return [windowTitled(title) isVisible] == YES; }));
    }

    static NSView* settings() { return [windowTitled(@"Pelistra Settings") contentView]; }
    static NSView* onboarding() { return [windowTitled(@"Welcome to Pelistra") contentView]; }

    static void press(NSView* in, const std::string& title) {
        NSView* button = find(in, [NSButton class], title);
        ASSERT_NE(button, nil) << title;
        click(button, NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    }

    static NSSwitch* toggle(NSView* in) {
        return static_cast<NSSwitch*>(find(in, [NSSwitch class], "登录时启动 Pelistra"));
    }

    static void move(NSSwitch* control, bool on) {
        [control setState:on ? NSControlStateValueOn : NSControlStateValueOff];
        [control sendAction:[control action] to:[control target]];
        runFor(0.02);
    }
};

TEST_F(WindowsTest, TheSettingsWindowIsMadeInOrder) {
    launchWith({"--show-settings"}, @"Pelistra Settings");
    EXPECT_THAT(ofWindows(),
                ElementsAre("NSWindow initWithContentRect:styleMask:backing:defer: {0, 0} {680, "
                            "600} 15 2 NO",
                            "NSWindow setTitle: \"Pelistra Settings\"",
                            "NSWindow setContentView: PelistraHostingView", "NSWindow center",
                            "NSWindowController initWithWindow: NSWindow",
                            "NSWindowController showWindow: nil", "NSWindow orderFrontRegardless",
                            "NSApplication activateIgnoringOtherApps: YES"));
    // Which the view asks for.
    EXPECT_TRUE(NSEqualSizes([[settings() window] contentMinSize], NSMakeSize(600, 520)));
}

TEST_F(WindowsTest, ClosingTheSettingsWindowKeepsIt) {
    launchWith({"--show-settings"}, @"Pelistra Settings");
    NSWindow* window = windowTitled(@"Pelistra Settings");
    [window performClose:nil];
    runFor(0.02);
    EXPECT_FALSE([window isVisible]);
    world().journal.clear();
    rightClickArrow();
    EXPECT_TRUE([window isVisible]);
    EXPECT_THAT(ofWindows(),
                ElementsAre("NSWindowController showWindow: nil", "NSWindow orderFrontRegardless",
                            "NSApplication activateIgnoringOtherApps: YES"));
}

TEST_F(WindowsTest, TheOnboardingWindowIsMadeInOrder) {
    launchWith({"--show-onboarding"}, @"Welcome to Pelistra");
    EXPECT_THAT(
        ofWindows(),
        ElementsAre("NSWindow initWithContentRect:styleMask:backing:defer: {0, 0} {760, "
                    "560} 32771 2 NO",
                    "NSWindow setTitle: \"Welcome to Pelistra\"", "NSWindow setTitleVisibility: 1",
                    "NSWindow setTitlebarAppearsTransparent: YES",
                    "NSWindow setMovableByWindowBackground: YES",
                    "NSWindow setReleasedWhenClosed: NO", "NSWindow setContentMinSize: {680, 500}",
                    "NSWindow setContentView: PelistraHostingView", "NSWindow center",
                    "NSWindowController initWithWindow: NSWindow",
                    "NSWindowController showWindow: nil", "NSWindow orderFrontRegardless",
                    "NSApplication activateIgnoringOtherApps: YES"));
}

TEST_F(WindowsTest, ThePanelIsMadeInOrder) {
    fillMenuBar();
    launch();
    clickArrow();
    waitForLatch();
    clickArrow();
    EXPECT_THAT(recorded("NSPanel"),
                ElementsAre("NSPanel initWithContentRect:styleMask:backing:defer: {0, 0} {420, 78} "
                            "128 2 NO",
                            "NSPanel setTitle: \"Pelistra 第二行\"",
                            "NSPanel setAccessibilityLabel: \"Pelistra 第二行溢出栏\"",
                            "NSPanel setFloatingPanel: YES", "NSPanel setLevel: 25",
                            "NSPanel setHidesOnDeactivate: NO",
                            "NSPanel setCollectionBehavior: 329", "NSPanel setOpaque: NO",
                            "NSPanel setBackgroundColor: clearColor", "NSPanel setHasShadow: YES",
                            "NSPanel setAnimationBehavior: 4", "NSPanel setReleasedWhenClosed: NO",
                            "NSPanel setContentView: PelistraHostingView", "NSPanel orderOut: nil",
                            "NSPanel setContentSize: {280, 78}", "NSPanel invalidateShadow",
                            "NSPanel setFrameOrigin: {1224, 874}", "NSPanel orderFrontRegardless"));
    EXPECT_THAT(recorded("NSEvent addGlobal"),
                ElementsAre("NSEvent addGlobalMonitorForEventsMatchingMask 10"));
}

TEST_F(WindowsTest, ThePanelStaysAboveAndLooksLikeTheMenuBar) {
    world().menuBarIsDark = true;
    openRow();
    EXPECT_EQ([panel() level], 25);
    EXPECT_TRUE([panel() allowsToolTipsWhenApplicationIsInactive]);
    EXPECT_TRUE([[[panel() appearance] name] isEqual:NSAppearanceNameDarkAqua]);
    // The desktop picture has changed meanwhile.
    clickArrow();
    waitForLatch();
    world().menuBarIsDark = false;
    clickArrow();
    EXPECT_TRUE([[[panel() appearance] name] isEqual:NSAppearanceNameAqua]);
}

TEST_F(WindowsTest, TheSettingsShowEveryText) {
    launchWith({"--show-settings"}, @"Pelistra Settings");
    EXPECT_THAT(
        textsIn(settings()),
        ElementsAre(
            "使用方法", "1", "找到分隔线",
            "菜单栏中竖线左侧是隐藏区，右侧是常用区；最右边的箭头负责展开和折叠。", "2", "摆放图标",
            "按住 "
            "Command（⌘）拖动菜单栏图标。把不常用图标放到竖线左侧，把常用图标放到竖线与箭头之间。",
            "3", "点击箭头",
            "第一次点击会折叠竖线左侧图标；再次点击会在菜单栏下方打开可横向滚动的第二行。按住 "
            "Option "
            "点击箭头可展开原图标重新整理。",
            "4", "使用第二行",
            "左键点击图标会打开所属应用；右键点击会打开原托盘菜单。右键操作后，点击菜单栏箭头即可重"
            "新折叠"
            "临时显示的图标。",
            "通用", "登录时启动 Pelistra", "重新查看使用引导", "退出 Pelistra"));
    takePicture(windowTitled(@"Pelistra Settings"), "settings");
}

TEST_F(WindowsTest, ARefusedLoginItemIsShownAndTheSwitchGoesBack) {
    launchWith({"--show-settings"}, @"Pelistra Settings");
    world().loginItemRefusal = "Operation not permitted";
    move(toggle(settings()), true);
    EXPECT_EQ([toggle(settings()) state], NSControlStateValueOff);
    EXPECT_EQ(textsIn(settings()).back(), "Operation not permitted");
    EXPECT_THAT(recorded("SMAppService"), ElementsAre("SMAppService registerAndReturnError"));

    world().loginItemRefusal.reset();
    move(toggle(settings()), true);
    EXPECT_EQ([toggle(settings()) state], NSControlStateValueOn);
    EXPECT_EQ(textsIn(settings()).back(), "退出 Pelistra");
    move(toggle(settings()), false);
    EXPECT_EQ(recorded("SMAppService").back(), "SMAppService unregisterAndReturnError");
    EXPECT_EQ([toggle(settings()) state], NSControlStateValueOff);
}

TEST_F(WindowsTest, ARegistrationThatWaitsForApprovalShowsAsOff) {
    world().statusAfterRegistering = SMAppServiceStatusRequiresApproval;
    launchWith({"--show-settings"}, @"Pelistra Settings");
    move(toggle(settings()), true);
    EXPECT_EQ([toggle(settings()) state], NSControlStateValueOff);
}

TEST_F(WindowsTest, TheGuideIsWalkedThroughAndCompleted) {
    setOnboardingCompleted(false);
    launch();
    ASSERT_TRUE(runUntil([] { return [onboarding() window] != nil; }));
    EXPECT_EQ(textsIn(onboarding()).front(), "第 1 步，共 4 步  ·  欢迎");
    EXPECT_THAT(textsIn(onboarding()), Contains("给菜单栏留出空间"));
    EXPECT_THAT(textsIn(onboarding()), Contains("无需辅助功能权限，不会移动鼠标"));
    EXPECT_EQ(find(onboarding(), [NSButton class], "返回"), nil);
    takePicture(windowTitled(@"Welcome to Pelistra"), "onboarding-1");

    press(onboarding(), "继续");
    runFor(0.7);
    EXPECT_THAT(textsIn(onboarding()), Contains("竖线左侧就是隐藏区"));
    takePicture(windowTitled(@"Welcome to Pelistra"), "onboarding-2");
    press(onboarding(), "继续");
    runFor(0.7);
    EXPECT_EQ(textsIn(onboarding()).front(), "第 3 步，共 4 步  ·  摆放图标");
    EXPECT_NE(toggle(onboarding()), nil);
    takePicture(windowTitled(@"Welcome to Pelistra"), "onboarding-3");
    press(onboarding(), "返回");
    runFor(0.7);
    EXPECT_EQ(textsIn(onboarding()).front(), "第 2 步，共 4 步  ·  认识分隔线");
    press(onboarding(), "继续");
    runFor(0.7);
    press(onboarding(), "继续");
    EXPECT_TRUE(
        runUntil([] { return find(onboarding(), [NSButton class], "开始使用 Pelistra") != nil; }));
    runFor(0.7);
    takePicture(windowTitled(@"Welcome to Pelistra"), "onboarding-4");
    auto* start = static_cast<NSButton*>(find(onboarding(), [NSButton class], "开始使用 Pelistra"));
    EXPECT_STREQ([[start keyEquivalent] UTF8String], "\r");
    press(onboarding(), "开始使用 Pelistra");
    EXPECT_TRUE(
        [[NSUserDefaults standardUserDefaults] boolForKey:@"hasCompletedOnboarding.unknown"]);
    EXPECT_EQ(recorded("NSWindowController close").size(), 1U);
}

TEST_F(WindowsTest, ReturnGoesOnInTheGuide) {
    launchWith({"--show-onboarding"}, @"Welcome to Pelistra");
    NSWindow* window = [onboarding() window];
    NSEvent* returnKey = [NSEvent keyEventWithType:NSKeyDown
                                          location:NSZeroPoint
                                     modifierFlags:0
                                         timestamp:0
                                      windowNumber:[window windowNumber]
                                           context:nil
                                        characters:@"\r"
                       charactersIgnoringModifiers:@"\r"
                                         isARepeat:NO
                                           keyCode:36];
    EXPECT_TRUE([window performKeyEquivalent:returnKey]);
    EXPECT_TRUE(runUntil(
        [] { return textsIn(onboarding()).front() == "第 2 步，共 4 步  ·  认识分隔线"; }));
}

TEST_F(WindowsTest, ARefusalInTheGuideIsAnAlertThatIsShownOnce) {
    launchWith({"--show-onboarding"}, @"Welcome to Pelistra");
    press(onboarding(), "继续");
    runFor(0.7);
    press(onboarding(), "继续");
    runFor(0.7);
    world().loginItemRefusal = "";
    move(toggle(onboarding()), true);
    EXPECT_TRUE(runUntil([] { return !recorded("NSAlert").empty(); }));
    EXPECT_THAT(recorded("NSAlert"), ElementsAre("NSAlert beginSheetModalForWindow \"登录时启动\" "
                                                 "\"无法更新登录项。\" \"好\""));
    world().dismissAlert();
    runFor(0.05);
    EXPECT_THAT(recorded("NSAlert"), SizeIs(1));
    // A second refusal is a new occasion.
    move(toggle(onboarding()), true);
    EXPECT_TRUE(runUntil([] { return recorded("NSAlert").size() == 2; }));
}

TEST_F(WindowsTest, StepsSpringOrFadeWhenMotionIsReduced) {
    launchWith({"--show-onboarding"}, @"Welcome to Pelistra");
    world().journal.clear();
    press(onboarding(), "继续");
    EXPECT_THAT(recorded("CASpringAnimation"),
                Contains("CASpringAnimation perceptualDuration=0.42 bounce=0.14"));
    EXPECT_THAT(recorded("CAMediaTimingFunction"), IsEmpty());
    // The step that leaves shrinks.
    EXPECT_THAT(recorded("CABasicAnimation transform.scale"),
                ElementsAre("CABasicAnimation transform.scale setToValue 0.98"));
    runFor(1.1);

    world().reduceMotion = true;
    [[[NSWorkspace sharedWorkspace] notificationCenter]
        postNotificationName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                      object:nil];
    // Served after the drawing that the notification leads to.
    __block bool isDrawn = false;
    dispatch_async(dispatch_get_main_queue(), ^{
      isDrawn = true;
    });
    ASSERT_TRUE(runUntil([&drawn = isDrawn] { return drawn; }));
    world().journal.clear();
    press(onboarding(), "继续");
    EXPECT_THAT(recorded("CASpringAnimation"), IsEmpty());
    EXPECT_THAT(recorded("CABasicAnimation transform.scale"), IsEmpty());
    EXPECT_THAT(recorded("CAMediaTimingFunction"), Contains("CAMediaTimingFunction easeOut"));
    EXPECT_THAT(recorded("CAAnimation setDuration"), Contains("CAAnimation setDuration 0.12"));
}

} // namespace
} // namespace pelistra::macos

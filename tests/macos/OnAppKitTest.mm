#include "app/AppDelegate.h"
#include "platform/macos/AppKitImages.h"
#include "platform/macos/AppKitPanels.h"
#include "platform/macos/AppKitWindows.h"
#include "platform/macos/CoreGraphicsEventPosting.h"
#include "platform/macos/CoreGraphicsWindowList.h"
#include "platform/macos/DispatchMainQueue.h"
#include "tests/macos/RunLoop.h"
#include "tests/macos/Services.h"
#include "tests/platform/FakePlatform.h"
#include "ui/Content.h"

#import <AppKit/AppKit.h>

#include <gmock/gmock.h>

#include <unistd.h>

// The organiser with AppKit's own windows and panels, on macOS and on GNUstep alike. What would
// reach the menu bar, other applications or the user's settings is the recorded fake.
namespace pelistra::macos {
namespace {

using namespace pelistra::testing::standins;
using ::testing::ElementsAre;
using ::testing::Optional;
using ::testing::SizeIs;

class OnAppKitTest : public ::testing::Test {
  protected:
    OnAppKitTest() { fake_.defaults.setBool(true, "hasCompletedOnboarding.1.4.2"); }
    ~OnAppKitTest() override {
        delegate_.reset();
        runFor(0.02);
    }

    void launchWith(const std::string& argument) {
        fake_.application.processArguments = {"Pelistra", argument};
        Platform platform{.application = fake_.application,
                          .mainQueue = queue_,
                          .log = fake_.log,
                          .defaults = fake_.defaults,
                          .statusBar = fake_.statusBar,
                          .screens = fake_.screens,
                          .images = images_,
                          .windowList = fake_.windowList,
                          .privateLibrary = fake_.privateLibrary,
                          .runningApplications = fake_.runningApplications,
                          .screenCapture = fake_.screenCapture,
                          .eventPosting = fake_.eventPosting,
                          .windows = windows_,
                          .panels = panels_,
                          .globalClicks = fake_.globalClicks,
                          .loginItem = fake_.loginItem};
        delegate_ = std::make_unique<AppDelegate>(platform);
        delegate_->applicationDidFinishLaunching();
    }

    [[nodiscard]] static NSWindow* windowTitled(NSString* title) {
        for (NSWindow* window in [NSApp windows]) {
            if ([[window title] isEqual:title]) {
                return window;
            }
        }
        return nil;
    }

    testing::FakePlatform fake_;
    DispatchMainQueue queue_;
    AppKitImages images_;
    HostingServices hosting_{
        .application = &fake_.application, .mainQueue = &queue_, .images = &images_};
    AppKitWindows windows_{hosting_};
    AppKitPanels panels_{hosting_, [this] { return [look_.get() effectiveAppearance]; }};
    Owned<NSView*> look_ = Owned<NSView*>::adopt([[NSView alloc] initWithFrame:NSZeroRect]);
    std::unique_ptr<AppDelegate> delegate_;
};

TEST_F(OnAppKitTest, TheSettingsWindowShowsAndShowsAgain) {
    launchWith("--show-settings");
    ASSERT_TRUE(runUntil([] { return [windowTitled(@"Pelistra Settings") isVisible] == YES; }));
    NSWindow* window = windowTitled(@"Pelistra Settings");
    EXPECT_TRUE(NSEqualSizes([[window contentView] frame].size, NSMakeSize(680, 600)));
    EXPECT_GE([window contentMinSize].width, 400);
    [window performClose:nil];
    EXPECT_TRUE(runUntil([window] { return [window isVisible] == NO; }));
    delegate_->showSettings();
    EXPECT_EQ(windowTitled(@"Pelistra Settings"), window);
    EXPECT_TRUE([window isVisible]);
}

TEST_F(OnAppKitTest, TheGuideIsGoneOnceItIsCompleted) {
    launchWith("--show-onboarding");
    ASSERT_TRUE(runUntil([] { return [windowTitled(@"Welcome to Pelistra") isVisible] == YES; }));
    delegate_->completeOnboarding();
    EXPECT_TRUE(runUntil([] { return [windowTitled(@"Welcome to Pelistra") isVisible] != YES; }));
}

TEST_F(OnAppKitTest, APanelKeepsItsLevelAndShowsToolTips) {
    const auto panel = panels_.panel({.contentSize = {.width = 420, .height = 78},
                                      .styleMask = window_style::nonactivatingPanel,
                                      .title = "第二行",
                                      .level = 25,
                                      .isFloatingPanel = true,
                                      .isReleasedWhenClosed = false});
    NSWindow* native = windowTitled(@"第二行");
    EXPECT_EQ([native level], 25);
    EXPECT_TRUE([native allowsToolTipsWhenApplicationIsInactive]);
    panel->orderFrontRegardless();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_TRUE([[[native appearance] name] isEqual:[[look_.get() effectiveAppearance] name]]);
    panel->orderOut();
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(OnAppKitTest, TheWindowListIsReadStrictly) {
    setWindowList(@[
        @{
            @"kCGWindowNumber" : @7,
            @"kCGWindowOwnerPID" : @1,
            @"kCGWindowLayer" : @25,
            @"kCGWindowName" : @"名",
            @"kCGWindowBounds" : @{@"X" : @-5.5}
        },
        @{@"kCGWindowLayer" : @25.5,
          @"kCGWindowOwnerPID" : @4294967297},
        @{@"kCGWindowLayer" : @"25",
          @"kCGWindowBounds" : @{@"X" : @"1"}},
    ]);
    CoreGraphicsWindowList list([] { return std::vector<WindowInfo>(); }, fake_.log);
    const auto windows = list.copyWindowInfo();
    ASSERT_THAT(windows, Optional(SizeIs(3)));
    EXPECT_EQ((*windows)[0].number, 7U);
    EXPECT_EQ((*windows)[0].layer, 25);
    EXPECT_THAT((*windows)[0].name, Optional(std::string("名")));
    EXPECT_EQ((*windows)[0].bounds->x, -5.5);
    EXPECT_EQ((*windows)[1], WindowInfo{});
    EXPECT_EQ((*windows)[2], WindowInfo{});
}

TEST_F(OnAppKitTest, AnEventGoesToItsProcessAlone) {
    CoreGraphicsEventPosting posting(fake_.log);
    const auto source = posting.source(EventSourceState::Private);
    ASSERT_NE(source, nullptr);
    const auto event =
        posting.mouseEvent(*source, EventType::LeftMouseDown, {.x = 1, .y = 2}, MouseButton::Left);
    ASSERT_NE(event, nullptr);
    event->setIntegerValueField(event_field::clickState, 1);
    EXPECT_TRUE(posting.postToPid(9, *event));
    EXPECT_THAT(postedTo(), ElementsAre(9));
}

} // namespace
} // namespace pelistra::macos

#include "overflow/OverflowServices.h"
#include "overflow/OverflowStore.h"
#include "overflow/PrivateMenuBarBridge.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/MacPlatform.h"
#include "platform/macos/views/ContentButton.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/HostingView.h"
#include "secondrow/SecondRowView.h"
#include "tests/macos/standins/World.h"
#include "tests/ui/InventedMeasures.h"
#include "ui/OnboardingView.h"
#include "ui/SettingsView.h"

#include <gtest/gtest.h>

// Where the arrangement puts what the organiser's windows show, there AppKit has it.
namespace pelistra::macos {
namespace {

class FramesTest : public ::testing::Test {
  protected:
    void SetUp() override { pelistra::testing::standins::resetWorld(); }

    void expectFrames(const std::shared_ptr<ui::Content>& content, const Size& size,
                      NSWindowStyleMask styleMask = NSWindowStyleMaskBorderless) {
        const auto window = Owned<NSWindow*>::adopt([[NSWindow alloc]
            initWithContentRect:NSMakeRect(0, 0, size.width, size.height)
                      styleMask:styleMask
                        backing:NSBackingStoreBuffered
                          defer:NO]);
        [window.get() setReleasedWhenClosed:NO];
        const auto hosting = makeHostingView(content, {.application = &platform_.application,
                                                       .mainQueue = &platform_.mainQueue,
                                                       .images = &platform_.images,
                                                       .measures = &measures_});
        [window.get() setContentView:hosting.get()];
        const NSSize shown = [hosting.get() frame].size;
        const auto arrangement = ui::arranged(
            content->body(),
            {.size = sizeOf(shown), .coveredTop = [hosting.get() safeAreaInsets].top}, measures_);
        ASSERT_FALSE(arrangement.elements.empty());
        compare(arrangement.elements, [hosting.get() subviews], NSZeroPoint);
        [window.get() setContentView:nil];
    }

    MacPlatform mac_;
    Platform platform_ = mac_.platform();
    pelistra::testing::InventedMeasures measures_;

  private:
    // The origin is that of the elements' parent.
    static void compare(const std::vector<ui::Placed>& placed, NSArray* views, NSPoint origin) {
        ASSERT_EQ([views count], placed.size());
        for (std::size_t place = 0; place < placed.size(); ++place) {
            NSView* view = [views objectAtIndex:place];
            const NSRect frame = nsRect(placed[place].frame);
            expectFrame(view, NSOffsetRect(frame, -origin.x, -origin.y), placed[place].key);
            compareInside(placed[place], view, frame.origin);
        }
    }

    static void expectFrame(NSView* view, NSRect frame, const std::string& key) {
        EXPECT_STREQ([NSStringFromRect([view alignmentRectForFrame:[view frame]]) UTF8String],
                     [NSStringFromRect(frame) UTF8String])
            << key;
    }

    static void compareInside(const ui::Placed& placed, NSView* view, NSPoint origin) {
        NSArray* inside = [view subviews];
        if ([view isKindOfClass:[NSScrollView class]]) {
            NSView* document = [static_cast<NSScrollView*>(view) documentView];
            EXPECT_GE([document frame].size.height, placed.content.height);
            EXPECT_GE([document frame].size.width, placed.content.width);
            compare(placed.children, [document subviews], NSZeroPoint);
        } else if ([view isKindOfClass:[PelistraContentButton class]]) {
            compare(placed.children, [[inside firstObject] subviews], origin);
        } else if (placed.view.as<ui::Toggle>() != nullptr) {
            NSView* control = [inside firstObject];
            expectFrame(control, NSOffsetRect(nsRect(placed.toggle), -origin.x, -origin.y),
                        placed.key);
            compare(placed.children, [inside subarrayWithRange:NSMakeRange(1, [inside count] - 1)],
                    origin);
        } else if (![view isKindOfClass:[NSButton class]] &&
                   placed.view.as<ui::Represented>() == nullptr) {
            // A button of the system's draws its label by itself.
            compare(placed.children, inside, origin);
        }
    }
};

TEST_F(FramesTest, TheSettings) {
    const auto view =
        std::make_shared<ui::SettingsView>(platform_.application, platform_.loginItem, [] {});
    expectFrames(view, {.width = 680, .height = 600});
    // Higher than its place.
    measures_.scrollerWidth = 14;
    expectFrames(view, {.width = 600, .height = 120});
}

TEST_F(FramesTest, EveryStepOfTheGuide) {
    const auto view = std::make_shared<ui::OnboardingView>(platform_.loginItem, [](bool) {});
    for (int step = 0; step < 4; ++step) {
        view->move(step);
        expectFrames(view, {.width = 760, .height = 560});
    }
}

TEST_F(FramesTest, TheGuidesBackgroundGoesUnderTheTitleBar) {
    const auto view = std::make_shared<ui::OnboardingView>(platform_.loginItem, [](bool) {});
    expectFrames(view, {.width = 760, .height = 560},
                 NSWindowStyleMaskTitled | NSWindowStyleMaskFullSizeContentView);
}

TEST_F(FramesTest, TheSecondRow) {
    const auto services = OverflowServices::of(platform_);
    const auto store =
        std::make_shared<OverflowStore>(std::make_shared<PrivateMenuBarBridge>(services), services);
    const auto view =
        std::make_shared<SecondRowView>(store, [](const auto&) {}, [](const auto&) {}, [] {});
    const Size size = {.width = 280, .height = SecondRowView::preferredHeight};
    store->message.set("消息");
    expectFrames(view, size);
    std::vector<OverflowItem> items(9);
    for (OverflowItem& item : items) {
        item.id = static_cast<WindowId>(&item - items.data() + 1);
        item.ownerName = "名称";
    }
    items.front().applicationIcon = platform_.images.drawn({.width = 16, .height = 32},
                                                           [](auto&, const auto&) { return true; });
    store->items.set(items);
    expectFrames(view, size);
}

} // namespace
} // namespace pelistra::macos

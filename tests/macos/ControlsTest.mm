#include "platform/macos/AppKitPanels.h"
#include "platform/macos/views/ContentButton.h"
#include "platform/macos/views/RowScrollView.h"
#include "platform/macos/views/WatchView.h"
#include "tests/macos/LaunchedApplication.h"
#include "tests/macos/ShownView.h"

#include <gmock/gmock.h>

// What the views' controls do under the pointer.
namespace pelistra::macos {
namespace {

class ControlsTest : public ShownView {
  protected:
    // A picture that is a button, with an area of its own for clicks.
    static ui::View contentButtonOf(const ui::View& picture) {
        const ui::Outline area = ui::RoundedRectangle{.cornerRadius = 8};
        const ui::View label = picture.frame({.width = 32, .height = 28});
        const ui::View button =
            ui::View(ui::Button{.label = label.padding(ui::Edges::all(4)).contentShape(area),
                                .style = ui::ButtonStyle::Plain});
        return ui::HStack{.children = {button.help("提示")}};
    }

    void showContentButton() { show(contentButtonOf(box(32, 28))); }

    [[nodiscard]] PelistraContentButton* contentButton() const {
        return static_cast<PelistraContentButton*>(
            find(content(), [PelistraContentButton class], "提示"));
    }

    [[nodiscard]] NSScrollView* scrollView() const {
        return static_cast<NSScrollView*>([[content() subviews] firstObject]);
    }

    void scroll(double across, double down) const {
        [scrollView() scrollWheel:[NSEvent mouseEventWithType:NSScrollWheel
                                                     location:NSZeroPoint
                                                modifierFlags:0
                                                    timestamp:0
                                                 windowNumber:[[content() window] windowNumber]
                                                      context:nil
                                                  eventNumber:0
                                                   clickCount:0
                                                     pressure:0
                                                 buttonNumber:0
                                                       deltaX:across
                                                       deltaY:down
                                                       deltaZ:0]];
    }

    [[nodiscard]] double scrolledTo() const { return [[scrollView() contentView] bounds].origin.x; }
};

// How dark the drawing leaves a white area of that size, in its centre.
double darknessOf(NSSize size, const std::function<void()>& draw) {
    NSImage* canvas = [[[NSImage alloc] initWithSize:size] autorelease];
    [canvas lockFocus];
    [[NSColor whiteColor] set];
    NSRectFill(NSMakeRect(0, 0, size.width, size.height));
    draw();
    NSBitmapImageRep* bitmap = [[[NSBitmapImageRep alloc]
        initWithFocusedViewRect:NSMakeRect(0, 0, size.width, size.height)] autorelease];
    [canvas unlockFocus];
    NSColor* centre = [[bitmap colorAtX:static_cast<NSInteger>(size.width / 2)
                                      y:static_cast<NSInteger>(size.height / 2)]
        colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
    return 1 - [centre redComponent];
}

NSEvent* none() { return nil; }

TEST_F(ControlsTest, AContentButtonShowsThePointerAndThePress) {
    showContentButton();
    PelistraContentButton* button = contentButton();
    const NSSize size = [button bounds].size;
    EXPECT_TRUE(NSEqualSizes(size, NSMakeSize(40, 36)));
    const auto darkness = [button, size] {
        return darknessOf(size, [button] { [button drawRect:[button bounds]]; });
    };
    EXPECT_EQ(darkness(), 0);
    [button mouseEntered:none()];
    const double hovered = darkness();
    EXPECT_GT(hovered, 0.02);
    [[button cell] setHighlighted:YES];
    EXPECT_GT(darkness(), hovered);
    [[button cell] setHighlighted:NO];
    [button mouseExited:none()];
    EXPECT_EQ(darkness(), 0);
}

TEST_F(ControlsTest, ASymbolInAnAreaIsTheSameControlAsAPicture) {
    show(contentButtonOf(ui::Symbol{.name = "wifi", .font = {.size = 18.0}}));
    PelistraContentButton* button = contentButton();
    ASSERT_NE(button, nil);
    EXPECT_TRUE(NSEqualSizes([button bounds].size, NSMakeSize(40, 36)));
    const auto shown = [button] {
        NSView* label = [[button subviews] firstObject];
        EXPECT_EQ([[label subviews] count], 1U);
        return [static_cast<NSImageView*>([[label subviews] firstObject]) image];
    };
    EXPECT_NE(shown(), nil);

    AppKitImages images;
    const ImagePtr later =
        images.drawn({.width = 20, .height = 20}, [](auto&, const auto&) { return true; });
    change(contentButtonOf(ui::Picture{later}));
    EXPECT_EQ(contentButton(), button);
    EXPECT_TRUE(NSEqualSizes([button bounds].size, NSMakeSize(40, 36)));
    EXPECT_EQ(shown(), nativeImage(later));
    NSView* picture = [[[[button subviews] firstObject] subviews] firstObject];
    EXPECT_FALSE([picture isAccessibilityElement]);
}

TEST_F(ControlsTest, AContentButtonDrawsItselfAndIsPressedInsideItsOutline) {
    showContentButton();
    PelistraContentButton* button = contentButton();
    EXPECT_FALSE([button wantsUpdateLayer]);
    const auto hit = [button](double x, double y) {
        return [button hitTest:[button convertPoint:NSMakePoint(x, y) toView:[button superview]]];
    };
    EXPECT_EQ(hit(20, 18), button);
    EXPECT_EQ(hit(4, 4), button);
    EXPECT_EQ(hit(20, 0.5), button);
    EXPECT_EQ(hit(1, 1), nil);
    EXPECT_EQ(hit(39, 35), nil);
}

TEST_F(ControlsTest, AButtonForgetsThePointerWhenItsPanelGoes) {
    AppKitPanels panels({}, [] { return static_cast<NSAppearance*>(nil); });
    const auto panel = panels.panel({.contentSize = {.width = 100, .height = 60},
                                     .styleMask = window_style::nonactivatingPanel,
                                     .title = "hover",
                                     .isReleasedWhenClosed = false});
    showContentButton();
    PelistraContentButton* button = contentButton();
    NSWindow* native = nil;
    for (NSWindow* window in [NSApp windows]) {
        native = [[window title] isEqual:@"hover"] ? window : native;
    }
    panel->orderFrontRegardless();
    [[native contentView] addSubview:button];
    [button updateTrackingAreas];
    const auto area = Owned<NSTrackingArea*>::share([[button trackingAreas] firstObject]);
    [button mouseEntered:none()];
    panel->orderOut();
    EXPECT_EQ(darknessOf([button bounds].size, [button] { [button drawRect:[button bounds]]; }), 0);
    ASSERT_EQ([[button trackingAreas] count], 1U);
    EXPECT_NE([[button trackingAreas] firstObject], area.get());
}

TEST_F(ControlsTest, ASymbolAloneIsTintedNamedByItsHelpAndAnswersThePointer) {
    show(ui::View(
             ui::Button{.label = ui::Symbol{.name = "wifi"}, .style = ui::ButtonStyle::Borderless})
             .help("提示"));
    PelistraContentButton* button = contentButton();
    ASSERT_NE(button, nil);
    EXPECT_STREQ([[button accessibilityLabel] UTF8String], "提示");
    auto* image =
        static_cast<NSImageView*>([[[[button subviews] firstObject] subviews] firstObject]);
    EXPECT_FALSE([image isAccessibilityElement]);
    EXPECT_TRUE([[image contentTintColor] isEqual:[NSColor secondaryLabelColor]]);
    EXPECT_EQ([button bounds].size.width, [image bounds].size.width + 10);
    [button mouseEntered:none()];
    EXPECT_GT(darknessOf([button bounds].size, [button] { [button drawRect:[button bounds]]; }), 0);
}

TEST_F(ControlsTest, WhatIsSeenOfAButtonLiesWhereItIsArranged) {
    const auto button = [](ui::ButtonStyle style) {
        return ui::View(ui::Button{.label = ui::Text{.text = "返回"}, .style = style});
    };
    show(ui::HStack{.spacing = 10,
                    .children = {button(ui::ButtonStyle::Borderless),
                                 button(ui::ButtonStyle::Automatic), ui::Spacer{}}});
    NSArray* views = [content() subviews];
    const auto seen = [views](NSUInteger index) {
        NSView* view = [views objectAtIndex:index];
        return [view alignmentRectForFrame:[view frame]];
    };
    EXPECT_EQ(seen(0).origin.x, 0);
    EXPECT_LT([[views firstObject] frame].origin.x, 0);
    EXPECT_EQ(seen(1).origin.x, NSMaxX(seen(0)) + 10);
    EXPECT_EQ([[views objectAtIndex:1] frame].size.width,
              [[[views objectAtIndex:1] cell] cellSize].width);
}

TEST_F(ControlsTest, AButtonThatChangesKeepsNothingOfItsLookBefore) {
    const auto button = [](ui::ButtonStyle style, ui::ButtonRole role = ui::ButtonRole::Regular) {
        return ui::View(
            ui::HStack{.children = {ui::Button{
                           .label = ui::Text{.text = "返回"}, .style = style, .role = role}}});
    };
    show(button(ui::ButtonStyle::Borderless, ui::ButtonRole::Destructive));
    auto* native = static_cast<NSButton*>(find(content(), [NSButton class], "返回"));
    EXPECT_TRUE([native isBordered]);
    EXPECT_TRUE([native showsBorderOnlyWhileMouseInside]);
    EXPECT_TRUE([native hasDestructiveAction]);
    change(button(ui::ButtonStyle::BorderedProminent));
    ASSERT_EQ(find(content(), [NSButton class], "返回"), native);
    EXPECT_FALSE([native showsBorderOnlyWhileMouseInside]);
    EXPECT_FALSE([native hasDestructiveAction]);
    EXPECT_EQ([native bezelStyle], NSBezelStylePush);
    EXPECT_NE([native bezelColor], nil);
    change(button(ui::ButtonStyle::Automatic));
    EXPECT_EQ([native bezelColor], nil);
}

TEST_F(ControlsTest, AContentButtonTracksThePointerInItsPresentBounds) {
    showContentButton();
    PelistraContentButton* button = contentButton();
    [button updateTrackingAreas];
    [button updateTrackingAreas];
    ASSERT_EQ([[button trackingAreas] count], 1U);
    NSTrackingArea* area = [[button trackingAreas] firstObject];
    EXPECT_TRUE(NSEqualRects([area rect], NSMakeRect(0, 0, 40, 36)));
    EXPECT_EQ([area owner], button);
}

TEST_F(ControlsTest, AContentButtonsFocusRingHasItsShape) {
    showContentButton();
    PelistraContentButton* button = contentButton();
    EXPECT_TRUE(NSEqualRects([button focusRingMaskBounds], [button bounds]));
    EXPECT_GT(darknessOf([button bounds].size,
                         [button] {
                             [[NSColor blackColor] set];
                             [button drawFocusRingMask];
                         }),
              0.5);
}

TEST_F(ControlsTest, ControlsAnswerTheFirstClick) {
    showContentButton();
    EXPECT_TRUE([contentButton() acceptsFirstMouse:none()]);
    const auto watch =
        Owned<PelistraWatchView*>::adopt([[PelistraWatchView alloc] initWithFrame:NSZeroRect]);
    EXPECT_TRUE([watch.get() acceptsFirstMouse:none()]);
}

TEST_F(ControlsTest, AWheelScrollsTheRowSideways) {
    show(ui::HorizontalScroll{.content = box(500, 20)});
    ASSERT_TRUE([scrollView() isKindOfClass:[PelistraRowScrollView class]]);
    scroll(0, -2);
    EXPECT_EQ(scrolledTo(), 32);
    scroll(0, 1);
    EXPECT_EQ(scrolledTo(), 16);
    // No further than its ends.
    scroll(0, 100);
    EXPECT_EQ(scrolledTo(), 0);
    scroll(0, -100);
    EXPECT_EQ(scrolledTo(), 300);
}

TEST_F(ControlsTest, LayingOutGivesEverythingItsPlaceAgain) {
    show(box(30, 20));
    NSView* innermost = content();
    while ([[innermost subviews] count] > 0) {
        innermost = [[innermost subviews] firstObject];
    }
    const NSRect frame = [innermost frame];
    [innermost setFrame:NSMakeRect(90, 90, 1, 1)];
    [content() layout];
    EXPECT_TRUE(NSEqualRects([innermost frame], frame));
}

} // namespace
} // namespace pelistra::macos

#include "platform/macos/views/Style.h"
#include "platform/macos/views/WatchView.h"
#include "tests/macos/LaunchedApplication.h"
#include "tests/macos/ShownView.h"

#include <gmock/gmock.h>

#include <objc/runtime.h>

// Views as values on AppKit's controls: places, updates and what stays untouched.
namespace pelistra::macos {
namespace {

using namespace pelistra::testing::standins;
using ::testing::ElementsAre;

class ViewsTest : public ShownView {};

MATCHER_P4(Frame, x, y, width, height, "") {
    return NSEqualRects(arg, NSMakeRect(x, y, width, height));
}

TEST_F(ViewsTest, ARowServesRigidChildrenFirst) {
    show(ui::HStack{.spacing = 10, .children = {box(30, 20), ui::Spacer{}, box(40, 60)}});
    EXPECT_THAT(leaves(), ElementsAre(Frame(0, 40, 30, 20), Frame(160, 20, 40, 60)));
}

TEST_F(ViewsTest, AColumnAlignsPadsAndFrames) {
    show(ui::View(ui::VStack{.alignment = ui::HorizontalAlignment::Trailing,
                             .spacing = 4,
                             .children = {box(50, 10), box(20, 10)}})
             .padding({.top = 6, .leading = 2, .bottom = 0, .trailing = 0})
             .frame({.maxWidth = ui::infinity,
                     .maxHeight = ui::infinity,
                     .alignment = {.horizontal = ui::HorizontalAlignment::Leading,
                                   .vertical = ui::VerticalAlignment::Top}}));
    EXPECT_THAT(leaves(), ElementsAre(Frame(2, 6, 50, 10), Frame(32, 20, 20, 10)));
}

TEST_F(ViewsTest, EdgesLieOnThePixelsOfTheScreen) {
    show(ui::VStack{.spacing = 0.5, .children = {box(10, 10), box(10, 10), box(10, 10)}});
    EXPECT_THAT(leaves(),
                ElementsAre(Frame(95, 35, 10, 10), Frame(95, 46, 10, 10), Frame(95, 56, 10, 10)));
    world().backingScale = 2;
    [content() viewDidChangeBackingProperties];
    EXPECT_THAT(leaves(), ElementsAre(Frame(95, 34.5, 10, 10), Frame(95, 45, 10, 10),
                                      Frame(95, 55.5, 10, 10)));
}

TEST_F(ViewsTest, ALabelsTextBeginsAtItsPlace) {
    show(ui::HStack{.spacing = 0,
                    .children = {ui::Text{.text = "一二三"}, box(30, 20), ui::Spacer{}}});
    auto* field = static_cast<NSTextField*>([[content() subviews] firstObject]);
    const double wide = std::ceil([[field attributedStringValue] size].width);
    // The field leaves two points free at either side.
    EXPECT_EQ([field frame].origin.x, -2);
    EXPECT_EQ([field frame].size.width, wide + 4);
    EXPECT_EQ(leaves().back().origin.x, wide);
}

TEST_F(ViewsTest, AMessageOfSeveralLinesIsOneLine) {
    const auto lines = [](const char* text) { return ui::Text{.text = text, .lineLimit = 1}; };
    show(ui::VStack{.children = {lines("一 二"), lines("一\n二")}});
    EXPECT_EQ(textsIn(content()), (std::vector<std::string>{"一 二", "一 二"}));
    EXPECT_TRUE(NSEqualSizes(leaves().front().size, leaves().back().size));
}

TEST_F(ViewsTest, FlexibleChildrenShareAlike) {
    const ui::View flexible = ui::FilledShape{.outline = ui::Rectangle{}, .fill = ui::Color{}};
    show(ui::HStack{.spacing = 20, .children = {flexible, flexible}});
    EXPECT_THAT(leaves(), ElementsAre(Frame(0, 0, 90, 100), Frame(110, 0, 90, 100)));
}

// How often text fields were drawn.
int textDraws = 0;
void (*drawText)(id, SEL, NSRect) = nullptr;

void countAndDrawText(id self, SEL selector, NSRect rect) {
    ++textDraws;
    drawText(self, selector, rect);
}

void countTextDraws() {
    using Any = void (*)();
    Method method = class_getInstanceMethod([NSTextField class], @selector(drawRect:));
    IMP former = method_setImplementation(
        method, reinterpret_cast<IMP>(reinterpret_cast<Any>(&countAndDrawText)));
    if (drawText == nullptr) {
        drawText = reinterpret_cast<void (*)(id, SEL, NSRect)>(reinterpret_cast<Any>(former));
    }
}

TEST_F(ViewsTest, AnEqualBodyRedrawsNothing) {
    countTextDraws();
    const auto body = [](const std::string& text) {
        return ui::View(ui::ZStack{.children = {ui::Text{.text = text},
                                                ui::Button{.label = ui::Text{.text = "二"}},
                                                ui::Toggle{.label = "三"}}});
    };
    show(body("一"));
    EXPECT_TRUE(runUntil([] { return textDraws > 0; }));
    runFor(0.05);
    NSView* button = find(content(), [NSButton class], "二");
    textDraws = 0;
    change(body("一"));
    runFor(0.05);
    EXPECT_EQ(textDraws, 0);
    EXPECT_EQ(find(content(), [NSButton class], "二"), button);
    change(body("另一个"));
    EXPECT_TRUE(runUntil([] { return textDraws > 0; }));
}

TEST_F(ViewsTest, TheNewestActionOfAnEqualBodyIsCalled) {
    std::string called;
    const auto body = [&called](const std::string& name) {
        return ui::View(ui::Button{.label = ui::Text{.text = "按"},
                                   .action = [&called, name] { called += name; }});
    };
    show(body("a"));
    change(body("b"));
    click(find(content(), [NSButton class], "按"), NSEventTypeLeftMouseDown,
          NSEventTypeLeftMouseUp);
    EXPECT_EQ(called, "b");
}

TEST_F(ViewsTest, ASwitchShowsItsValueWhateverTheUserMovedItTo) {
    int calls = 0;
    show(ui::Toggle{.label = "三", .isOn = false, .action = [&calls](bool isOn) {
                        EXPECT_TRUE(isOn);
                        ++calls;
                    }});
    auto* control = static_cast<NSSwitch*>(find(content(), [NSSwitch class], "三"));
    [control setState:NSControlStateValueOn];
    [control sendAction:[control action] to:[control target]];
    runFor(0.02);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ([control state], NSControlStateValueOff);
}

TEST_F(ViewsTest, ViewsWithAKeyAreKeptWhenTheyMove) {
    const auto item = [](std::uint64_t key) {
        return ui::View(ui::Text{.text = std::to_string(key)}).id(key);
    };
    show(ui::HStack{.children = {item(1), item(2)}});
    const auto field = [this](NSString* text) -> NSTextField* {
        for (NSView* view in [content() subviews]) {
            auto* found = static_cast<NSTextField*>(view);
            if ([[found stringValue] isEqual:text]) {
                return found;
            }
        }
        return nil;
    };
    NSTextField* second = field(@"2");
    ASSERT_NE(second, nil);
    change(ui::HStack{.children = {item(2), item(3)}});
    EXPECT_EQ(field(@"2"), second);
    EXPECT_EQ(field(@"1"), nil);
    EXPECT_EQ(textsIn(content()), (std::vector<std::string>{"2", "3"}));
}

TEST_F(ViewsTest, ARowScrollsAndKeepsItsPosition) {
    const auto body = [](const std::string& text) {
        return ui::View(ui::VStack{
            .children = {ui::HorizontalScroll{.content = ui::View(ui::HStack{
                                                  .children = {box(300, 20), box(300, 20)}})},
                         ui::Text{.text = text}}});
    };
    show(body("a"));
    auto* scroll = static_cast<NSScrollView*>([[content() subviews] firstObject]);
    ASSERT_TRUE([scroll isKindOfClass:[NSScrollView class]]);
    EXPECT_EQ([[scroll documentView] frame].size.width, 600);
    EXPECT_EQ([scroll frame].size.width, 200);
    [[scroll contentView] scrollToPoint:NSMakePoint(150, 0)];
    change(body("b"));
    EXPECT_EQ([[scroll contentView] bounds].origin.x, 150);
}

TEST_F(ViewsTest, AFormTakesTheWidthBesideItsScroller) {
    const auto form = [](int rows) {
        return ui::View(ui::GroupedForm{
            .sections = {{.title = "标题", .rows = std::vector<ui::View>(rows, box(30, 20))}}});
    };
    show(form(1), NSMakeSize(200, 150));
    const auto scroll = [this] {
        return static_cast<NSScrollView*>([[content() subviews] firstObject]);
    };
    EXPECT_EQ([[scroll() documentView] frame].size.width, 200);
    EXPECT_EQ([[scroll() documentView] frame].size.height, 150);
    change(form(20));
    EXPECT_GT([[scroll() documentView] frame].size.height, 400);
    EXPECT_EQ([[scroll() documentView] frame].size.width, [scroll() contentSize].width);
    EXPECT_LT([scroll() contentSize].width, 200);
    change(form(1));
    EXPECT_EQ([[scroll() documentView] frame].size.width, 200);
}

TEST_F(ViewsTest, HelpAndLabelReachTheControl) {
    show(ui::View(ui::Button{.label = ui::Symbol{.name = "command"},
                             .style = ui::ButtonStyle::Borderless})
             .help("提示\n第二行")
             .accessibilityLabel("名称"));
    NSView* button = find(content(), [NSButton class], "提示");
    ASSERT_NE(button, nil);
    EXPECT_STREQ([[button toolTip] UTF8String], "提示\n第二行");
    EXPECT_STREQ([[button accessibilityLabel] UTF8String], "名称");
}

// Takes what the test says, and keeps what it is handed.
class Watcher final : public ui::EventView {
  public:
    ui::EventView* hitTest(const ScreenPoint& point) override {
        asked = point;
        return takes ? this : nullptr;
    }
    void rightMouseDown(const Event& event) override { pressed = event; }

    bool takes = true;
    std::optional<ScreenPoint> asked;
    std::optional<Event> pressed;
};

TEST(WatchViewTest, LeavesTheDecisionToItsTarget) {
    const auto view = Owned<PelistraWatchView*>::adopt(
        [[PelistraWatchView alloc] initWithFrame:NSMakeRect(10, 20, 40, 36)]);
    const auto around =
        Owned<NSView*>::adopt([[NSView alloc] initWithFrame:NSMakeRect(0, 0, 100, 100)]);
    [around.get() addSubview:view.get()];
    EXPECT_EQ([view.get() hitTest:NSMakePoint(15, 25)], nil);
    auto* watcher = new Watcher;
    view.get()->target.reset(watcher);
    EXPECT_EQ([view.get() hitTest:NSMakePoint(15, 25)], view.get());
    EXPECT_EQ(watcher->asked, (ScreenPoint{.x = 5, .y = 5}));
    // The point plays no part here.
    EXPECT_EQ([view.get() hitTest:NSMakePoint(-9000, 9000)], view.get());
    watcher->takes = false;
    EXPECT_EQ([view.get() hitTest:NSMakePoint(15, 25)], nil);
}

TEST(WatchViewTest, HandsOnTheVeryEvent) {
    const auto view =
        Owned<PelistraWatchView*>::adopt([[PelistraWatchView alloc] initWithFrame:NSZeroRect]);
    auto* watcher = new Watcher;
    view.get()->target.reset(watcher);
    const auto event = [](NSEventType type) {
        return [NSEvent mouseEventWithType:type
                                  location:NSZeroPoint
                             modifierFlags:NSEventModifierFlagOption
                                 timestamp:0
                              windowNumber:0
                                   context:nil
                               eventNumber:0
                                clickCount:1
                                  pressure:1];
    };
    [view.get() rightMouseUp:event(NSEventTypeRightMouseUp)];
    EXPECT_EQ(watcher->pressed, std::nullopt);
    [view.get() rightMouseDown:event(NSEventTypeRightMouseDown)];
    EXPECT_EQ(watcher->pressed,
              (Event{.type = EventType::RightMouseDown, .modifierFlags = modifierOption}));
}

TEST_F(ViewsTest, AMaterialHasContinuousCorners) {
    show(ui::FilledShape{.outline = ui::RoundedRectangle{.cornerRadius = 16},
                         .fill = ui::Material::UltraThin});
    NSView* material = [[content() subviews] firstObject];
    ASSERT_TRUE([material isKindOfClass:[NSVisualEffectView class]]);
    NSImage* mask = [static_cast<NSVisualEffectView*>(material) maskImage];
    // As far as a continuous corner of that radius reaches.
    EXPECT_EQ([mask capInsets].left, 25);
    EXPECT_EQ([mask capInsets].bottom, 25);
    EXPECT_EQ([mask resizingMode], NSImageResizingModeStretch);
    EXPECT_TRUE(NSEqualSizes([mask size], NSMakeSize(51, 51)));
    EXPECT_EQ([[material layer] cornerRadius], 0);
}

TEST(StyleTest, ARoundedOutlineHasTheCornersThatItAsksFor) {
    const NSRect area = NSMakeRect(10, 20, 100, 60);
    const auto begin = [area](const ui::RoundedRectangle& outline) {
        NSBezierPath* path = nativePath(outline, area);
        EXPECT_TRUE(NSContainsRect(NSInsetRect(area, -0.1, -0.1), [path bounds]));
        EXPECT_TRUE(NSContainsRect([path bounds], NSInsetRect(area, 0.1, 0.1)));
        EXPECT_TRUE([path containsPoint:NSMakePoint(60, 50)]);
        EXPECT_TRUE([path containsPoint:NSMakePoint(16.5, 26.5)]);
        EXPECT_FALSE([path containsPoint:NSMakePoint(14, 24)]);
        EXPECT_FALSE([path containsPoint:NSMakePoint(106, 76)]);
        NSPoint points[3];
        [path elementAtIndex:0 associatedPoints:points];
        return points[0];
    };
    EXPECT_EQ(begin({.cornerRadius = 16, .continuous = true}).y, 20 + 1.528665 * 16);
    EXPECT_NE(begin({.cornerRadius = 16, .continuous = false}).y, 20 + 1.528665 * 16);
    // No room for more than an arc.
    EXPECT_NE(begin({.cornerRadius = 20, .continuous = true}).y, 20 + 1.528665 * 20);
}

TEST_F(ViewsTest, SizesPlacesAndColoursMoveOnLayers) {
    const auto body = [](double width, ui::Role role, std::int64_t value) {
        const ui::View capsule =
            ui::View(ui::FilledShape{.outline = ui::Capsule{}, .fill = ui::Color{.base = role}})
                .frame({.width = width, .height = 8});
        return ui::View(ui::HStack{.children = {capsule, box(20, 8), ui::Spacer{}}})
            .animation(ui::EaseOut{.seconds = 0.3}, value);
    };
    show(body(8, ui::Role::Secondary, 0));
    const auto layer = [this](NSUInteger index) {
        NSView* moving = [[content() subviews] firstObject];
        return [[[moving subviews] objectAtIndex:index] layer];
    };
    ASSERT_NE(layer(0), nil);
    [content() display];
    EXPECT_EQ([layer(0) cornerRadius], 4);
    const auto before = Owned<id>::share(reinterpret_cast<id>([layer(0) backgroundColor]));
    EXPECT_TRUE([before.get() isEqual:[NSColor secondaryLabelColor]]);

    change(body(28, ui::Role::Accent, 1));
    const auto from = [](CALayer* of, NSString* path) {
        return [static_cast<CABasicAnimation*>([of animationForKey:path]) fromValue];
    };
    EXPECT_TRUE(NSEqualSizes([from(layer(0), @"bounds") rectValue].size, NSMakeSize(8, 8)));
    EXPECT_EQ(from(layer(0), @"backgroundColor"), before.get());
    EXPECT_EQ([from(layer(1), @"position") pointValue].x, 8);
    EXPECT_EQ([layer(1) animationForKey:@"bounds"], nil);
    [content() display];
    EXPECT_NE(reinterpret_cast<id>([layer(0) backgroundColor]), before.get());
}

TEST_F(ViewsTest, AnAlertIsDecidedWhenItIsShown) {
    const auto body = [](bool isPresented, std::uint64_t occasion) {
        return box(10, 10).alert(
            {.title = "标题", .isPresented = isPresented, .occasion = occasion});
    };
    show(body(true, 1));
    const auto asked = [] { return recorded("NSAlert beginSheet").size(); };
    EXPECT_EQ(asked(), 0U);
    runFor(0.02);
    EXPECT_EQ(asked(), 1U);
    change(body(true, 1));
    EXPECT_EQ(asked(), 1U);

    // Without a window it waits for one.
    const auto hosting = Owned<NSView*>::share(content());
    NSWindow* window = [hosting.get() window];
    [window setContentView:nil];
    change(body(true, 2));
    EXPECT_EQ(asked(), 1U);
    [window setContentView:hosting.get()];
    runFor(0.02);
    EXPECT_EQ(asked(), 2U);

    [window setContentView:nil];
    change(body(true, 3));
    change(body(false, 3));
    [window setContentView:hosting.get()];
    runFor(0.02);
    EXPECT_EQ(asked(), 2U);
}

TEST_F(ViewsTest, NothingOfAViewOutlivesItsWindow) {
    @autoreleasepool {
        show(ui::Text{.text = "一"});
        EXPECT_EQ(liveCounts().observers, 1U);
        TearDown();
    }
    EXPECT_EQ(liveCounts().observers, 0U);
}

class QuitTest : public LaunchedApplication {};

TEST_F(QuitTest, TheRedButtonEndsTheApplication) {
    setArguments({"--show-settings"});
    launch();
    ASSERT_TRUE(runUntil([] { return windowTitled(@"Pelistra Settings") != nil; }));
    auto* quit = static_cast<NSButton*>(
        find([windowTitled(@"Pelistra Settings") contentView], [NSButton class], "退出 Pelistra"));
    EXPECT_TRUE([quit hasDestructiveAction]);
    click(quit, NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp);
    EXPECT_THAT(recorded("NSApplication terminate:"), ElementsAre("NSApplication terminate:"));
}

} // namespace
} // namespace pelistra::macos

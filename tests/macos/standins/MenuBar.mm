#include "MenuBar.h"

#include "Counters.h"
#include "Format.h"
#include "World.h"

#include <algorithm>
#include <unistd.h>

using namespace pelistra::testing::standins;

namespace {

NSMutableArray* statusItems() {
    static NSMutableArray* items = [[NSMutableArray alloc] init];
    return items;
}

std::string nameOf(StandinStatusItem* item) {
    const NSUInteger index = [statusItems() indexOfObjectIdenticalTo:item];
    return item->autosaveName_ != nil ? [item->autosaveName_ UTF8String] : format("#{}", index);
}

} // namespace

@implementation StandinStatusBarButton

- (StandinStatusItem*)item {
    for (StandinStatusItem* item in statusItems()) {
        if (item->button_ == self) {
            return item;
        }
    }
    return nil;
}

- (std::string)label {
    StandinStatusItem* item = [self item];
    return item == nil ? "NSStatusBarButton" : "NSStatusBarButton " + nameOf(item);
}

- (void)setImage:(NSImage*)image {
    if ([self item] != nil) {
        record(image == nil ? [self label] + " setImage nil"
                            : format("{} setImage {} template={} \"{}\"", [self label],
                                     [image standinSymbolName] != nil
                                         ? [[image standinSymbolName] UTF8String]
                                         : "drawn",
                                     [image isTemplate] ? "YES" : "NO",
                                     [[image accessibilityDescription] UTF8String]));
    }
    const Unrecorded inside;
    [super setImage:image];
}

- (void)setToolTip:(NSString*)toolTip {
    record(format("{} setToolTip \"{}\"", [self label], [toolTip UTF8String]));
    [super setToolTip:toolTip];
}

- (void)setTarget:(id)target {
    record(format("{} setTarget {}", [self label], target == nil ? "nil" : "object"));
    [super setTarget:target];
}

- (void)setAction:(SEL)action {
    record(
        format("{} setAction {}", [self label], action == nullptr ? "null" : sel_getName(action)));
    [super setAction:action];
}

- (NSInteger)sendActionOn:(NSInteger)mask {
    if ([self item] != nil) {
        record(format("{} sendActionOn {}", [self label],
                      hexadecimal(static_cast<unsigned long>(mask))));
    }
    return [super sendActionOn:mask];
}

- (NSAppearance*)effectiveAppearance {
    return [NSAppearance
        appearanceNamed:world().menuBarIsDark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua];
}

// GNUstep's buttons know the left mouse button only.
- (void)rightMouseDown:(NSEvent*)event {
    (void)event;
}

- (void)rightMouseUp:(NSEvent*)event {
    (void)event;
    [self sendAction:[self action] to:[self target]];
}

@end

@implementation StandinStatusItem

- (void)dealloc {
    const Unrecorded inside;
    [window_ setContentView:nil];
    [window_ release];
    [button_ release];
    [autosaveName_ release];
    [super dealloc];
}

- (void)setLength:(CGFloat)length {
    record(format("NSStatusItem {} setLength {}", nameOf(self), length));
    length_ = length;
    layOutMenuBar();
}

- (CGFloat)length {
    return length_;
}

- (void)setAutosaveName:(NSString*)name {
    record(format("NSStatusItem {} setAutosaveName \"{}\"", nameOf(self), [name UTF8String]));
    autosaveName_ = [name copy];
    layOutMenuBar();
}

- (NSString*)autosaveName {
    return autosaveName_;
}

- (void)setVisible:(BOOL)visible {
    record(format("NSStatusItem {} setVisible {}", nameOf(self), visible ? "YES" : "NO"));
    visible_ = visible;
    layOutMenuBar();
}

- (BOOL)isVisible {
    return visible_;
}

- (StandinStatusBarButton*)button {
    return button_;
}

@end

@implementation StandinStatusBar

+ (StandinStatusBar*)systemStatusBar {
    static StandinStatusBar* bar = [[StandinStatusBar alloc] init];
    return bar;
}

- (StandinStatusItem*)statusItemWithLength:(CGFloat)length {
    record(format("NSStatusBar statusItemWithLength {}", length));
    const Unrecorded inside;
    StandinStatusItem* item = [[[StandinStatusItem alloc] init] autorelease];
    item->length_ = length;
    item->visible_ = YES;
    if (world().statusItemsHaveButtons) {
        item->window_ = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 1, 1)
                                                    styleMask:NSWindowStyleMaskBorderless
                                                      backing:NSBackingStoreBuffered
                                                        defer:NO];
        [item->window_ setReleasedWhenClosed:NO];
        [item->window_ setLevel:NSStatusWindowLevel];
        item->button_ = [[StandinStatusBarButton alloc] initWithFrame:NSMakeRect(0, 0, 1, 1)];
        [item->button_ setBordered:NO];
        [item->button_ setTitle:@""];
        [item->button_ setImagePosition:NSImageOnly];
        [item->window_ setContentView:item->button_];
    }
    [statusItems() addObject:item];
    layOutMenuBar();
    return item;
}

- (void)removeStatusItem:(StandinStatusItem*)item {
    record(format("NSStatusBar removeStatusItem {}", nameOf(item)));
    const Unrecorded inside;
    [item->window_ orderOut:nil];
    [statusItems() removeObjectIdenticalTo:item];
    layOutMenuBar();
}

- (CGFloat)thickness {
    return world().barHeight;
}

@end

namespace pelistra::testing::standins {

namespace {

StandinStatusItem* itemNamed(NSString* name) {
    for (StandinStatusItem* item in statusItems()) {
        if ([item->autosaveName_ isEqual:name]) {
            return item;
        }
    }
    return nil;
}

double widthOf(StandinStatusItem* item) {
    return item->length_ == NSSquareStatusItemLength ? world().barHeight : item->length_;
}

// Places items from the right edge leftwards.
class Layout {
  public:
    explicit Layout(double right) : right_(right) {}

    void own(StandinStatusItem* item, std::uint32_t window) {
        if (item == nil || !item->visible_) {
            return;
        }
        place({.window = window,
               .ownerPid = ::getpid(),
               .ownerName = "Pelistra",
               .name = [item->autosaveName_ UTF8String],
               .frame = NSMakeRect(0, 0, widthOf(item), world().barHeight)});
        // Without a screen there is no place to show it at.
        if (world().screens.empty()) {
            return;
        }
        const Unrecorded inside;
        const NSRect frame = windows.front().frame;
        const NSRect screen = world().screens[0].frame;
        [item->window_
            setFrame:NSMakeRect(frame.origin.x, NSMaxY(screen) - frame.origin.y - frame.size.height,
                                frame.size.width, frame.size.height)
             display:NO];
        [item->window_ orderFrontRegardless];
    }

    void foreign(const std::vector<ForeignItem>& items) {
        for (auto item = items.rbegin(); item != items.rend(); ++item) {
            place({.window = item->window,
                   .ownerPid = item->ownerPid,
                   .ownerName = item->ownerName,
                   .name = item->windowName,
                   .frame = NSMakeRect(0, 0, item->width, world().barHeight)});
        }
    }

    std::vector<MenuBarWindow> windows;

  private:
    void place(MenuBarWindow window) {
        right_ -= window.frame.size.width;
        window.frame.origin.x = right_;
        windows.insert(windows.begin(), std::move(window));
    }

    double right_;
};

constexpr std::uint32_t controlWindow = 9001;
constexpr std::uint32_t dividerWindow = 9002;

std::vector<MenuBarWindow> placed;

} // namespace

const std::vector<MenuBarWindow>& menuBarWindows() { return placed; }

void layOutMenuBar() {
    Layout layout(world().screens.empty() ? 0 : NSMaxX(world().screens[0].frame));
    StandinStatusItem* control = itemNamed(@"PelistraV3.Control");
    StandinStatusItem* divider = itemNamed(@"PelistraV3.Divider");
    if (world().dividerIsRightOfControl) {
        layout.own(divider, dividerWindow);
        layout.own(control, controlWindow);
        layout.foreign(world().itemsBetween);
    } else {
        layout.own(control, controlWindow);
        layout.foreign(world().itemsBetween);
        layout.own(divider, dividerWindow);
    }
    layout.foreign(world().hiddenItems);
    placed = std::move(layout.windows);
}

std::optional<NSRect> menuBarFrame(std::uint32_t window) {
    const auto found = std::ranges::find(placed, window, &MenuBarWindow::window);
    return found != placed.end() ? std::optional(found->frame) : std::nullopt;
}

NSStatusItem* statusItem(NSString* autosaveName) { return itemNamed(autosaveName); }

std::size_t liveStatusItems() { return [statusItems() count]; }

} // namespace pelistra::testing::standins

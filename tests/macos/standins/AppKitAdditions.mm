#include "Attachments.h"
#include "Counters.h"
#include "Format.h"
#include "World.h"

#include <algorithm>

using namespace pelistra::testing::standins;

@implementation NSApplication (Standin)

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy {
    record(format("NSApplication setActivationPolicy {}", activationPolicy));
    return YES;
}

@end

@implementation NSWindow (Standin)

- (void)setTitleVisibility:(NSWindowTitleVisibility)visibility {
    record(format("NSWindow setTitleVisibility: {}", static_cast<NSInteger>(visibility)));
}

- (void)setTitlebarAppearsTransparent:(BOOL)transparent {
    record(format("NSWindow setTitlebarAppearsTransparent: {}", transparent ? "YES" : "NO"));
}

- (void)setAnimationBehavior:(NSWindowAnimationBehavior)behavior {
    record(format("NSPanel setAnimationBehavior: {}", static_cast<NSInteger>(behavior)));
}

- (void)setAccessibilityLabel:(NSString*)label {
    record(format("NSPanel setAccessibilityLabel: \"{}\"", [label UTF8String]));
}

- (void)setAllowsToolTipsWhenApplicationIsInactive:(BOOL)allows {
    [attachmentsOf(self) setObject:[NSNumber numberWithBool:allows] forKey:@"toolTips"];
}

- (BOOL)allowsToolTipsWhenApplicationIsInactive {
    return [[attachmentsOf(self) objectForKey:@"toolTips"] boolValue];
}

- (void)setAppearance:(NSAppearance*)appearance {
    [attachmentsOf(self) removeObjectForKey:@"appearance"];
    if (appearance != nil) {
        [attachmentsOf(self) setObject:appearance forKey:@"appearance"];
    }
}

- (NSAppearance*)appearance {
    return [attachmentsOf(self) objectForKey:@"appearance"];
}

@end

// Global event monitors

@interface StandinMonitor : NSObject {
  @public
    NSEventMask mask;
    void (^handler)(NSEvent*);
}
@end

@implementation StandinMonitor
- (void)dealloc {
    Block_release(handler);
    [super dealloc];
}
@end

namespace {

NSMutableArray* monitors() {
    static NSMutableArray* list = [[NSMutableArray alloc] init];
    return list;
}

} // namespace

@implementation NSEvent (Standin)

+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block {
    record(format("NSEvent addGlobalMonitorForEventsMatchingMask {}", mask));
    if (world().refusesMonitors) {
        return nil;
    }
    StandinMonitor* monitor = [[[StandinMonitor alloc] init] autorelease];
    monitor->mask = mask;
    monitor->handler = Block_copy(block);
    [monitors() addObject:monitor];
    return monitor;
}

+ (void)removeMonitor:(id)eventMonitor {
    record("NSEvent removeMonitor");
    [monitors() removeObjectIdenticalTo:eventMonitor];
}

@end

// Pictures

@interface StandinDrawnImageRep : NSImageRep {
  @public
    BOOL (^handler)(NSRect);
}
@end

@implementation StandinDrawnImageRep

- (id)copyWithZone:(NSZone*)zone {
    StandinDrawnImageRep* copy = [super copyWithZone:zone];
    copy->handler = Block_copy(handler);
    return copy;
}

- (void)dealloc {
    Block_release(handler);
    [super dealloc];
}

- (BOOL)draw {
    const NSSize size = [self size];
    return handler(NSMakeRect(0, 0, size.width, size.height));
}

@end

namespace {

// Names of symbols that the macOS of the deployment target has, as far as the product uses them.
NSSet* symbolNames() {
    return [NSSet setWithObjects:@"chevron.right", @"chevron.up", @"chevron.down",
                                 @"camera.badge.ellipsis", @"slider.horizontal.3", @"wifi",
                                 @"battery.75percent", @"clock", @"speaker.wave.2", @"play.circle",
                                 @"keyboard", @"circle.grid.2x2", @"checkmark.shield.fill",
                                 @"command", @"checkmark", nil];
}

// A chevron is drawn as one, every other symbol as a rounded square with its first letter.
void drawSymbol(NSString* name, NSRect area) {
    [[NSColor blackColor] set];
    NSBezierPath* path = [NSBezierPath bezierPath];
    [path setLineWidth:1.5];
    if ([name hasPrefix:@"chevron"]) {
        const NSRect inner = NSInsetRect(area, area.size.width * 0.3, area.size.height * 0.3);
        if ([name isEqual:@"chevron.right"]) {
            [path moveToPoint:NSMakePoint(NSMinX(inner), NSMinY(inner))];
            [path lineToPoint:NSMakePoint(NSMaxX(inner), NSMidY(inner))];
            [path lineToPoint:NSMakePoint(NSMinX(inner), NSMaxY(inner))];
        } else {
            const bool up = [name isEqual:@"chevron.up"];
            [path moveToPoint:NSMakePoint(NSMinX(inner), up ? NSMinY(inner) : NSMaxY(inner))];
            [path lineToPoint:NSMakePoint(NSMidX(inner), up ? NSMaxY(inner) : NSMinY(inner))];
            [path lineToPoint:NSMakePoint(NSMaxX(inner), up ? NSMinY(inner) : NSMaxY(inner))];
        }
        [path stroke];
        return;
    }
    path = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(area, 2, 2) xRadius:3 yRadius:3];
    [path setLineWidth:1.2];
    [path stroke];
    NSDictionary* attributes =
        @{NSFontAttributeName : [NSFont boldSystemFontOfSize:area.size.height * 0.45]};
    NSString* letter = [name substringToIndex:1];
    const NSSize size = [letter sizeWithAttributes:attributes];
    [letter drawAtPoint:NSMakePoint(NSMidX(area) - size.width / 2, NSMidY(area) - size.height / 2)
         withAttributes:attributes];
}

constexpr double symbolPoints = 16;

} // namespace

@implementation NSImage (StandinSymbol)

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
    NSImage* image = [NSImage imageWithSystemSymbolName:[self standinSymbolName]
                               accessibilityDescription:[self accessibilityDescription]];
    const double side = configuration->pointSize * 1.25;
    [[[image representations] firstObject] setSize:NSMakeSize(side, side)];
    [image setSize:NSMakeSize(side, side)];
    return image;
}

@end

@implementation NSImage (Standin)

+ (instancetype)imageWithSystemSymbolName:(NSString*)symbolName
                 accessibilityDescription:(NSString*)description {
    if (![symbolNames() containsObject:symbolName]) {
        return nil;
    }
    NSImage* image = [self imageWithSize:NSMakeSize(symbolPoints, symbolPoints)
                                 flipped:NO
                          drawingHandler:^BOOL(NSRect destination) {
                            drawSymbol(symbolName, destination);
                            return YES;
                          }];
    [attachmentsOf(image) setObject:symbolName forKey:@"names"];
    [image setAccessibilityDescription:(description != nil ? description : @"")];
    return image;
}

+ (instancetype)imageWithSize:(NSSize)size
                      flipped:(BOOL)flipped
               drawingHandler:(BOOL (^)(NSRect dstRect))drawingHandler {
    record(format("NSImage imageWithSize {{{}, {}}} flipped={}", size.width, size.height,
                  flipped ? "YES" : "NO"));
    NSImage* image = [[[self alloc] initWithSize:size] autorelease];
    StandinDrawnImageRep* representation = [[[StandinDrawnImageRep alloc] init] autorelease];
    representation->handler = Block_copy(drawingHandler);
    [representation setSize:size];
    [representation setAlpha:YES];
    [representation setPixelsWide:NSImageRepMatchesDevice];
    [representation setPixelsHigh:NSImageRepMatchesDevice];
    [image addRepresentation:representation];
    return image;
}

- (NSString*)standinSymbolName {
    return [attachmentsOf(self) objectForKey:@"names"];
}

- (void)setTemplate:(BOOL)isTemplate {
    [attachmentsOf(self) setObject:[NSNumber numberWithBool:isTemplate] forKey:@"templates"];
}

- (BOOL)isTemplate {
    return [[attachmentsOf(self) objectForKey:@"templates"] boolValue];
}

- (void)setAccessibilityDescription:(NSString*)description {
    [attachmentsOf(self) setObject:description forKey:@"descriptions"];
}

- (NSString*)accessibilityDescription {
    NSString* description = [attachmentsOf(self) objectForKey:@"descriptions"];
    return description != nil ? description : @"";
}

@end

namespace pelistra::testing::standins {

void clickElsewhere(NSEventType type) {
    for (StandinMonitor* monitor in [[monitors() copy] autorelease]) {
        if ((monitor->mask & (NSEventMask{1} << type)) != 0) {
            monitor->handler([NSEvent mouseEventWithType:type
                                                location:NSZeroPoint
                                           modifierFlags:0
                                               timestamp:0
                                            windowNumber:0
                                                 context:nil
                                             eventNumber:0
                                              clickCount:1
                                                pressure:1]);
        }
    }
}

std::size_t liveMonitors() { return [monitors() count]; }

void forgetMonitors() { [monitors() removeAllObjects]; }

} // namespace pelistra::testing::standins

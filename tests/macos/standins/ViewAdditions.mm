#include "Attachments.h"
#include "Format.h"
#include "World.h"

using namespace pelistra::testing::standins;

namespace {

constexpr double titleBarHeight = 28;

} // namespace

@implementation NSView (Standin)

- (void)setWantsLayer:(BOOL)wantsLayer {
    (void)wantsLayer;
}

- (CALayer*)layer {
    CALayer* layer = [attachmentsOf(self) objectForKey:@"layers"];
    if (layer == nil) {
        layer = [[[CALayer alloc] init] autorelease];
        [attachmentsOf(self) setObject:layer forKey:@"layers"];
    }
    return layer;
}

- (NSEdgeInsets)safeAreaInsets {
    const bool isUnderTitleBar =
        ([[self window] styleMask] & NSWindowStyleMaskFullSizeContentView) != 0;
    return {isUnderTitleBar ? titleBarHeight : 0, 0, 0, 0};
}

- (NSSize)intrinsicContentSize {
    return NSMakeSize(-1, -1);
}

- (void)layout {
}

- (void)updateTrackingAreas {
}

- (void)addTrackingArea:(NSTrackingArea*)trackingArea {
    NSMutableArray* areas = [attachmentsOf(self) objectForKey:@"trackingAreas"];
    if (areas == nil) {
        areas = [NSMutableArray array];
        [attachmentsOf(self) setObject:areas forKey:@"trackingAreas"];
    }
    [areas addObject:trackingArea];
}

- (void)removeTrackingArea:(NSTrackingArea*)trackingArea {
    [[attachmentsOf(self) objectForKey:@"trackingAreas"] removeObjectIdenticalTo:trackingArea];
}

- (NSArray*)trackingAreas {
    NSArray* areas = [attachmentsOf(self) objectForKey:@"trackingAreas"];
    return areas != nil ? areas : [NSArray array];
}

- (void)drawFocusRingMask {
}

- (NSRect)focusRingMaskBounds {
    return NSZeroRect;
}

- (void)setAccessibilityElement:(BOOL)isElement {
    (void)isElement;
}

- (void)setAccessibilityLabel:(NSString*)label {
    [attachmentsOf(self) setObject:label forKey:@"labels"];
}

- (NSString*)accessibilityLabel {
    return [attachmentsOf(self) objectForKey:@"labels"];
}

- (NSAppearance*)effectiveAppearance {
    NSAppearance* own = [[self window] appearance];
    return own != nil ? own : [NSAppearance appearanceNamed:NSAppearanceNameAqua];
}

@end

// GNUstep's switch answers for itself, with nothing.
@implementation NSSwitch (StandinLabel)

- (void)setAccessibilityLabel:(NSString*)label {
    [attachmentsOf(self) setObject:label forKey:@"labels"];
}

- (NSString*)accessibilityLabel {
    return [attachmentsOf(self) objectForKey:@"labels"];
}

@end

@implementation NSControl (Standin)

- (void)setControlSize:(NSControlSize)controlSize {
    // GNUstep has no large controls.
    if (controlSize <= NSControlSizeMini) {
        [[self cell] setControlSize:controlSize];
    }
}

@end

@implementation NSButton (Standin)

- (void)setContentTintColor:(NSColor*)color {
    (void)color;
}

- (void)setBezelColor:(NSColor*)color {
    (void)color;
}

- (void)setHasDestructiveAction:(BOOL)isDestructive {
    [attachmentsOf(self) setObject:[NSNumber numberWithBool:isDestructive] forKey:@"destructive"];
}

- (BOOL)hasDestructiveAction {
    return [[attachmentsOf(self) objectForKey:@"destructive"] boolValue];
}

@end

@implementation NSImageView (Standin)

- (void)setContentTintColor:(NSColor*)color {
    (void)color;
}

@end

// GNUstep has these two colours by name only, without a value.
@implementation NSColor (StandinLabels)

+ (NSColor*)labelColor {
    return [NSColor colorWithCalibratedWhite:0 alpha:0.85];
}

+ (NSColor*)secondaryLabelColor {
    return [NSColor colorWithCalibratedWhite:0 alpha:0.5];
}

@end

// GNUstep's draws nothing.
@implementation NSVisualEffectView (StandinMaterial)

- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    const double radius = [[self layer] cornerRadius];
    [[NSColor colorWithCalibratedWhite:0.95 alpha:1] setFill];
    [[NSBezierPath bezierPathWithRoundedRect:[self bounds] xRadius:radius yRadius:radius] fill];
}

@end

@implementation NSColor (Standin)

+ (NSColor*)controlAccentColor {
    return [NSColor colorWithCalibratedRed:0 green:0.478 blue:1 alpha:1];
}

+ (NSColor*)separatorColor {
    return [NSColor colorWithCalibratedWhite:0 alpha:0.1];
}

+ (NSColor*)colorWithName:(NSColorName)colorName
          dynamicProvider:(NSColor* (^)(NSAppearance*))dynamicProvider {
    (void)colorName;
    return dynamicProvider(nil);
}

@end

NSFontTextStyle const NSFontTextStyleCaption1 = @"UICTFontTextStyleCaption1";
NSFontTextStyle const NSFontTextStyleCaption2 = @"UICTFontTextStyleCaption2";
NSFontTextStyle const NSFontTextStyleSubheadline = @"UICTFontTextStyleSubhead";
NSFontTextStyle const NSFontTextStyleBody = @"UICTFontTextStyleBody";
NSFontTextStyle const NSFontTextStyleHeadline = @"UICTFontTextStyleHeadline";
NSFontTextStyle const NSFontTextStyleTitle3 = @"UICTFontTextStyleTitle3";

@implementation NSFont (Standin)

+ (NSFont*)systemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight {
    return weight >= NSFontWeightSemibold ? [NSFont boldSystemFontOfSize:fontSize]
                                          : [NSFont systemFontOfSize:fontSize];
}

// The sizes of the macOS desktop.
+ (NSFont*)preferredFontForTextStyle:(NSFontTextStyle)style options:(NSDictionary*)options {
    (void)options;
    if ([style isEqual:NSFontTextStyleHeadline]) {
        return [NSFont boldSystemFontOfSize:13];
    }
    if ([style isEqual:NSFontTextStyleTitle3]) {
        return [NSFont systemFontOfSize:15];
    }
    if ([style isEqual:NSFontTextStyleSubheadline]) {
        return [NSFont systemFontOfSize:11];
    }
    if ([style isEqual:NSFontTextStyleBody]) {
        return [NSFont systemFontOfSize:13];
    }
    return [NSFont systemFontOfSize:10];
}

@end

@implementation NSImageSymbolConfiguration

+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight {
    (void)weight;
    NSImageSymbolConfiguration* configuration = [[[self alloc] init] autorelease];
    configuration->pointSize = pointSize;
    return configuration;
}

@end

@implementation NSEvent (StandinScrolling)

- (CGFloat)scrollingDeltaX {
    return [self deltaX];
}

- (CGFloat)scrollingDeltaY {
    return [self deltaY];
}

- (BOOL)hasPreciseScrollingDeltas {
    return NO;
}

@end

// GNUstep shows alerts in a loop of their own; here one is a sheet that is only told about.

@implementation NSAlert (Standin)

- (void)beginSheetModalForWindow:(NSWindow*)sheetWindow
               completionHandler:(void (^)(NSModalResponse returnCode))handler {
    (void)sheetWindow;
    record(format("NSAlert beginSheetModalForWindow \"{}\" \"{}\" \"{}\"",
                  [[self messageText] UTF8String], [[self informativeText] UTF8String],
                  [[[[self buttons] firstObject] title] UTF8String]));
    world().dismissAlert = [handler = Block_copy(handler)] {
        handler(1000);
        Block_release(handler);
    };
}

@end

@implementation NSWindow (StandinSheet)

- (void)endSheet:(NSWindow*)sheetWindow {
    (void)sheetWindow;
    record("NSWindow endSheet");
}

@end

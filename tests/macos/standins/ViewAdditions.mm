#include "World.h"

#include "Format.h"

using namespace pelistra::testing::standins;

namespace {

NSMapTable* layers() {
    static NSMapTable* table = [[NSMapTable weakToStrongObjectsMapTable] retain];
    return table;
}

NSMapTable* labels() {
    static NSMapTable* table = [[NSMapTable weakToStrongObjectsMapTable] retain];
    return table;
}

NSMapTable* destructive() {
    static NSMapTable* table = [[NSMapTable weakToStrongObjectsMapTable] retain];
    return table;
}

constexpr double titleBarHeight = 28;

} // namespace

@implementation NSView (Standin)

- (void)setWantsLayer:(BOOL)wantsLayer {
    (void)wantsLayer;
}

- (CALayer*)layer {
    CALayer* layer = [layers() objectForKey:self];
    if (layer == nil) {
        layer = [[[CALayer alloc] init] autorelease];
        [layers() setObject:layer forKey:self];
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

- (void)updateTrackingAreas {
}

- (void)addTrackingArea:(NSTrackingArea*)trackingArea {
    (void)trackingArea;
}

- (void)removeTrackingArea:(NSTrackingArea*)trackingArea {
    (void)trackingArea;
}

- (void)setAccessibilityElement:(BOOL)isElement {
    (void)isElement;
}

- (void)setAccessibilityLabel:(NSString*)label {
    [labels() setObject:label forKey:self];
}

- (NSString*)accessibilityLabel {
    return [labels() objectForKey:self];
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
    [destructive() setObject:[NSNumber numberWithBool:isDestructive] forKey:self];
}

- (BOOL)hasDestructiveAction {
    return [[destructive() objectForKey:self] boolValue];
}

@end

@implementation NSImageView (Standin)

- (void)setContentTintColor:(NSColor*)color {
    (void)color;
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

#include "Attachments.h"
#include "Format.h"
#include "World.h"

using namespace pelistra::testing::standins;

namespace {

constexpr double titleBarHeight = 28;

} // namespace

@implementation NSView (Standin)

- (void)setWantsLayer:(BOOL)wantsLayer {
    if (!wantsLayer) {
        [attachmentsOf(self) removeObjectForKey:@"layers"];
    } else if ([self layer] == nil) {
        CALayer* layer = [[[CALayer alloc] init] autorelease];
        layer->view = self;
        [attachmentsOf(self) setObject:layer forKey:@"layers"];
    }
}

- (BOOL)wantsLayer {
    return [self layer] != nil;
}

- (CALayer*)layer {
    return [attachmentsOf(self) objectForKey:@"layers"];
}

- (BOOL)wantsUpdateLayer {
    return NO;
}

- (void)updateLayer {
}

// What the layer would show.
- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    if (![self wantsUpdateLayer] || [self layer] == nil) {
        return;
    }
    [self updateLayer];
    CALayer* layer = [self layer];
    const double radius = [layer cornerRadius];
    [reinterpret_cast<NSColor*>([layer backgroundColor]) setFill];
    [[NSBezierPath bezierPathWithRoundedRect:[self bounds] xRadius:radius yRadius:radius] fill];
}

- (NSEdgeInsets)alignmentRectInsets {
    return {0, 0, 0, 0};
}

- (NSRect)alignmentRectForFrame:(NSRect)frame {
    const NSEdgeInsets insets = [self alignmentRectInsets];
    return NSMakeRect(frame.origin.x + insets.left, frame.origin.y + insets.top,
                      frame.size.width - insets.left - insets.right,
                      frame.size.height - insets.top - insets.bottom);
}

- (NSRect)frameForAlignmentRect:(NSRect)alignmentRect {
    const NSEdgeInsets insets = [self alignmentRectInsets];
    return NSMakeRect(alignmentRect.origin.x - insets.left, alignmentRect.origin.y - insets.top,
                      alignmentRect.size.width + insets.left + insets.right,
                      alignmentRect.size.height + insets.top + insets.bottom);
}

- (void)viewDidChangeBackingProperties {
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
    [attachmentsOf(self) setObject:[NSNumber numberWithBool:isElement] forKey:@"element"];
}

// As the kinds of views that a screen reader finds by themselves.
- (BOOL)isAccessibilityElement {
    NSNumber* told = [attachmentsOf(self) objectForKey:@"element"];
    return told != nil ? [told boolValue] : [self isKindOfClass:[NSControl class]];
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

- (NSEdgeInsets)alignmentRectInsets {
    return {2, 2, 2, 2};
}

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

// The real one draws some of its looks by the layer alone.
- (BOOL)wantsUpdateLayer {
    return YES;
}

- (NSEdgeInsets)alignmentRectInsets {
    return [self isBordered] ? NSEdgeInsets{1, 5, 4, 5} : NSEdgeInsets{0, 0, 0, 0};
}

- (void)setBezelColor:(NSColor*)color {
    [attachmentsOf(self) setValue:color forKey:@"bezel"];
}

- (NSColor*)bezelColor {
    return [attachmentsOf(self) objectForKey:@"bezel"];
}

- (void)setHasDestructiveAction:(BOOL)isDestructive {
    [attachmentsOf(self) setObject:[NSNumber numberWithBool:isDestructive] forKey:@"destructive"];
}

- (BOOL)hasDestructiveAction {
    return [[attachmentsOf(self) objectForKey:@"destructive"] boolValue];
}

@end

// A label's text begins where the label is aligned.
@implementation NSTextField (StandinLabel)

- (NSEdgeInsets)alignmentRectInsets {
    return [self isBordered] || [self isBezeled] ? NSEdgeInsets{0, 0, 0, 0}
                                                 : NSEdgeInsets{0, 2, 0, 2};
}

@end

@implementation NSImageView (Standin)

- (void)setContentTintColor:(NSColor*)color {
    [attachmentsOf(self) setObject:color forKey:@"tints"];
}

- (NSColor*)contentTintColor {
    return [attachmentsOf(self) objectForKey:@"tints"];
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

- (void)setMaskImage:(NSImage*)image {
    [attachmentsOf(self) setValue:image forKey:@"masks"];
}

- (NSImage*)maskImage {
    return [attachmentsOf(self) objectForKey:@"masks"];
}

- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    // About what the mask lets through.
    const double radius = [[self maskImage] capInsets].left * 2 / 3;
    [[NSColor colorWithCalibratedWhite:0.95 alpha:1] setFill];
    [[NSBezierPath bezierPathWithRoundedRect:[self bounds] xRadius:radius yRadius:radius] fill];
}

@end

@implementation NSColor (Standin)

- (CGColorRef)CGColor {
    return reinterpret_cast<CGColorRef>(self);
}

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

@implementation NSImage (StandinStretching)

- (void)setCapInsets:(NSEdgeInsets)insets {
    [attachmentsOf(self) setObject:[NSValue valueWithBytes:&insets objCType:@encode(NSEdgeInsets)]
                            forKey:@"caps"];
}

- (NSEdgeInsets)capInsets {
    NSEdgeInsets insets{0, 0, 0, 0};
    [[attachmentsOf(self) objectForKey:@"caps"] getValue:&insets];
    return insets;
}

- (void)setResizingMode:(NSImageResizingMode)mode {
    [attachmentsOf(self) setObject:[NSNumber numberWithInteger:mode] forKey:@"resizing"];
}

- (NSImageResizingMode)resizingMode {
    return static_cast<NSImageResizingMode>(
        [[attachmentsOf(self) objectForKey:@"resizing"] integerValue]);
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

// GNUstep shows alerts in a loop of their own; here one is only told about.

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

@implementation NSAlert (StandinModal)

- (NSInteger)runModal {
    record(format("NSAlert runModal \"{}\" \"{}\"", [[self messageText] UTF8String],
                  [[self informativeText] UTF8String]));
    return 1000;
}

@end

@implementation NSWindow (StandinScale)

- (CGFloat)backingScaleFactor {
    return world().backingScale;
}

@end

@implementation NSWindow (StandinSheet)

- (void)endSheet:(NSWindow*)sheetWindow {
    (void)sheetWindow;
    record("NSWindow endSheet");
}

@end

// Stand-in: see tests/macos/standins/README.md. GNUstep's AppKit, and what it lacks of the real one
// with the real types.
#pragma once

#include_next <AppKit/AppKit.h>

#include <CoreGraphics/CoreGraphics.h>
#include <QuartzCore/QuartzCore.h>

// Names that GNUstep, or an older release of it, has only under their older spelling
#define NSEventTypeLeftMouseDown NSLeftMouseDown
#define NSEventTypeLeftMouseUp NSLeftMouseUp
#define NSEventTypeRightMouseDown NSRightMouseDown
#define NSEventTypeRightMouseUp NSRightMouseUp
#define NSEventModifierFlagOption NSAlternateKeyMask
#define NSControlSizeLarge static_cast<decltype(NSControlSizeRegular)>(3)
#define NSBezelStylePush NSRoundedBezelStyle
#define NSBezelStyleAccessoryBarAction NSRoundRectBezelStyle
#define NSButtonTypeMomentaryPushIn NSMomentaryPushInButton
#define NSCompositingOperationSourceOver NSCompositeSourceOver
#define NSLineCapStyleButt NSButtLineCapStyle
#define NSLineJoinStyleMiter NSMiterLineJoinStyle

// GNUstep's has another value
#define NSStatusWindowLevel 25

typedef NSInteger NSWindowLevel;
typedef NSString* NSFontTextStyle;
typedef NSString* NSAppearanceName;
typedef NSString* NSFontTextStyleOptionKey;
typedef NSString* NSColorName;
typedef NSInteger NSModalResponse;
typedef NSString* NSStatusItemAutosaveName;

typedef enum : NSInteger {
    NSWindowTitleVisible = 0,
    NSWindowTitleHidden = 1,
} NSWindowTitleVisibility;

typedef enum : NSInteger {
    NSWindowAnimationBehaviorDefault = 0,
    NSWindowAnimationBehaviorUtilityWindow = 4,
} NSWindowAnimationBehavior;

@interface NSApplication (Standin)
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
@end

@interface NSWindow (Standin)
- (void)setTitleVisibility:(NSWindowTitleVisibility)visibility;
- (void)setTitlebarAppearsTransparent:(BOOL)transparent;
- (void)setAnimationBehavior:(NSWindowAnimationBehavior)behavior;
- (void)setAccessibilityLabel:(NSString*)label;
- (void)setAllowsToolTipsWhenApplicationIsInactive:(BOOL)allows;
- (BOOL)allowsToolTipsWhenApplicationIsInactive;
- (void)setAppearance:(NSAppearance*)appearance;
- (NSAppearance*)appearance;
@end

@interface NSWindow (StandinSheet)
- (void)endSheet:(NSWindow*)sheetWindow;
@end

@interface NSAlert (Standin)
- (void)beginSheetModalForWindow:(NSWindow*)sheetWindow
               completionHandler:(void (^)(NSModalResponse returnCode))handler;
@end

@interface NSView (Standin)
- (void)setWantsLayer:(BOOL)wantsLayer;
- (BOOL)wantsLayer;
- (CALayer*)layer;
- (BOOL)wantsUpdateLayer;
- (void)updateLayer;
- (NSEdgeInsets)alignmentRectInsets;
- (NSRect)alignmentRectForFrame:(NSRect)frame;
- (NSRect)frameForAlignmentRect:(NSRect)alignmentRect;
- (void)viewDidChangeBackingProperties;
- (NSEdgeInsets)safeAreaInsets;
- (NSSize)intrinsicContentSize;
- (void)layout;
- (void)updateTrackingAreas;
- (void)addTrackingArea:(NSTrackingArea*)trackingArea;
- (void)removeTrackingArea:(NSTrackingArea*)trackingArea;
- (NSArray*)trackingAreas;
- (void)drawFocusRingMask;
- (NSRect)focusRingMaskBounds;
- (void)setAccessibilityElement:(BOOL)isElement;
- (BOOL)isAccessibilityElement;
- (void)setAccessibilityLabel:(NSString*)label;
- (NSString*)accessibilityLabel;
- (NSAppearance*)effectiveAppearance;
@end

@interface NSControl (Standin)
- (void)setControlSize:(NSControlSize)controlSize;
@end

@interface NSButton (Standin)
- (void)setBezelColor:(NSColor*)color;
- (NSColor*)bezelColor;
- (void)setHasDestructiveAction:(BOOL)isDestructive;
- (BOOL)hasDestructiveAction;
@end

@interface NSImageView (Standin)
- (void)setContentTintColor:(NSColor*)color;
- (NSColor*)contentTintColor;
@end

@interface NSColor (Standin)
+ (NSColor*)controlAccentColor;
+ (NSColor*)separatorColor;
+ (NSColor*)colorWithName:(NSColorName)colorName
          dynamicProvider:(NSColor* (^)(NSAppearance*))dynamicProvider;
@end

extern NSFontTextStyle const NSFontTextStyleCaption1;
extern NSFontTextStyle const NSFontTextStyleCaption2;
extern NSFontTextStyle const NSFontTextStyleSubheadline;
extern NSFontTextStyle const NSFontTextStyleBody;
extern NSFontTextStyle const NSFontTextStyleHeadline;
extern NSFontTextStyle const NSFontTextStyleTitle3;

@interface NSFont (Standin)
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
+ (NSFont*)preferredFontForTextStyle:(NSFontTextStyle)style options:(NSDictionary*)options;
@end

@interface NSImageSymbolConfiguration : NSObject {
  @public
    CGFloat pointSize;
}
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@interface NSImage (StandinSymbol)
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
@end

typedef enum : NSInteger {
    NSImageResizingModeTile = 0,
    NSImageResizingModeStretch = 1,
} NSImageResizingMode;

@interface NSImage (StandinStretching)
- (void)setCapInsets:(NSEdgeInsets)insets;
- (NSEdgeInsets)capInsets;
- (void)setResizingMode:(NSImageResizingMode)mode;
- (NSImageResizingMode)resizingMode;
@end

@interface NSEvent (StandinScrolling)
- (CGFloat)scrollingDeltaX;
- (CGFloat)scrollingDeltaY;
- (BOOL)hasPreciseScrollingDeltas;
@end

@interface NSEvent (Standin)
+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block;
+ (void)removeMonitor:(id)eventMonitor;
@end

@interface NSImage (Standin)
+ (instancetype)imageWithSystemSymbolName:(NSString*)symbolName
                 accessibilityDescription:(NSString*)description;
+ (instancetype)imageWithSize:(NSSize)size
                      flipped:(BOOL)drawingHandlerShouldBeCalledWithFlippedContext
               drawingHandler:(BOOL (^)(NSRect dstRect))drawingHandler;
// Nil for a picture that is no symbol; the real class has no such method.
- (NSString*)standinSymbolName;
- (void)setTemplate:(BOOL)isTemplate;
- (BOOL)isTemplate;
- (void)setAccessibilityDescription:(NSString*)description;
- (NSString*)accessibilityDescription;
@end

@interface NSImage (StandinCapture)
- (instancetype)initWithCGImage:(CGImageRef)cgImage size:(NSSize)size;
@end

// Menu bar
@class StandinStatusItem;

@interface StandinStatusBarButton : NSButton
@end

@interface StandinStatusBar : NSObject
+ (StandinStatusBar*)systemStatusBar;
- (StandinStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(StandinStatusItem*)item;
- (CGFloat)thickness;
@end

@interface StandinStatusItem : NSObject {
  @public
    CGFloat length_;
    NSString* autosaveName_;
    BOOL visible_;
    NSWindow* window_;
    StandinStatusBarButton* button_;
}
- (void)setLength:(CGFloat)length;
- (CGFloat)length;
- (void)setAutosaveName:(NSStatusItemAutosaveName)name;
- (NSStatusItemAutosaveName)autosaveName;
- (void)setVisible:(BOOL)visible;
- (BOOL)isVisible;
- (StandinStatusBarButton*)button;
@end

#define NSStatusBar StandinStatusBar
#define NSStatusItem StandinStatusItem
#define NSStatusBarButton StandinStatusBarButton

// Screens
@interface StandinScreen : NSObject {
  @public
    NSRect frame;
    NSRect visibleFrame;
    NSRect auxiliaryTopLeftArea;
    NSRect auxiliaryTopRightArea;
}
+ (NSArray*)screens;
+ (StandinScreen*)mainScreen;
- (NSRect)frame;
- (NSRect)visibleFrame;
- (NSRect)auxiliaryTopLeftArea;
- (NSRect)auxiliaryTopRightArea;
@end
#define NSScreen StandinScreen

// Applications
@interface StandinRunningApplication : NSObject {
  @public
    pid_t processIdentifier;
}
+ (instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
- (pid_t)processIdentifier;
- (BOOL)isTerminated;
- (NSString*)localizedName;
- (NSString*)bundleIdentifier;
- (NSURL*)bundleURL;
- (NSImage*)icon;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end
#define NSRunningApplication StandinRunningApplication

@interface StandinWorkspace : NSObject
+ (StandinWorkspace*)sharedWorkspace;
- (NSArray*)runningApplications;
- (BOOL)openURL:(NSURL*)url;
- (NSNotificationCenter*)notificationCenter;
- (BOOL)accessibilityDisplayShouldReduceMotion;
@end
#define NSWorkspace StandinWorkspace
extern NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;

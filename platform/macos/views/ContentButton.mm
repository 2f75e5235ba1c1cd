#include "platform/macos/views/ContentButton.h"

#include "platform/macos/Owned.h"
#include "platform/macos/views/Style.h"

namespace {

constexpr double hoverOpacity = 0.08;
constexpr double pressOpacity = 0.16;

} // namespace

@implementation PelistraPushButton

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    (void)event;
    return YES;
}

@end

@implementation PelistraContentButton

- (NSBezierPath*)surface {
    return pelistra::macos::nativePath(outline, [self bounds]);
}

- (BOOL)isFlipped {
    return YES;
}

- (NSView*)hitTest:(NSPoint)point {
    const NSPoint own = [self convertPoint:point fromView:[self superview]];
    return [super hitTest:point] != nil && [[self surface] containsPoint:own] ? self : nil;
}

// A button of the system's may leave its drawing to its layer, and this one's would never be asked
// for.
- (BOOL)wantsUpdateLayer {
    return NO;
}

- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    const BOOL isPressed = [[self cell] isHighlighted];
    if (isPressed || isHovered) {
        [[[NSColor labelColor] colorWithAlphaComponent:(isPressed ? pressOpacity : hoverOpacity)]
            setFill];
        [[self surface] fill];
    }
}

- (void)updateTrackingAreas {
    [super updateTrackingAreas];
    if (hoverArea != nil) {
        [self removeTrackingArea:hoverArea];
    }
    const auto area = pelistra::macos::Owned<NSTrackingArea*>::adopt([[NSTrackingArea alloc]
        initWithRect:[self bounds]
             options:NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways
               owner:self
            userInfo:nil]);
    // The view keeps its tracking areas; this is only for finding it again.
    hoverArea = area.get();
    [self addTrackingArea:hoverArea];
}

- (void)mouseEntered:(NSEvent*)event {
    (void)event;
    isHovered = YES;
    [self setNeedsDisplay:YES];
}

- (void)mouseExited:(NSEvent*)event {
    (void)event;
    isHovered = NO;
    [self setNeedsDisplay:YES];
}

// With a new area, since the system may still take the pointer to be in the one that it knows.
- (void)forgetPointer {
    isHovered = NO;
    [self updateTrackingAreas];
    [self setNeedsDisplay:YES];
}

- (void)drawFocusRingMask {
    [[self surface] fill];
}

- (NSRect)focusRingMaskBounds {
    return [self bounds];
}

@end

namespace pelistra::macos {

void forgetPointer(NSView* view) {
    if ([view isKindOfClass:[PelistraContentButton class]]) {
        [static_cast<PelistraContentButton*>(view) forgetPointer];
    }
    for (NSView* subview in [view subviews]) {
        forgetPointer(subview);
    }
}

} // namespace pelistra::macos

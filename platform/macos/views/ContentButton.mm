#include "platform/macos/views/ContentButton.h"

#include "platform/macos/Owned.h"

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
    return [NSBezierPath bezierPathWithRoundedRect:[self bounds]
                                           xRadius:cornerRadius
                                           yRadius:cornerRadius];
}

- (BOOL)isFlipped {
    return YES;
}

- (NSView*)hitTest:(NSPoint)point {
    return [super hitTest:point] != nil ? self : nil;
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
    const auto area = pelistra::appkit::Owned<NSTrackingArea*>::adopt([[NSTrackingArea alloc]
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

- (void)drawFocusRingMask {
    [[self surface] fill];
}

- (NSRect)focusRingMaskBounds {
    return [self bounds];
}

@end

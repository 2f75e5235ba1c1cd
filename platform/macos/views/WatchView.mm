#include "platform/macos/views/WatchView.h"

@implementation PelistraWatchView

- (NSView*)hitTest:(NSPoint)point {
    const NSPoint own = [self convertPoint:point fromView:[self superview]];
    if (target == nullptr || !NSPointInRect(own, [self bounds])) {
        return nil;
    }
    const bool takesEvent = target->hitTest({.x = own.x, .y = own.y}) != nullptr;
    return takesEvent ? self : nil;
}

// Not passed on, so that no context menu follows.
- (void)rightMouseDown:(NSEvent*)event {
    (void)event;
    if (const auto current = application->currentEvent()) {
        target->rightMouseDown(*current);
    }
}

- (void)rightMouseUp:(NSEvent*)event {
    (void)event;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    (void)event;
    return YES;
}

@end

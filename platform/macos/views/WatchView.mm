#include "platform/macos/views/WatchView.h"

#include "platform/macos/AppKitApplication.h"

@implementation PelistraWatchView

// Whether it takes the event is the target's to say. The views around it ask only for points inside
// of themselves, and it lies over one of them in full.
- (NSView*)hitTest:(NSPoint)point {
    const NSPoint own = [self convertPoint:point fromView:[self superview]];
    const bool takesEvent =
        target != nullptr && target->hitTest({.x = own.x, .y = own.y}) != nullptr;
    return takesEvent ? self : nil;
}

// Not passed on, so that no context menu follows.
- (void)rightMouseDown:(NSEvent*)event {
    target->rightMouseDown(pelistra::macos::eventOf(event));
}

- (void)rightMouseUp:(NSEvent*)event {
    (void)event;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    (void)event;
    return YES;
}

@end

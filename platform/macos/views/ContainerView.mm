#include "platform/macos/views/ContainerView.h"

@implementation PelistraContainerView

- (BOOL)isFlipped {
    return YES;
}

- (NSView*)hitTest:(NSPoint)point {
    NSView* hit = [super hitTest:point];
    return hit == self ? nil : hit;
}

- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    if (draw) {
        draw([self bounds]);
    }
}

@end

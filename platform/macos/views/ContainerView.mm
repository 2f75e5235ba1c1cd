#include "platform/macos/views/ContainerView.h"

#import <QuartzCore/QuartzCore.h>

@implementation PelistraContainerView

- (BOOL)isFlipped {
    return YES;
}

- (NSView*)hitTest:(NSPoint)point {
    NSView* hit = [super hitTest:point];
    return hit == self ? nil : hit;
}

- (BOOL)wantsUpdateLayer {
    return fillColor ? YES : NO;
}

- (void)updateLayer {
    CALayer* layer = [self layer];
    [layer setContents:nil];
    // A dynamic colour is resolved here for the look that the view is shown in.
    [layer setBackgroundColor:[fillColor.get() CGColor]];
    [layer setCornerRadius:fillRadius];
    [layer
        setCornerCurve:(hasContinuousCorners ? kCACornerCurveContinuous : kCACornerCurveCircular)];
}

- (void)drawRect:(NSRect)dirtyRect {
    if (draw) {
        draw([self bounds]);
    } else {
        [super drawRect:dirtyRect];
    }
}

@end

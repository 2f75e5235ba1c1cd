#pragma once

#include "platform/macos/Owned.h"

#import <AppKit/AppKit.h>

#include <functional>

// Arranges other views, from the top left. It takes no events itself: what none of its subviews
// takes belongs to whatever lies underneath. It is drawn by the function or filled by its layer,
// which can be animated; both may be empty.
@interface PelistraContainerView : NSView {
  @public
    std::function<void(NSRect bounds)> draw;
    pelistra::macos::Owned<NSColor*> fillColor;
    CGFloat fillRadius;
    BOOL hasContinuousCorners;
}
@end

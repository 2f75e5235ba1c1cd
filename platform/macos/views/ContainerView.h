#pragma once

#import <AppKit/AppKit.h>

#include <functional>

// Arranges other views, from the top left. It takes no events itself: what none of its subviews
// takes belongs to whatever lies underneath. The functions may be empty.
@interface PelistraContainerView : NSView {
  @public
    std::function<void(NSRect bounds)> draw;
}
@end

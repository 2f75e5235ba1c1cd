#pragma once

#include "ui/Outline.h"

#import <AppKit/AppKit.h>

// A push button of the system's that also answers a click while its window is not the key one.
@interface PelistraPushButton : NSButton
@end

// A button that is nothing but what its subviews show; a quiet surface appears under the pointer
// and while it is pressed. It is pressed inside its outline only. Keyboard focus and Space work as
// with every button.
@interface PelistraContentButton : PelistraPushButton {
  @public
    // Of the surface and of the focus ring.
    pelistra::ui::Outline outline;
  @private
    BOOL isHovered;
    NSTrackingArea* hoverArea;
}
- (void)forgetPointer;
@end

namespace pelistra::macos {

// Tells the content buttons in a view whose window has gone that the pointer is not over them any
// more: the system need not.
void forgetPointer(NSView* view);

} // namespace pelistra::macos

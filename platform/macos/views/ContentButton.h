#pragma once

#import <AppKit/AppKit.h>

// A push button of the system's that also answers a click while its window is not the key one.
@interface PelistraPushButton : NSButton
@end

// A button that is nothing but what its subviews show; a quiet surface appears under the pointer
// and while it is pressed. Keyboard focus and Space work as with every button.
@interface PelistraContentButton : PelistraPushButton {
  @public
    // Of the surface and of the focus ring.
    CGFloat cornerRadius;
  @private
    BOOL isHovered;
    NSTrackingArea* hoverArea;
}
@end

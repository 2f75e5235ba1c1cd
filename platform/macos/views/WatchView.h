#pragma once

#include "ui/Representable.h"

#import <AppKit/AppKit.h>

#include <memory>

// An area whose events go to a view of the core's own making, when that takes them.
@interface PelistraWatchView : NSView {
  @public
    std::unique_ptr<pelistra::ui::EventView> target;
}
@end

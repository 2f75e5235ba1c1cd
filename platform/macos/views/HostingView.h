#pragma once

#include "platform/macos/Owned.h"
#include "platform/macos/views/HostingServices.h"

#import <AppKit/AppKit.h>

#include <memory>

namespace pelistra::ui {
class Content;
}

namespace pelistra::macos {

// A view that shows a content with AppKit's own controls and follows it: some time after every
// change of its state, on a later turn of the main queue, it draws the newest body. What is equal
// to the body before is not touched. It shares the content until it is gone, and keeps its window
// from becoming smaller than the content.
[[nodiscard]] Owned<NSView*> makeHostingView(std::shared_ptr<ui::Content> content,
                                             const HostingServices& services);

} // namespace pelistra::macos

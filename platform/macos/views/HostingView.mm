#include "platform/macos/views/HostingView.h"

#include "ui/Content.h"

namespace pelistra::appkit {

Owned<NSView*> makeHostingView(std::shared_ptr<ui::Content> content,
                               const HostingServices& services) {
    (void)content;
    (void)services;
    return Owned<NSView*>::adopt([[NSView alloc] initWithFrame:NSMakeRect(0, 0, 100, 100)]);
}

} // namespace pelistra::appkit

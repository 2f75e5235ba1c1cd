#include "platform/macos/views/HostingView.h"

#include "platform/macos/views/HostedContent.h"

#include <utility>

@interface PelistraHostingView : NSView {
@public
    std::unique_ptr<pelistra::appkit::HostedContent> hosted;
}
@end

@implementation PelistraHostingView

- (BOOL)isFlipped {
    return YES;
}

- (void)setFrameSize:(NSSize)newSize {
    [super setFrameSize:newSize];
    if (hosted != nullptr) {
        hosted->layOut();
    }
}

- (void)viewDidMoveToWindow {
    [super viewDidMoveToWindow];
    if (hosted != nullptr && [self window] != nil) {
        hosted->layOut();
        hosted->limitWindow();
    }
}

@end

namespace pelistra::appkit {

Owned<NSView*> makeHostingView(std::shared_ptr<ui::Content> content,
                               const HostingServices& services) {
    const auto view = Owned<PelistraHostingView*>::adopt(
        [[PelistraHostingView alloc] initWithFrame:NSMakeRect(0, 0, 1, 1)]);
    // Transitions are shown by the layers.
    [view.get() setWantsLayer:YES];
    view.get()->hosted =
        std::make_unique<HostedContent>(std::move(content), services, view.get());
    return Owned<NSView*>::share(view.get());
}

} // namespace pelistra::appkit

#include "platform/macos/views/HostingView.h"

#include "platform/macos/views/HostedContent.h"

#include <utility>

@interface PelistraHostingView : NSView {
  @public
    std::unique_ptr<pelistra::macos::HostedContent> hosted;
}
@end

@implementation PelistraHostingView

- (BOOL)isFlipped {
    return YES;
}

- (void)resizeSubviewsWithOldSize:(NSSize)oldSize {
    (void)oldSize;
    if (hosted != nullptr) {
        hosted->layOut();
    }
}

// What the title bar covers is known only by the time that the window is laid out.
- (void)layout {
    [super layout];
    if (hosted != nullptr) {
        hosted->layOut();
    }
}

// On a screen of another density the edges lie on other pixels.
- (void)viewDidChangeBackingProperties {
    [super viewDidChangeBackingProperties];
    if (hosted != nullptr) {
        hosted->layOut();
    }
}

- (void)viewDidMoveToWindow {
    [super viewDidMoveToWindow];
    if (hosted != nullptr && [self window] != nil) {
        hosted->layOut();
        hosted->limitWindow();
        // Controls come and go, and the Tab key is to find them all.
        [[self window] setAutorecalculatesKeyViewLoop:YES];
    }
}

@end

namespace pelistra::macos {

namespace {

// Until the window gives it its own.
constexpr NSRect initialFrame = {{0, 0}, {400, 300}};

} // namespace

Owned<NSView*> makeHostingView(std::shared_ptr<ui::Content> content,
                               const HostingServices& services) {
    const auto view = Owned<PelistraHostingView*>::adopt(
        [[PelistraHostingView alloc] initWithFrame:initialFrame]);
    // Transitions are shown by the layers.
    [view.get() setWantsLayer:YES];
    view.get()->hosted = std::make_unique<HostedContent>(std::move(content), services, view.get());
    return Owned<NSView*>::share(view.get());
}

} // namespace pelistra::macos

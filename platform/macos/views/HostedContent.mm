#include "platform/macos/views/HostedContent.h"

#include "platform/MainQueue.h"
#include "platform/macos/Conversions.h"

#include <algorithm>
#include <utility>

namespace pelistra::appkit {

HostedContent::HostedContent(std::shared_ptr<ui::Content> content, const HostingServices& services,
                             NSView* view)
    : content_(std::move(content)), context_{.services = services}, view_(view),
      displayOptions_([[NSWorkspace sharedWorkspace] notificationCenter],
                      NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification,
                      [this] { followEnvironment(); }) {
    followEnvironment();
    changes_ = content_->observe(lifetime_.guard([this] { redrawLater(); }));
    redraw();
}

void HostedContent::followEnvironment() {
    content_->setEnvironment({.reduceMotion = [[NSWorkspace sharedWorkspace]
                                                  accessibilityDisplayShouldReduceMotion] == YES});
}

void HostedContent::redrawLater() {
    if (!std::exchange(redrawIsScheduled_, true)) {
        context_.services.mainQueue->async(lifetime_.guard([this] { redraw(); }));
    }
}

void HostedContent::redraw() {
    redrawIsScheduled_ = false;
    const ui::View body = content_->body();
    if (root_ != nullptr && root_->shown().node().kind.index() == body.node().kind.index()) {
        root_->update(body);
    } else {
        root_.reset();
        root_ = Element::make(body, view_, Axis::None, context_);
    }
    layOut();
}

void HostedContent::layOut() {
    const NSSize size = [view_ bounds].size;
    context_.titleBarHeight = [view_ safeAreaInsets].top;
    const double top = reachesUnderTitleBar(root_->shown()) ? 0 : context_.titleBarHeight;
    root_->place(NSMakeRect(0, top, size.width, std::max(0.0, size.height - top)));
}

void HostedContent::limitWindow() {
    NSWindow* window = [view_ window];
    if (window == nil || ([window styleMask] & NSWindowStyleMaskResizable) == 0) {
        return;
    }
    const Size least = root_->measure({.width = 0, .height = 0});
    const NSSize present = [window contentMinSize];
    [window setContentMinSize:NSMakeSize(std::max(present.width, least.width),
                                         std::max(present.height, least.height))];
}

} // namespace pelistra::appkit

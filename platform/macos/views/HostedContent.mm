#include "platform/macos/views/HostedContent.h"

#include "platform/MainQueue.h"
#include "platform/macos/Conversions.h"

#include <algorithm>
#include <utility>

namespace pelistra::macos {

HostedContent::HostedContent(std::shared_ptr<ui::Content> content, const HostingServices& services,
                             NSView* view)
    : content_(std::move(content)), context_{.services = services}, view_(view),
      measures_(services.measures != nullptr ? *services.measures : ownMeasures_),
      arranger_(measures_), alert_(*services.mainQueue),
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
    body_ = content_->body();
    layOut();
}

ui::Surface HostedContent::surface() const {
    const NSSize size = [view_ bounds].size;
    NSWindow* window = [view_ window];
    return {.size = {.width = size.width, .height = size.height},
            .scale = window != nil ? [window backingScaleFactor] : 1,
            .coveredTop = [view_ safeAreaInsets].top};
}

void HostedContent::layOut() {
    const auto& arrangement = arranger_.arrange(*body_, surface());
    Element::updateAll(elements_, arrangement.elements, view_, NSZeroPoint, context_);
    if (arrangement.alert) {
        alert_.show(*arrangement.alert, view_);
    }
}

void HostedContent::limitWindow() {
    NSWindow* window = [view_ window];
    if (window == nil || ([window styleMask] & NSWindowStyleMaskResizable) == 0) {
        return;
    }
    const Size least = ui::measured(*body_, {.width = 0, .height = 0}, surface().scale, measures_);
    const NSSize present = [window contentMinSize];
    [window setContentMinSize:NSMakeSize(std::max(present.width, least.width),
                                         std::max(present.height, least.height))];
}

} // namespace pelistra::macos

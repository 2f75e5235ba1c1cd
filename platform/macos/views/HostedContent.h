#pragma once

#include "platform/Lifetime.h"
#include "platform/macos/NotificationObserver.h"
#include "platform/macos/views/Element.h"
#include "ui/Content.h"

#include <memory>

namespace pelistra::appkit {

// A content, and the elements that show its newest body inside a view.
class HostedContent {
public:
    // The view outlives this object.
    HostedContent(std::shared_ptr<ui::Content> content, const HostingServices& services,
                  NSView* view);

    // Gives every element its place in the view's present size.
    void layOut();
    // Keeps the window from becoming smaller than the content.
    void limitWindow();

private:
    void followEnvironment();
    void redrawLater();
    void redraw();

    std::shared_ptr<ui::Content> content_;
    ElementContext context_;
    // It owns this object.
    __unsafe_unretained NSView* view_;
    std::unique_ptr<Element> root_;
    bool redrawIsScheduled_ = false;
    NotificationObserver displayOptions_;
    SubscriptionPtr changes_;
    Lifetime lifetime_;
};

} // namespace pelistra::appkit

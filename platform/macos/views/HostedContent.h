#pragma once

#include "base/Lifetime.h"
#include "platform/macos/NotificationObserver.h"
#include "platform/macos/views/AlertSheet.h"
#include "platform/macos/views/AppKitMeasures.h"
#include "platform/macos/views/Element.h"
#include "ui/Content.h"

#include <memory>
#include <optional>
#include <vector>

namespace pelistra::macos {

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
    [[nodiscard]] ui::Surface surface() const;

    std::shared_ptr<ui::Content> content_;
    ElementContext context_;
    // It owns this object.
    __unsafe_unretained NSView* view_;
    AppKitMeasures ownMeasures_;
    const ui::Measures& measures_;
    ui::Arranger arranger_;
    std::optional<ui::View> body_;
    std::vector<std::unique_ptr<Element>> elements_;
    AlertSheet alert_;
    bool redrawIsScheduled_ = false;
    NotificationObserver displayOptions_;
    SubscriptionPtr changes_;
    Lifetime lifetime_;
};

} // namespace pelistra::macos

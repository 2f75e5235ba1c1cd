#pragma once

#include "platform/Application.h"
#include "ui/Content.h"
#include "ui/Representable.h"
#include "ui/View.h"

#include <memory>
#include <string_view>
#include <vector>

namespace pelistra::testing {

// The smallest front end there can be: it keeps a widget for each node of a content's body, keeps
// it across updates where the vocabulary says so, and counts what it would have to draw.
class RecordedFrontEnd {
public:
    struct Widget {
        explicit Widget(ui::View shown) : view(std::move(shown)) {}

        // The newest value, so that its action is the one to call.
        ui::View view;
        std::unique_ptr<ui::EventView> eventView;
        std::vector<std::unique_ptr<Widget>> children;
    };

    RecordedFrontEnd(const Application& application, ui::Content& content);

    // Draws the content's body anew. Returns how many leaves had to be drawn.
    int update();
    // How often the content said that its state is about to change.
    [[nodiscard]] int announcements() const { return announcements_; }

    [[nodiscard]] const Widget& root() const { return *root_; }
    // The widget of the child with that key anywhere in the tree, or null.
    [[nodiscard]] const Widget* widgetWithKey(const ui::Key& key) const;

private:
    std::unique_ptr<Widget> make(const ui::View& view);
    void updateWidget(Widget& widget, const ui::View& view);
    void updateChildren(Widget& widget, const std::vector<ui::View>& before);

    const Application& application_;
    ui::Content& content_;
    std::unique_ptr<Widget> root_;
    int drawn_ = 0;
    int announcements_ = 0;
    SubscriptionPtr subscription_;
};

} // namespace pelistra::testing

#pragma once

#include "platform/Application.h"
#include "tests/ui/InventedMeasures.h"
#include "ui/Arrangement.h"
#include "ui/Content.h"
#include "ui/Representable.h"

#include <memory>
#include <string>
#include <vector>

namespace pelistra::testing {

// The smallest front end there can be: it keeps a widget for each placed element of a content's
// body across updates, and counts what it would have to draw.
class RecordedFrontEnd {
public:
    struct Widget {
        [[nodiscard]] const std::string& key() const { return placed.key; }

        // The newest value, so that its action is the one to call.
        ui::Placed placed;
        std::unique_ptr<ui::EventView> eventView;
        std::vector<std::unique_ptr<Widget>> children;
    };

    RecordedFrontEnd(const Application& application, ui::Content& content);

    // Draws the content's body anew. Returns how many leaves had to be drawn.
    int update();
    // How often the content said that its state is about to change.
    [[nodiscard]] int announcements() const { return announcements_; }

    // The first widget of that kind of node inside of the child with that key, or null.
    template <ui::NodeKind Kind>
    [[nodiscard]] const Widget* widget(const ui::Key& key) const {
        return find(widgets_, step(key),
                    [](const Widget& each) { return each.placed.view.as<Kind>() != nullptr; });
    }

private:
    using Widgets = std::vector<std::unique_ptr<Widget>>;

    // How the way to that child is written.
    static std::string step(const ui::Key& key);
    static const Widget* find(const Widgets& in, const std::string& step,
                              bool (*isWanted)(const Widget&));
    void updateAll(Widgets& widgets, const std::vector<ui::Placed>& now);

    const Application& application_;
    ui::Content& content_;
    InventedMeasures measures_;
    Widgets widgets_;
    int drawn_ = 0;
    int announcements_ = 0;
    SubscriptionPtr subscription_;
};

} // namespace pelistra::testing

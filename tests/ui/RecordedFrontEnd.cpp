#include "tests/ui/RecordedFrontEnd.h"

#include "ui/Nodes.h"

#include <utility>

namespace pelistra::testing {

RecordedFrontEnd::RecordedFrontEnd(const Application& application, ui::Content& content)
    : application_(application), content_(content),
      subscription_(content.observe([this] { ++announcements_; })) {
    update();
}

int RecordedFrontEnd::update() {
    drawn_ = 0;
    const ui::Surface surface = {.size = {.width = 800, .height = 600}};
    updateAll(widgets_, ui::arranged(content_.body(), surface, measures_).elements);
    return drawn_;
}

std::string RecordedFrontEnd::step(const ui::Key& key) {
    if (const auto* number = std::get_if<std::uint64_t>(&key)) {
        return std::to_string(*number) + "#";
    }
    return ":" + std::get<std::string>(key);
}

const RecordedFrontEnd::Widget* RecordedFrontEnd::find(const Widgets& in, const std::string& step,
                                                       bool (*isWanted)(const Widget&)) {
    for (const auto& widget : in) {
        if (widget->key().find(step) != std::string::npos && isWanted(*widget)) {
            return widget.get();
        }
        if (const auto* found = find(widget->children, step, isWanted)) {
            return found;
        }
    }
    return nullptr;
}

void RecordedFrontEnd::updateAll(Widgets& widgets, const std::vector<ui::Placed>& now) {
    widgets = ui::continued(widgets, now, [this](const ui::Placed& placed) {
        auto widget =
            std::make_unique<Widget>(Widget{.placed = placed, .eventView = {}, .children = {}});
        if (const auto* represented = placed.view.as<ui::Represented>()) {
            widget->eventView = represented->value->makeView(application_);
        }
        drawn_ += placed.children.empty() ? 1 : 0;
        return widget;
    });
    for (std::size_t place = 0; place < now.size(); ++place) {
        Widget& widget = *widgets[place];
        const ui::Placed before = std::exchange(widget.placed, now[place]);
        const bool isSame =
            before.view == widget.placed.view && before.frame == widget.placed.frame;
        drawn_ += isSame || !now[place].children.empty() ? 0 : 1;
        if (const auto* represented = widget.placed.view.as<ui::Represented>()) {
            represented->value->updateView(*widget.eventView);
        }
        updateAll(widget.children, now[place].children);
    }
}

} // namespace pelistra::testing

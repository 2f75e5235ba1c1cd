#include "tests/ui/RecordedFrontEnd.h"

#include "ui/Nodes.h"
#include "ui/Walk.h"

#include <utility>

namespace pelistra::testing {

namespace {

const RecordedFrontEnd::Widget* find(const RecordedFrontEnd::Widget& in, const ui::Key& key) {
    const auto* own = ui::keyOf(in.view);
    if (own != nullptr && *own == key) {
        return &in;
    }
    for (const auto& child : in.children) {
        if (const auto* found = find(*child, key)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

RecordedFrontEnd::RecordedFrontEnd(const Application& application, ui::Content& content)
    : application_(application), content_(content), root_(make(content.body())),
      subscription_(content.observe([this] { ++announcements_; })) {}

int RecordedFrontEnd::update() {
    drawn_ = 0;
    const auto continued = ui::continuedFrom({root_->view}, {content_.body()});
    if (continued.front()) {
        updateWidget(*root_, content_.body());
    } else {
        root_ = make(content_.body());
    }
    return drawn_;
}

const RecordedFrontEnd::Widget* RecordedFrontEnd::widgetWithKey(const ui::Key& key) const {
    return find(*root_, key);
}

std::unique_ptr<RecordedFrontEnd::Widget> RecordedFrontEnd::make(const ui::View& view) {
    auto widget = std::make_unique<Widget>(view);
    if (const auto* represented = view.as<ui::Represented>()) {
        widget->eventView = represented->value->makeView(application_);
    }
    const auto children = ui::childrenOf(view);
    drawn_ += children.empty() ? 1 : 0;
    for (const auto& child : children) {
        widget->children.push_back(make(child));
    }
    return widget;
}

void RecordedFrontEnd::updateWidget(Widget& widget, const ui::View& view) {
    const ui::View before = std::exchange(widget.view, view);
    if (const auto* represented = view.as<ui::Represented>()) {
        represented->value->updateView(*widget.eventView);
    }
    if (widget.children.empty() && before != view) {
        ++drawn_;
    }
    updateChildren(widget, ui::childrenOf(before));
}

void RecordedFrontEnd::updateChildren(Widget& widget, const std::vector<ui::View>& before) {
    const auto after = ui::childrenOf(widget.view);
    const auto continued = ui::continuedFrom(before, after);
    auto old = std::exchange(widget.children, {});
    for (std::size_t place = 0; place < after.size(); ++place) {
        if (const auto source = continued[place]) {
            widget.children.push_back(std::move(old[*source]));
            updateWidget(*widget.children.back(), after[place]);
        } else {
            widget.children.push_back(make(after[place]));
        }
    }
}

} // namespace pelistra::testing

#include "ui/View.h"

#include "ui/Nodes.h"

#include <utility>

namespace pelistra::ui {

bool View::operator==(const View& other) const {
    return node_ == other.node_ || *node_ == *other.node_;
}

View View::padding(const Edges& edges) const {
    return Padding{.edges = edges, .content = *this};
}

View View::frame(const FrameLimits& limits) const {
    return Frame{.limits = limits, .content = *this};
}

View View::background(const View& behind, bool ignoresSafeArea) const {
    return Background{.behind = behind, .ignoresSafeArea = ignoresSafeArea, .content = *this};
}

View View::overlay(const View& above) const {
    return Overlay{.above = above, .content = *this};
}

View View::contentShape(const Outline& shape) const {
    return ContentShape{.outline = shape, .content = *this};
}

View View::help(std::string text) const {
    return Help{.text = std::move(text), .content = *this};
}

View View::accessibilityLabel(std::string text) const {
    return AccessibilityLabel{.text = std::move(text), .content = *this};
}

View View::id(Key key) const {
    return Identified{.key = std::move(key), .content = *this};
}

View View::transition(const Transition& transition) const {
    return Entering{.transition = transition, .content = *this};
}

View View::animation(const Animation& animation, std::int64_t value) const {
    return Animated{.animation = animation, .value = value, .content = *this};
}

View View::alert(Alert alert) const {
    return WithAlert{.alert = std::move(alert), .content = *this};
}

} // namespace pelistra::ui

#pragma once

#include "ui/Nodes.h"
#include "ui/Walk.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::testing {

// Every node of that kind in the tree, the view itself included, in drawing order.
template <ui::NodeKind Kind>
std::vector<Kind> all(const ui::View& in) {
    std::vector<Kind> found;
    if (const auto* node = in.as<Kind>()) {
        found.push_back(*node);
    }
    for (const auto& child : ui::childrenOf(in)) {
        for (const auto& node : all<Kind>(child)) {
            found.push_back(node);
        }
    }
    return found;
}

// The one node of that kind; throws unless there is exactly one.
template <ui::NodeKind Kind>
Kind only(const ui::View& in) {
    const auto found = all<Kind>(in);
    if (found.size() != 1) {
        throw std::logic_error("not exactly one node of the kind: " + std::to_string(found.size()));
    }
    return found.front();
}

// The view as a node of that kind; throws when it is another.
template <ui::NodeKind Kind>
Kind asNode(const ui::View& view) {
    const auto* node = view.as<Kind>();
    if (node == nullptr) {
        throw std::logic_error("the node is of another kind");
    }
    return *node;
}

// Every text in the tree, from first to last.
inline std::vector<std::string> texts(const ui::View& in) {
    std::vector<std::string> result;
    for (const auto& node : all<ui::Text>(in)) {
        result.push_back(node.text);
    }
    return result;
}

// The text node with that text; throws when there is none.
inline ui::Text textNode(const ui::View& in, std::string_view text) {
    for (const auto& node : all<ui::Text>(in)) {
        if (node.text == text) {
            return node;
        }
    }
    throw std::logic_error("no such text: " + std::string(text));
}

// The button whose label has that text; throws when there is none.
inline ui::Button buttonNamed(const ui::View& in, std::string_view text) {
    for (const auto& button : all<ui::Button>(in)) {
        for (const auto& label : texts(button.label)) {
            if (label == text) {
                return button;
            }
        }
    }
    throw std::logic_error("no such button: " + std::string(text));
}

} // namespace pelistra::testing

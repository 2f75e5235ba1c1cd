#include "ui/Walk.h"

#include "ui/Nodes.h"

namespace pelistra::ui {

namespace {

struct Children {
    // Leaves.
    template <class Leaf>
    std::vector<View> operator()(const Leaf&) const {
        return {};
    }

    template <class Modifier>
        requires requires(const Modifier& modifier) { modifier.content; }
    std::vector<View> operator()(const Modifier& modifier) const {
        return {modifier.content};
    }

    template <class Stack>
        requires requires(const Stack& stack) { stack.children; }
    std::vector<View> operator()(const Stack& stack) const {
        return stack.children;
    }

    std::vector<View> operator()(const Button& button) const { return {button.label}; }

    std::vector<View> operator()(const Background& background) const {
        return {background.behind, background.content};
    }

    std::vector<View> operator()(const Overlay& overlay) const {
        return {overlay.content, overlay.above};
    }

    std::vector<View> operator()(const GroupedForm& form) const {
        std::vector<View> rows;
        for (const auto& section : form.sections) {
            rows.insert(rows.end(), section.rows.begin(), section.rows.end());
        }
        return rows;
    }
};

} // namespace

std::vector<View> childrenOf(const View& view) {
    return std::visit(Children(), view.node().kind);
}

} // namespace pelistra::ui

#include "ui/Walk.h"

#include "ui/Nodes.h"

#include <map>

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

bool haveSameKind(const View& one, const View& other) {
    return one.node().kind.index() == other.node().kind.index();
}

std::vector<std::size_t> placesWithoutKey(const std::vector<View>& views) {
    std::vector<std::size_t> places;
    for (std::size_t place = 0; place < views.size(); ++place) {
        if (keyOf(views[place]) == nullptr) {
            places.push_back(place);
        }
    }
    return places;
}

} // namespace

std::vector<View> childrenOf(const View& view) {
    return std::visit(Children(), view.node().kind);
}

const Key* keyOf(const View& view) {
    const auto* identified = view.as<Identified>();
    return identified != nullptr ? &identified->key : nullptr;
}

std::vector<std::optional<std::size_t>> continuedFrom(const std::vector<View>& before,
                                                      const std::vector<View>& after) {
    std::map<Key, std::size_t> keyed;
    for (std::size_t place = 0; place < before.size(); ++place) {
        if (const Key* key = keyOf(before[place])) {
            keyed.emplace(*key, place);
        }
    }
    const auto unkeyed = placesWithoutKey(before);

    std::vector<std::optional<std::size_t>> continued(after.size());
    std::size_t nextUnkeyed = 0;
    for (std::size_t place = 0; place < after.size(); ++place) {
        if (const Key* key = keyOf(after[place])) {
            if (const auto found = keyed.find(*key); found != keyed.end()) {
                continued[place] = found->second;
                keyed.erase(found);
            }
        } else if (nextUnkeyed < unkeyed.size()) {
            const std::size_t candidate = unkeyed[nextUnkeyed++];
            if (haveSameKind(before[candidate], after[place])) {
                continued[place] = candidate;
            }
        }
    }
    return continued;
}

} // namespace pelistra::ui

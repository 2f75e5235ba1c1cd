#pragma once

#include "base/Geometry.h"
#include "ui/Measures.h"
#include "ui/View.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace pelistra::ui {

// Points from the top left of a content, or of what is scrolled, y downwards.
struct ContentSpace {};
using Area = BasicRect<ContentSpace>;

// The rows of one section of a form.
struct Card {
    Area area;
    // Where, counted as y, the rows meet.
    std::vector<double> lines;

    bool operator==(const Card&) const = default;
};

// Something to be shown at its place: a leaf, a control, a scrolled area, or what does something to
// all that it contains (Entering, Animated). Whatever else a view consists of has become
// places.
struct Placed {
    // Its node says what is to be shown.
    View view;
    // Tells it from its siblings, in this arrangement and the next: the way from the element around
    // it by keys, kinds and places. One with the same key is of the same kind.
    std::string key;
    // In the coordinates of the innermost scrolled area around it, its edges on device pixels. That
    // of Entering and Animated covers all that they contain.
    Area frame;
    // From back to front. The label of a control, the title texts and rows of a form.
    std::vector<Placed> children = {};
    // Of a text or control outside of other controls; empty when there is none.
    std::string help = {};
    std::string accessibilityLabel = {};
    // A control that takes a row of a form up to the card's edges.
    bool isFormRow = false;
    // Of a toggle: where its switch is.
    Area toggle = {};
    // Of a scrolled area: the size of all that is in it.
    Size content = {};
    // Of a form.
    std::vector<Card> cards = {};
};

struct Arrangement {
    std::vector<Placed> elements;
    // What the view says last about an alert.
    std::optional<Alert> alert;
};

// What is arranged on.
struct Surface {
    // In points. A side that is negative or no number is none; an endless one leaves that side to
    // the view.
    Size size;
    // Device pixels per point.
    double scale = 1;
    // How much of the top lies under the window's title bar. Only backgrounds that say so go there.
    double coveredTop = 0;

    bool operator==(const Surface&) const = default;
};

// The size that the view takes of what it is offered.
[[nodiscard]] Size measured(const View& view, const Proposal& offered, double scale,
                            const Measures& measures);

// Gives every part of the view its place; a view smaller than the surface lies in its middle.
[[nodiscard]] Arrangement arranged(const View& view, const Surface& surface,
                                   const Measures& measures);

// Keeps the arrangement of a content from one body to the next.
class Arranger {
public:
    // The measures outlive the arranger.
    explicit Arranger(const Measures& measures) : measures_(measures) {}

    // An equal view on the same surface is not arranged again; only its actions are taken over.
    const Arrangement& arrange(const View& view, const Surface& surface);
    // What was measured is no longer so.
    void forget() { shown_.reset(); }

private:
    struct Shown {
        View view;
        Surface surface;
    };

    const Measures& measures_;
    std::optional<Shown> shown_;
    Arrangement arrangement_;
};

// Makes the elements for what has been placed now out of those before, each of which knows its
// key(): one with the same key is kept, what is new comes from make(placed). What has gone is what
// is left of before, beside null pointers.
template <class Pointer, class Make>
std::vector<Pointer> continued(std::vector<Pointer>& before, const std::vector<Placed>& now,
                               const Make& make) {
    std::unordered_map<std::string_view, Pointer*> known;
    for (Pointer& element : before) {
        known.emplace(element->key(), &element);
    }
    std::vector<Pointer> elements;
    elements.reserve(now.size());
    for (const Placed& placed : now) {
        const auto found = known.find(placed.key);
        const bool isKept = found != known.end() && *found->second != nullptr;
        elements.push_back(isKept ? std::move(*found->second) : make(placed));
    }
    return elements;
}

} // namespace pelistra::ui

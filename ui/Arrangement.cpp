#include "ui/Arrangement.h"

#include "ui/Box.h"
#include "ui/Walk.h"

#include <algorithm>
#include <cmath>

namespace pelistra::ui {

namespace {

// Where nothing else is offered, a view may choose.
std::optional<double> offeredOf(double length) {
    return std::isinf(length) && length > 0 ? std::nullopt
                                            : std::optional(std::max(0.0, reckonable(length)));
}

bool hasAction(const View& view) {
    return view.as<Button>() != nullptr || view.as<Toggle>() != nullptr ||
           view.as<Represented>() != nullptr;
}

// What can differ between equal views, in the order in which it has been placed.
void collect(const View& view, std::vector<View>& actors, std::optional<Alert>& alert) {
    if (hasAction(view)) {
        actors.push_back(view);
    }
    if (const auto* node = view.as<WithAlert>()) {
        alert = node->alert;
    }
    for (const View& child : childrenOf(view)) {
        collect(child, actors, alert);
    }
}

void replace(std::vector<Placed>& elements, std::vector<View>::const_iterator& next) {
    for (Placed& placed : elements) {
        if (hasAction(placed.view)) {
            placed.view = *next++;
        }
        replace(placed.children, next);
    }
}

} // namespace

Size measured(const View& view, const Proposal& offered, double scale, const Measures& measures) {
    const Measuring measuring = {.measures = measures, .scale = scale};
    const auto side = [](const std::optional<double>& length) {
        return length ? offeredOf(*length) : std::nullopt;
    };
    return Box(view, measuring)
        .measure({.width = side(offered.width), .height = side(offered.height)});
}

Arrangement arranged(const View& view, const Surface& surface, const Measures& measures) {
    const Measuring measuring = {.measures = measures, .scale = surface.scale};
    Arrangement arrangement;
    Placing placing = {.alert = arrangement.alert,
                       .coveredTop = surface.coveredTop,
                       .into = &arrangement.elements};
    Proposal offered = {.width = offeredOf(surface.size.width),
                        .height = offeredOf(surface.size.height)};
    if (offered.height) {
        offered.height = std::max(0.0, *offered.height - surface.coveredTop);
    }
    Box root(view, measuring);
    const Size size = root.measure(offered);
    const double x = (offered.width.value_or(size.width) - size.width) / 2;
    const double y =
        surface.coveredTop + ((offered.height.value_or(size.height) - size.height) / 2);
    root.place(measuring.snapped(makeRect<ContentSpace>(x, y, size.width, size.height)), placing);
    return arrangement;
}

const Arrangement& Arranger::arrange(const View& view, const Surface& surface) {
    if (!shown_ || shown_->surface != surface || shown_->view != view) {
        arrangement_ = arranged(view, surface, measures_);
    } else if (&shown_->view.node() != &view.node()) {
        std::vector<View> actors;
        collect(view, actors, arrangement_.alert);
        auto next = actors.cbegin();
        replace(arrangement_.elements, next);
    }
    shown_ = Shown{.view = view, .surface = surface};
    return arrangement_;
}

} // namespace pelistra::ui

#pragma once

#include "ui/View.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace pelistra::ui {

// The views directly inside a view, in drawing order (what lies behind first); empty for a leaf.
[[nodiscard]] std::vector<View> childrenOf(const View& view);

// The key by which the view is known among its siblings, if it has one.
[[nodiscard]] const Key* keyOf(const View& view);

// For each view of after, the place in before of the view that it continues, so that its widget can
// be kept and updated; empty for one that is new. A view with a key continues the one with the same
// key. A view without continues the one at the same place among those without a key, when the two
// are of the same kind. No place is given twice; what no one continues has gone.
[[nodiscard]] std::vector<std::optional<std::size_t>> continuedFrom(const std::vector<View>& before,
                                                                    const std::vector<View>& after);

} // namespace pelistra::ui

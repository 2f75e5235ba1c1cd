#pragma once

#include "ui/View.h"

#include <vector>

namespace pelistra::ui {

// The views directly inside a view, in drawing order (what lies behind first); empty for a leaf.
[[nodiscard]] std::vector<View> childrenOf(const View& view);

} // namespace pelistra::ui

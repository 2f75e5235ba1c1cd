#pragma once

#include "ui/View.h"

#include <cstddef>
#include <string_view>

namespace pelistra {
class Application;
}

namespace pelistra::testing {

// Whether a text with exactly these words is drawn anywhere inside.
bool showsText(const ui::View& root, std::string_view text);

// Presses the first button that has that text as its label or as its hover text. Throws when there
// is none.
void press(const ui::View& root, std::string_view named);

// Sends a right click to the area of that number (from 0, in drawing order) that takes them. Throws
// when there is none.
void rightClick(const ui::View& root, std::size_t number, const Application& application);

} // namespace pelistra::testing

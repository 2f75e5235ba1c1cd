#pragma once

#include "base/Geometry.h"
#include "platform/macos/Owned.h"
#include "ui/Nodes.h"

#import <AppKit/AppKit.h>

#include <optional>

namespace pelistra::macos {

// A text field that only shows text.
[[nodiscard]] Owned<NSView*> makeLabel();

// Shows the text.
void showText(NSTextField* field, const ui::Text& text);

// The size of the text, wrapped at the width if there is one.
[[nodiscard]] Size measureLabel(NSTextField* field, const std::optional<double>& width);

} // namespace pelistra::macos

#pragma once

#include "base/Geometry.h"
#include "ui/Color.h"
#include "ui/Font.h"
#include "ui/Outline.h"

#import <AppKit/AppKit.h>

#include <string>

namespace pelistra::macos {

// A colour that resolves itself for the look that it is drawn in, light or dark.
[[nodiscard]] NSColor* nativeColor(const ui::Color& color);

// The system's font for a text style, or of a size.
[[nodiscard]] NSFont* nativeFont(const ui::Font& font);

// The outline within an area, as a path.
[[nodiscard]] NSBezierPath* nativePath(const ui::Outline& outline, NSRect area);

// The radius that the outline's corners have in an area of that size.
[[nodiscard]] double cornerRadius(const ui::Outline& outline, Size area);

// Whether the outline's corners run into the sides with continuous curvature.
[[nodiscard]] bool hasContinuousCorners(const ui::Outline& outline);

// A mask with the outline's corners that stretches to areas of that size and larger; nil for an
// outline without any.
[[nodiscard]] NSImage* cornerMask(const ui::Outline& outline, Size area);

// Fills the path with what is painted, in the area that a gradient's unit points refer to.
void fill(const ui::LinearGradient& gradient, NSBezierPath* path, NSRect area);

// The system's symbol at the size and weight of the font; nil when there is no such symbol.
[[nodiscard]] NSImage* nativeSymbol(const std::string& name, const ui::Font& font);

} // namespace pelistra::macos

#pragma once

#include "base/Geometry.h"

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

namespace pelistra::macos {

// An autoreleased string. Bytes that are no UTF-8 give an empty one.
[[nodiscard]] NSString* nsString(std::string_view text);

// Empty for nil.
[[nodiscard]] std::string utf8(NSString* text);

// Empty when there is no object or it is not a string.
[[nodiscard]] std::optional<std::string> textOf(id object);

[[nodiscard]] inline NSRect nsRect(const ScreenRect& rect) {
    return NSMakeRect(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

[[nodiscard]] inline ScreenRect screenRect(NSRect rect) {
    return makeRect<ScreenSpace>(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

[[nodiscard]] inline NSSize nsSize(const Size& size) { return NSMakeSize(size.width, size.height); }

[[nodiscard]] inline Size sizeOf(NSSize size) {
    return {.width = size.width, .height = size.height};
}

} // namespace pelistra::macos

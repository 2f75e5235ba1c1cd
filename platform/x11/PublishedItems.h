#pragma once

#include "platform/x11/Properties.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace pelistra::x11 {

// What the menu bar tells of all its items in one property, so that nobody has to ask the server
// about each of them: _PELISTRA_MENUBAR_ITEM_DETAILS on the window that owns the tray selection.
// Four texts for each item, left to right, every one with a zero byte behind it: the window and its
// frame as five decimal numbers with spaces between ("10485763 1892 0 28 28"), the title, the
// instance and the class. A sixth number is the process behind an icon that has no window: the bar
// has lent it one of its own.

struct PublishedItem {
    xcb_window_t window = XCB_WINDOW_NONE;
    // In root coordinates and device pixels.
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    // UTF-8 as far as the item's program keeps to its word; no zero bytes.
    std::string title;
    // The two parts of WM_CLASS.
    std::string instance;
    std::string className;
    // The process behind a window that is the bar's own, 0 when the bar does not know it; empty for
    // a window of the icon's program.
    std::optional<std::int32_t> process;

    bool operator==(const PublishedItem&) const = default;
};

// The whole property is never longer: the shortest request that every server takes is, with some
// room left for its header.
inline constexpr std::uint32_t publishedItemsByteLimit = 256 * 1024 - 1024;

// The property's text; empty when it would be too long.
[[nodiscard]] std::optional<std::string> publishedText(std::span<const PublishedItem> items);

// The items in the property. Anybody can write it: empty when it is not of that form, a window
// stands in it twice, or a number is none that a window can have.
[[nodiscard]] std::optional<std::vector<PublishedItem>>
publishedItemsIn(const PropertyValue& property);

} // namespace pelistra::x11

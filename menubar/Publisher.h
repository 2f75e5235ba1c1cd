#pragma once

#include "menubar/ItemList.h"
#include "menubar/Layout.h"
#include "menubar/Metrics.h"
#include "menubar/Monitors.h"
#include "menubar/Server.h"
#include "menubar/Theme.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::menubar {

// What the bar tells other programs in properties of the selection's owner window. Nothing is
// written that has not changed.
class Publisher {
public:
    Publisher(const Server& server, xcb_window_t owner);

    // Only once the bar has its place: others take their size from it.
    void publishWindow(xcb_window_t bar);
    void publishColors(const Palette& palette);
    void publishScale(const Metrics& metrics);
    // Makes others look again, the bar having become as high as the scale says only now.
    void repeatScale() const;
    // The parts of the bar left and right of the camera housing, relative to the root window; `gap`
    // counts from the bar's left edge. None without a housing.
    void publishAreas(const PixelRect& bar, const std::optional<Gap>& gap);
    // Whether they are others than before, or stand in another order.
    [[nodiscard]] bool publishItems(const ItemList& items);
    // What others want to know of each of the items that were published last; `bar` is the bar's
    // frame in root coordinates.
    void publishDetails(const ItemList& items, const PixelRect& bar);
    // Says by another number that items, their places or what they say of themselves may have
    // changed: who has seen them all under the last number need not look again while it stands.
    // Call it after the change, so that nobody takes the old state for the new one.
    void publishChange();
    // How many items were published last.
    [[nodiscard]] std::size_t publishedItems() const { return items_.size(); }
    // Tells the items that asked for a position where they stand after a drag.
    void publishPositions(const ItemList& items) const;

private:
    void publish(std::vector<std::uint32_t>& last, std::vector<std::uint32_t> words,
                 xcb_atom_t property, xcb_atom_t type);

    const Server* server_;
    xcb_window_t owner_;
    std::vector<std::uint32_t> window_;
    std::vector<std::uint32_t> colors_;
    std::vector<std::uint32_t> scale_;
    std::vector<std::uint32_t> areas_;
    std::vector<std::uint32_t> items_;
    bool itemsPublished_ = false;
    // Empty when it has been too long to be published.
    std::optional<std::string> details_;
    // Counts from a random number: the next bar may get the same window ids as the last one, and
    // must not repeat a serial that somebody still knows.
    std::uint32_t serial_;
};

} // namespace pelistra::menubar

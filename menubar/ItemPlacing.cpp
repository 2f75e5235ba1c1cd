#include "menubar/ItemPlacing.h"

#include "menubar/Layout.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace pelistra::menubar {

namespace {

// X keeps coordinates in 16 bits.
constexpr int leastX = INT16_MIN + 1;

} // namespace

ItemPlacing::ItemPlacing(const Server& server, const BarGeometry& geometry, ItemList& items,
                         ItemDrag& drag, Painter& painter)
    : server_(&server), geometry_(&geometry), items_(&items), drag_(&drag), painter_(&painter) {}

bool ItemPlacing::layOut() {
    drag_->follow();
    const std::vector<DockedItem*> shown = items_->shown();
    std::vector<int> widths;
    widths.reserve(shown.size());
    for (const DockedItem* item : shown) {
        widths.push_back(grantedWidth(item->wish, geometry_->metrics));
    }
    const std::vector<int> positions =
        menubar::layOut(widths, geometry_->frame.width, geometry_->housing);
    const DockedItem* held = drag_->lifted();
    bool changed = false;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const int x = shown[i] == held ? drag_->heldX(widths[i]) : positions[i];
        changed = place(*shown[i], std::max(x, leastX), widths[i]) || changed;
    }
    for (const auto& item : items_->all()) {
        if (item->occupiesSlot != item->hasSlot()) {
            item->occupiesSlot = item->hasSlot();
            painter_->invalidate(*item);
        }
        if (std::exchange(item->replyDue, false)) {
            tellPlace(*item);
        }
    }
    return changed;
}

bool ItemPlacing::place(DockedItem& item, int x, int width) {
    const int height = geometry_->metrics.barHeight();
    const bool resized =
        std::exchange(item.strayed, false) || item.width != width || item.height != height;
    if (item.x == x && !resized) {
        return false;
    }
    const int reach = &item == drag_->lifted() ? painter_->plateReach() : 0;
    painter_->invalidate(item.x - reach, item.x + item.width + reach);
    item.x = x;
    item.width = width;
    item.height = height;
    painter_->invalidate(item.x - reach, item.x + item.width + reach);
    constexpr std::uint16_t all = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                  XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    std::array<std::uint32_t, 4> values{static_cast<std::uint32_t>(x), 0,
                                        static_cast<std::uint32_t>(width),
                                        static_cast<std::uint32_t>(height)};
    xcb_configure_window(server_->xcb(), item.container.id(), all, values.data());
    if (resized) {
        values[0] = 0;
        item.placeSequence =
            xcb_configure_window(server_->xcb(), item.client, all, values.data()).sequence;
        item.picture.renew();
    }
    // Inside its container it did not move; toolkits place menus by what they believe.
    item.replyDue = true;
    return true;
}

void ItemPlacing::tellPlace(const DockedItem& item) const {
    xcb_configure_notify_event_t notice{};
    notice.response_type = XCB_CONFIGURE_NOTIFY;
    notice.event = item.client;
    notice.window = item.client;
    notice.x = static_cast<std::int16_t>(geometry_->frame.x + item.x);
    notice.y = static_cast<std::int16_t>(geometry_->frame.y);
    notice.width = static_cast<std::uint16_t>(item.width);
    notice.height = static_cast<std::uint16_t>(item.height);
    xcb_send_event(server_->xcb(), 0, item.client, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&notice));
}

int ItemPlacing::titleLimit() const {
    int limit = geometry_->housing ? geometry_->housing->begin : geometry_->frame.width;
    for (const DockedItem* item : items_->shown()) {
        if (item->x >= 0) {
            limit = std::min(limit, item->x);
        } else if (item->x + item->width > 0) {
            limit = 0;
        }
    }
    return limit;
}

} // namespace pelistra::menubar

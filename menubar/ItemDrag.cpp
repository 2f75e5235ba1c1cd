#include "menubar/ItemDrag.h"

#include "menubar/Drag.h"

#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

namespace pelistra::menubar {

namespace {

// The pointer moves this far before a press becomes a drag.
constexpr double thresholdInPoints = 3;

} // namespace

ItemDrag::ItemDrag(const Server& server, xcb_window_t bar, const BarGeometry& geometry,
                   ItemList& items, OrderMemory& order, Painter& painter)
    : geometry_(&geometry), items_(&items), order_(&order), painter_(&painter),
      input_(server, bar) {}

void ItemDrag::press(const xcb_button_press_event_t& event) {
    if (held_ || event.detail != XCB_BUTTON_INDEX_1) {
        return;
    }
    for (const DockedItem* item : items_->shown()) {
        if (event.event_x >= item->x && event.event_x < item->x + item->width) {
            held_ = Held{.client = item->client,
                         .pressX = event.event_x,
                         .pointerX = event.event_x,
                         .grip = event.event_x - item->x};
            input_.begin(event.time);
            return;
        }
    }
}

void ItemDrag::move(const xcb_motion_notify_event_t& event) {
    if (!held_) {
        return;
    }
    held_->pointerX = event.event_x;
    if (std::abs(held_->pointerX - held_->pressX) >= geometry_->metrics.pixels(thresholdInPoints)) {
        held_->lifted = true;
    }
}

void ItemDrag::release(const xcb_button_release_event_t& event) {
    if (held_ && event.detail == XCB_BUTTON_INDEX_1) {
        held_->pointerX = event.event_x;
        end(true);
    }
}

void ItemDrag::key(const xcb_key_press_event_t& event) {
    if (held_ && input_.isEscape(event)) {
        end(false);
    }
}

void ItemDrag::cancel(const DockedItem& item) {
    if (held_ && held_->client == item.client) {
        end(false);
    }
}

DockedItem* ItemDrag::lifted() const {
    return held_ && held_->lifted ? items_->find(held_->client) : nullptr;
}

int ItemDrag::heldX(int width) const {
    return held_ ? boundedDragX(held_->pointerX - held_->grip, width, geometry_->frame.width) : 0;
}

bool ItemDrag::takePositionsDue() {
    return std::exchange(positionsDue_, false);
}

void ItemDrag::follow() {
    const DockedItem* item = lifted();
    if (!held_ || item == nullptr) {
        return;
    }
    std::vector<int> others;
    for (const DockedItem* other : items_->shown()) {
        if (other != item) {
            others.push_back(other->width);
        }
    }
    const DropPlace place = nearestPlace(others, item->width, held_->pointerX - held_->grip,
                                         geometry_->frame.width, geometry_->housing);
    items_->moveAmongShown(*item, place.index);
}

void ItemDrag::end(bool keep) {
    input_.end();
    if (keep) {
        follow();
    } else {
        input_.releasePointer();
    }
    DockedItem* item = lifted();
    held_.reset();
    if (item == nullptr) {
        return;
    }
    // The plate goes with the drag.
    painter_->invalidate(item->x - painter_->plateReach(),
                         item->x + item->width + painter_->plateReach());
    if (keep) {
        order_->move(items_->identities(), items_->indexOf(*item));
        positionsDue_ = true;
        return;
    }
    std::unique_ptr<DockedItem> taken = items_->take(item->client);
    const std::size_t index = order_->place(taken->identity, items_->identities(), std::nullopt);
    items_->insert(index, std::move(taken));
}

} // namespace pelistra::menubar

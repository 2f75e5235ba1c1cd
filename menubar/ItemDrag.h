#pragma once

#include "menubar/BarGeometry.h"
#include "menubar/DragInput.h"
#include "menubar/ItemList.h"
#include "menubar/OrderMemory.h"
#include "menubar/Painter.h"
#include "menubar/Server.h"

#include <optional>

namespace pelistra::menubar {

// Dragging an item along the bar, from the press of the button to its release or to Escape.
class ItemDrag {
public:
    // All must outlive this; `geometry` is the bar's as it is at any time.
    ItemDrag(const Server& server, xcb_window_t bar, const BarGeometry& geometry, ItemList& items,
             OrderMemory& order, Painter& painter);

    // The first button is pressed on the bar: a drag of the item under the pointer begins.
    void press(const xcb_button_press_event_t& event);
    void move(const xcb_motion_notify_event_t& event);
    // The end of the drag; the item stays where it was dragged.
    void release(const xcb_button_release_event_t& event);
    // Escape ends the drag; the item goes back.
    void key(const xcb_key_press_event_t& event);
    void refreshKeys(xcb_mapping_notify_event_t& event) { input_.refresh(event); }
    // The item is about to go.
    void cancel(const DockedItem& item);

    // Moves the held item to its place among the others.
    void follow();
    // The item in the user's hand; null when there is none, or the pointer has not gone far enough
    // to mean it.
    [[nodiscard]] DockedItem* lifted() const;
    // Where the held item is shown: at the pointer, within the bar.
    [[nodiscard]] int heldX(int width) const;
    // True once after each change of the order by a drag: items are to be told their positions.
    [[nodiscard]] bool takePositionsDue();

private:
    struct Held {
        xcb_window_t client = XCB_NONE;
        int pressX = 0;
        int pointerX = 0;
        // From the item's left edge to the pointer.
        int grip = 0;
        // The pointer went far enough to mean it.
        bool lifted = false;
    };

    void end(bool keep);

    const BarGeometry* geometry_;
    ItemList* items_;
    OrderMemory* order_;
    Painter* painter_;
    DragInput input_;
    std::optional<Held> held_;
    bool positionsDue_ = false;
};

} // namespace pelistra::menubar

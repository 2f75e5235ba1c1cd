#pragma once

#include "menubar/Docking.h"
#include "menubar/ItemDrag.h"
#include "menubar/ItemList.h"
#include "menubar/Painter.h"
#include "menubar/Server.h"

#include <cstdint>

namespace pelistra::menubar {

// What the server tells of the docked windows and of their containers.
class ItemEvents {
public:
    // All must outlive this.
    ItemEvents(const Server& server, ItemList& items, Docking& docking, ItemDrag& drag,
               Painter& painter);

    // Notes what an event says of an item; other events are none of its business. Returns whether
    // something that others can see of the items may be new.
    bool handle(const xcb_generic_event_t& event);

private:
    bool handleProperty(const xcb_property_notify_event_t& event);
    void handleConfigureRequest(const xcb_configure_request_event_t& event);
    // `sequence`: of the last request of ours that the server had handled by then.
    void handleConfigured(const xcb_configure_notify_event_t& event, std::uint32_t sequence);
    void handleReparent(const xcb_reparent_notify_event_t& event);
    void handleDestroy(xcb_window_t window);
    void handleMapped(const xcb_map_notify_event_t& event);
    void handleUnmapped(const xcb_unmap_notify_event_t& event);
    void handleMapRequest(xcb_window_t window);
    void handleDamage(xcb_drawable_t drawable);
    // The item is about to go: a drag of it ends, what it covered is painted again.
    void clearPlace(const DockedItem& item);

    const Server* server_;
    ItemList* items_;
    Docking* docking_;
    ItemDrag* drag_;
    Painter* painter_;
};

} // namespace pelistra::menubar

#include "menubar/ItemEvents.h"

#include "menubar/ItemTexts.h"
#include "menubar/Sequence.h"

#include <xcb/damage.h>

namespace pelistra::menubar {

ItemEvents::ItemEvents(const Server& server, ItemList& items, Docking& docking, ItemDrag& drag,
                       Painter& painter)
    : server_(&server), items_(&items), docking_(&docking), drag_(&drag), painter_(&painter) {}

bool ItemEvents::handle(const xcb_generic_event_t& event) {
    const int type = x11::typeOf(event);
    if (type == server_->damageEvent()) {
        handleDamage(x11::eventAs<xcb_damage_notify_event_t>(event).drawable);
        return false;
    }
    switch (type) {
    case XCB_PROPERTY_NOTIFY:
        return handleProperty(x11::eventAs<xcb_property_notify_event_t>(event));
    case XCB_CONFIGURE_REQUEST:
        handleConfigureRequest(x11::eventAs<xcb_configure_request_event_t>(event));
        return true;
    case XCB_CONFIGURE_NOTIFY:
        handleConfigured(x11::eventAs<xcb_configure_notify_event_t>(event), event.full_sequence);
        return true;
    case XCB_REPARENT_NOTIFY:
        handleReparent(x11::eventAs<xcb_reparent_notify_event_t>(event));
        return true;
    case XCB_DESTROY_NOTIFY:
        handleDestroy(x11::eventAs<xcb_destroy_notify_event_t>(event).window);
        return true;
    case XCB_MAP_REQUEST:
        handleMapRequest(x11::eventAs<xcb_map_request_event_t>(event).window);
        return true;
    case XCB_MAP_NOTIFY:
        handleMapped(x11::eventAs<xcb_map_notify_event_t>(event));
        return true;
    case XCB_UNMAP_NOTIFY:
        handleUnmapped(x11::eventAs<xcb_unmap_notify_event_t>(event));
        return true;
    default:
        return false;
    }
}

bool ItemEvents::handleProperty(const xcb_property_notify_event_t& event) {
    DockedItem* item = items_->find(event.window);
    if (item == nullptr) {
        return false;
    }
    item->textsStale = item->textsStale || isText(*server_, event.atom);
    item->hintsStale = item->hintsStale || event.atom == XCB_ATOM_WM_NORMAL_HINTS;
    item->embedInfoStale = item->embedInfoStale || event.atom == server_->atom(Atom::XEmbedInfo);
    // A new title, for example.
    return true;
}

void ItemEvents::handleConfigureRequest(const xcb_configure_request_event_t& event) {
    DockedItem* item = items_->find(event.window);
    if (item == nullptr) {
        return;
    }
    item->replyDue = true;
    PixelSize wanted{.width = item->width, .height = item->height};
    const bool sized =
        (event.value_mask & (XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT)) != 0;
    if ((event.value_mask & XCB_CONFIG_WINDOW_WIDTH) != 0) {
        wanted.width = event.width;
    }
    if ((event.value_mask & XCB_CONFIG_WINDOW_HEIGHT) != 0) {
        wanted.height = event.height;
    }
    if (sized) {
        item->wish.source = WishSource::ResizeRequest;
        item->wish.size = wanted;
    }
}

void ItemEvents::handleConfigured(const xcb_configure_notify_event_t& event,
                                  std::uint32_t sequence) {
    DockedItem* item = items_->find(event.window);
    if (item == nullptr || event.event != item->container.id() ||
        !isSince(sequence, item->placeSequence)) {
        return;
    }
    // A window with override-redirect need not ask: it changed its size by itself.
    const PixelSize size{.width = event.width, .height = event.height};
    const bool resized = size != PixelSize{.width = item->width, .height = item->height};
    if (resized) {
        item->wish.source = WishSource::ResizeRequest;
        item->wish.size = size;
        item->picture.renew();
        painter_->invalidate(*item);
    }
    if ((resized || event.x != 0 || event.y != 0) && item->straying.putBack()) {
        item->strayed = true;
    }
}

void ItemEvents::handleReparent(const xcb_reparent_notify_event_t& event) {
    DockedItem* item = items_->find(event.window);
    if (item == nullptr) {
        return;
    }
    if (event.parent == item->container.id()) {
        docking_->arrived(*item);
        painter_->setBackground(*item);
    } else if (event.event == item->container.id()) {
        clearPlace(*item);
        docking_->letGo(event.window, event.parent);
    }
}

void ItemEvents::handleDestroy(xcb_window_t window) {
    if (const DockedItem* item = items_->find(window)) {
        clearPlace(*item);
        docking_->forget(window);
    }
}

void ItemEvents::clearPlace(const DockedItem& item) {
    drag_->cancel(item);
    painter_->invalidate(item);
}

void ItemEvents::handleMapped(const xcb_map_notify_event_t& event) {
    DockedItem* item = items_->find(event.window);
    if (item != nullptr && event.event == item->container.id()) {
        item->picture.renew();
        painter_->invalidate(*item);
    }
}

void ItemEvents::handleUnmapped(const xcb_unmap_notify_event_t& event) {
    DockedItem* item = items_->find(event.window);
    if (item != nullptr && event.event == item->container.id()) {
        docking_->mappingChanged(*item);
    }
}

void ItemEvents::handleDamage(xcb_drawable_t drawable) {
    if (DockedItem* item = items_->findByContainer(drawable)) {
        item->picture.noteDamage();
        painter_->invalidate(*item);
    }
}

void ItemEvents::handleMapRequest(xcb_window_t window) {
    if (DockedItem* item = items_->find(window)) {
        docking_->mappingChanged(*item);
    }
}

} // namespace pelistra::menubar

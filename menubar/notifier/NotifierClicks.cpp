// What the user does with an icon of the session bus: clicks, the wheel, menus, tool tips.

#include "menubar/notifier/NotifierIcon.h"

#include <utility>

namespace pelistra::menubar {

namespace {

// Buttons of a wheel, and what they turn by: the unit of most toolkits.
constexpr xcb_button_t wheelLeft = 6;
constexpr xcb_button_t wheelRight = 7;
constexpr int wheelStep = 120;

} // namespace

void NotifierDocking::press(const xcb_button_press_event_t& event, const PixelRect& bar) {
    Icon* const icon = find(event.event);
    NotifierItem* const source = sourceOf(icon);
    if (source == nullptr) {
        return;
    }
    using Axis = NotifierItem::Axis;
    // What the wheel changes is often told by the tool tip.
    if (event.detail <= XCB_BUTTON_INDEX_3) {
        toolTip_.hide();
    }
    switch (event.detail) {
    case XCB_BUTTON_INDEX_3:
        openMenu(*icon, *source, bar);
        break;
    case XCB_BUTTON_INDEX_4:
        source->scroll(wheelStep, Axis::Vertical);
        break;
    case XCB_BUTTON_INDEX_5:
        source->scroll(-wheelStep, Axis::Vertical);
        break;
    case wheelLeft:
        source->scroll(wheelStep, Axis::Horizontal);
        break;
    case wheelRight:
        source->scroll(-wheelStep, Axis::Horizontal);
        break;
    default:
        icon->pressed = event.detail;
        break;
    }
}

void NotifierDocking::release(const xcb_button_release_event_t& event, const PixelRect& bar) {
    Icon* const icon = find(event.event);
    NotifierItem* const source = sourceOf(icon);
    const DockedItem* const item = items_->find(event.event);
    if (source == nullptr || item == nullptr ||
        std::exchange(icon->pressed, xcb_button_t{0}) != event.detail || event.event_x < 0 ||
        event.event_x >= item->width || event.event_y < 0 || event.event_y >= item->height) {
        return;
    }
    if (event.detail == XCB_BUTTON_INDEX_2) {
        source->tell(NotifierItem::Deed::SecondaryActivate, event.root_x, event.root_y);
    } else if (event.detail == XCB_BUTTON_INDEX_1 && source->properties()->itemIsMenu) {
        openMenu(*icon, *source, bar);
    } else if (event.detail == XCB_BUTTON_INDEX_1) {
        source->tell(NotifierItem::Deed::Activate, event.root_x, event.root_y,
                     [this, window = event.event, bar] {
                         const Icon* const refused = find(window);
                         if (NotifierItem* const itsSource = sourceOf(refused)) {
                             openMenu(*refused, *itsSource, bar);
                         }
                     });
    }
}

void NotifierDocking::enter(const xcb_enter_notify_event_t& event, const PixelRect& bar) {
    const Icon* const icon = find(event.event);
    const NotifierItem* const source = sourceOf(icon);
    // A grab that ends is no movement of the user's.
    if (source == nullptr || source->properties() == nullptr ||
        event.mode != XCB_NOTIFY_MODE_NORMAL) {
        return;
    }
    toolTipBar_ = bar;
    toolTip_.schedule(event.event);
    if (!source->properties()->menu.empty()) {
        menus_.prepare();
    }
}

void NotifierDocking::leave(const xcb_leave_notify_event_t& event) {
    if (toolTip_.owner() == event.event) {
        toolTip_.hide();
    }
}

void NotifierDocking::showToolTip() {
    const Icon* const icon = find(toolTip_.owner());
    const NotifierItem* const source = sourceOf(icon);
    const DockedItem* const item = items_->find(toolTip_.owner());
    if (source == nullptr || item == nullptr) {
        toolTip_.hide();
        return;
    }
    const ItemProperties& properties = *source->properties();
    ToolTipText text{.title = properties.toolTipTitle, .text = properties.toolTipText};
    if (text.title.empty() && text.text.empty()) {
        text.title = properties.title;
    } else if (text.title == text.text) {
        text.text.clear();
    }
    toolTip_.show(text,
                  {.x = toolTipBar_.x + item->x,
                   .y = toolTipBar_.y,
                   .width = item->width,
                   .height = item->height},
                  toolTipBar_, look_.palette == darkPalette(), look_.metrics);
}

void NotifierDocking::openMenu(const Icon& icon, NotifierItem& source, const PixelRect& bar) {
    const DockedItem* const item = items_->find(icon.window);
    if (item == nullptr) {
        return;
    }
    const ItemProperties& properties = *source.properties();
    const int x = bar.x + item->x;
    const int y = bar.y + bar.height;
    // A menu cannot take the pointer while the press still holds it.
    xcb_ungrab_pointer(server_->xcb(), XCB_CURRENT_TIME);
    server_->connection().flush();
    const bool opened =
        !properties.menu.empty() && menus_.open({.service = source.destination(),
                                                 .item = source.address().path,
                                                 .menu = properties.menu,
                                                 .x = x,
                                                 .y = y,
                                                 .dark = look_.palette == darkPalette(),
                                                 .iconTheme = look_.iconTheme,
                                                 .iconThemePath = properties.iconThemePath});
    if (!opened) {
        source.tell(NotifierItem::Deed::ContextMenu, x, y);
    }
}

} // namespace pelistra::menubar

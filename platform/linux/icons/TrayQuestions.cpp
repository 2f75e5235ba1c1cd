#include "platform/linux/icons/TrayQuestions.h"

#include "platform/linux/screens/ScreenLayout.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/Monitors.h"

#include <string>
#include <string_view>

#include <xcb/res.h>

namespace pelistra::linux {

TrayQuestions::TrayQuestions(const x11::Connection& connection)
    : connection_(&connection), replies_(connection) {
    const std::string selection = x11::traySelectionName(connection.screenNumber());
    const std::array<std::string_view, static_cast<std::size_t>(Name::Count)> names{
        selection,
        "_PELISTRA_MENUBAR_ITEMS",
        "_PELISTRA_MENUBAR_ITEM_DETAILS",
        "_PELISTRA_MENUBAR_SCALE",
        "_PELISTRA_MENUBAR_SERIAL",
        "_NET_WM_NAME",
        "_NET_WM_PID",
        "ShapeEvent"};
    atoms_ = x11::internAtoms(connection, names);
    connection.learn({&xcb_randr_id, &xcb_res_id});
    static_cast<void>(connection.hasMonitors());
}

TrayFacts TrayQuestions::findTray(WindowId knownOwner) {
    const auto owner = xcb_get_selection_owner(connection_->get(), atom(Name::Selection));
    const auto resources =
        x11::requestProperty(*connection_, connection_->root(), XCB_ATOM_RESOURCE_MANAGER);
    // If the tray that was seen last is still there, no second question is needed.
    std::optional<x11::PropertyRequest> serial;
    if (knownOwner != XCB_NONE) {
        serial = requestOf(knownOwner, Name::Serial);
    }
    const auto monitors = x11::requestMonitors(*connection_);
    TrayFacts tray;
    if (const auto reply = replies_.take<xcb_get_selection_owner_reply_t>(owner)) {
        tray.owner = reply->owner;
    }
    const auto text = x11::readProperty(replies_, resources);
    tray.scale = text ? resourceScaleIn(text->text()).value_or(1) : 1;
    if (serial) {
        tray.serial = takeSerial(*serial);
    }
    const auto all = x11::takeMonitors(replies_, monitors);
    if (const auto* const primary = x11::primaryOf(all)) {
        tray.primaryMonitor = primary->frame;
    }
    return tray;
}

void TrayQuestions::readOwner(TrayFacts& tray) {
    // Asked for first: what comes after it is at least as new as the number says.
    const auto serial = requestOf(tray.owner, Name::Serial);
    const auto items = requestOf(tray.owner, Name::Items);
    const auto details =
        x11::requestProperty(*connection_, tray.owner, atom(Name::Details),
                             XCB_GET_PROPERTY_TYPE_ANY, x11::publishedItemsByteLimit);
    const auto scale = requestOf(tray.owner, Name::Scale);
    tray.serial = takeSerial(serial);
    if (const auto value = x11::readProperty(replies_, items);
        value && value->type == XCB_ATOM_WINDOW) {
        tray.items = value->words();
    }
    if (const auto value = x11::readProperty(replies_, details); value && tray.items) {
        tray.details = x11::publishedItemsIn(*value);
    }
    takeScale(scale, tray);
}

void TrayQuestions::readScale(TrayFacts& tray) {
    takeScale(requestOf(tray.owner, Name::Scale), tray);
}

x11::PropertyRequest TrayQuestions::requestOf(WindowId owner, Name name) const {
    return x11::requestProperty(*connection_, owner, atom(name));
}

std::optional<std::uint32_t> TrayQuestions::takeSerial(x11::PropertyRequest request) {
    const auto value = x11::readProperty(replies_, request);
    const auto words = value ? value->words() : std::vector<std::uint32_t>{};
    return words.empty() ? std::nullopt : std::optional(words.front());
}

void TrayQuestions::takeScale(x11::PropertyRequest request, TrayFacts& tray) {
    if (const auto value = x11::readProperty(replies_, request)) {
        tray.scale = scaleIn(value->words()).value_or(tray.scale);
    }
}

} // namespace pelistra::linux

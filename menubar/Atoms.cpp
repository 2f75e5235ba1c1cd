#include "menubar/Atoms.h"

#include "platform/x11/Atoms.h"

#include <string_view>

namespace pelistra::menubar {

Atoms::Atoms(const x11::Connection& connection) {
    const std::string tray = x11::traySelectionName(connection.screenNumber());
    const std::string settings = "_XSETTINGS_S" + std::to_string(connection.screenNumber());
    const std::array<std::string_view, static_cast<std::size_t>(Atom::Count)> names{
        "MANAGER",
        "UTF8_STRING",
        "_NET_ACTIVE_WINDOW",
        "_NET_CLIENT_LIST",
        "_NET_WM_NAME",
        "_NET_WM_WINDOW_TYPE",
        "_NET_WM_WINDOW_TYPE_TOOLTIP",
        "_NET_SYSTEM_TRAY_COLORS",
        "_NET_SYSTEM_TRAY_OPCODE",
        "_NET_SYSTEM_TRAY_ORIENTATION",
        "_NET_SYSTEM_TRAY_VISUAL",
        "_XEMBED",
        "_XEMBED_INFO",
        "_XSETTINGS_SETTINGS",
        "_PELISTRA_PREFERRED_POSITION",
        "_PELISTRA_MENUBAR_POSITION",
        "_PELISTRA_MENUBAR_WINDOW",
        "_PELISTRA_MENUBAR_ITEMS",
        "_PELISTRA_MENUBAR_ITEM_DETAILS",
        "_PELISTRA_MENUBAR_SCALE",
        "_PELISTRA_MENUBAR_SERIAL",
        "_PELISTRA_MENUBAR_AUXILIARY_AREAS",
        "_PELISTRA_MENUBAR_VERSION",
        tray,
        settings,
    };
    x11::internAtoms(connection, names, atoms_);
}

} // namespace pelistra::menubar

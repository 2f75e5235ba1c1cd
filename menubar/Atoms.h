#pragma once

#include "platform/x11/Connection.h"

#include <array>
#include <cstddef>
#include <string>

namespace pelistra::menubar {

enum class Atom : std::size_t {
    Manager,
    Utf8String,
    NetActiveWindow,
    NetClientList,
    NetWmName,
    NetWmWindowType,
    NetWmWindowTypeTooltip,
    NetSystemTrayColors,
    NetSystemTrayOpcode,
    NetSystemTrayOrientation,
    NetSystemTrayVisual,
    XEmbed,
    XEmbedInfo,
    XSettingsSettings,
    PelistraPreferredPosition,
    PelistraMenubarPosition,
    PelistraMenubarWindow,
    PelistraMenubarItems,
    PelistraMenubarItemDetails,
    PelistraMenubarScale,
    PelistraMenubarSerial,
    PelistraMenubarAuxiliaryAreas,
    PelistraMenubarVersion,
    // The selections of this screen.
    TraySelection,
    XSettingsSelection,
    Count,
};

class Atoms {
public:
    // Interns all of them in one round trip.
    explicit Atoms(const x11::Connection& connection);

    [[nodiscard]] xcb_atom_t operator[](Atom atom) const {
        return atoms_[static_cast<std::size_t>(atom)];
    }

private:
    std::array<xcb_atom_t, static_cast<std::size_t>(Atom::Count)> atoms_{};
};

} // namespace pelistra::menubar

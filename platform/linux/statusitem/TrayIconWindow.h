#pragma once

#include "platform/x11/Connection.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace pelistra::linux {

// The atoms that a tray icon of ours needs, interned once.
class TrayIconAtoms {
public:
    enum Name : std::uint8_t {
        XembedInfo,
        Xembed,
        NetWmName,
        NetWmPid,
        Utf8String,
        PreferredPosition,
        Position,
        NameCount
    };

    explicit TrayIconAtoms(const x11::Connection& connection);

    [[nodiscard]] xcb_atom_t operator[](Name name) const { return atoms_[name]; }

private:
    std::array<xcb_atom_t, NameCount> atoms_{};
};

// A window made to be embedded in a system tray, and destroyed with this object. It is mapped by
// its embedder.
class TrayIconWindow {
public:
    struct Traits {
        x11::Connection::Visual visual;
        int width = 1;
        int height = 1;
        // The title.
        std::string name;
        // What trays that sort their icons read: the instance of the class, and the title in its
        // old property, which nobody else needs beside the new one.
        std::string sortingName;
        std::optional<std::uint32_t> preferredPosition;
    };

    TrayIconWindow(const x11::Connection& connection, const TrayIconAtoms& atoms,
                   const Traits& traits);
    TrayIconWindow(const TrayIconWindow&) = delete;
    TrayIconWindow& operator=(const TrayIconWindow&) = delete;
    ~TrayIconWindow();

    [[nodiscard]] xcb_window_t id() const { return window_; }
    [[nodiscard]] xcb_visualid_t visual() const { return visual_; }

    // Asks the embedder for that size in device pixels.
    void requestSize(int width, int height);

private:
    void createWindow(const Traits& traits);
    void describe(const Traits& traits);
    void setSizeHints(int width, int height);

    const x11::Connection& connection_;
    const TrayIconAtoms& atoms_;
    xcb_window_t window_;
    xcb_visualid_t visual_;
    // Windows of another visual than the root's need a colour map of their own.
    xcb_colormap_t colormap_;
};

} // namespace pelistra::linux

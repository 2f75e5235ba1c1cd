#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelistra::menubar {

// How the bar asks the program that shows menus for one: one packet each.

// What the program gets its socket as.
inline constexpr int menuSocket = 0;
inline constexpr std::size_t menuRequestLimit = std::size_t{16} * 1024;

struct MenuRequest {
    // The name under which the item's program answers, the item's object and its menu's object.
    std::string service;
    std::string item;
    std::string menu;
    // Where the menu's upper left corner is to be, in root coordinates.
    int x = 0;
    int y = 0;
    bool dark = false;
    std::string iconTheme;
    // A folder where icons are looked up first; may be empty.
    std::string iconThemePath;

    bool operator==(const MenuRequest&) const = default;
    [[nodiscard]] std::string text() const;
    // What text() wrote; empty when it is anything else.
    [[nodiscard]] static std::optional<MenuRequest> parse(std::string_view text);
};

} // namespace pelistra::menubar

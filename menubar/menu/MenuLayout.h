#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <systemd/sd-bus.h>

namespace pelistra::menubar {

// One entry of a menu that a program describes over the session bus (com.canonical.dbusmenu), with
// what lies below it. Texts are clean.
struct MenuEntry {
    enum class Toggle { None, Check, Radio };

    int id = 0;
    bool separator = false;
    bool enabled = true;
    bool visible = true;
    // It opens a menu, which may be empty until it is about to be shown.
    bool submenu = false;
    Toggle toggle = Toggle::None;
    bool checked = false;
    // The character behind an ampersand is the mnemonic; two ampersands stand for one.
    std::string label;
    // "Ctrl+Q"; empty without one.
    std::string shortcut;
    std::string iconName;
    // A PNG file.
    std::vector<std::uint8_t> iconData;
    std::vector<MenuEntry> children;
};

// What is deeper or comes later is left out.
inline constexpr int deepestMenu = 8;
inline constexpr int mostMenuEntries = 1'000;

// Reads the answer to the question for a layout: its root. Empty when it is none.
[[nodiscard]] std::optional<MenuEntry> readLayout(sd_bus_message& message);

// Whether there is anything to be seen in it.
[[nodiscard]] bool isEmptyMenu(const MenuEntry& root);

// A label as programs write it, with an underscore before the mnemonic.
[[nodiscard]] std::string menuLabel(const std::string& foreign);

} // namespace pelistra::menubar

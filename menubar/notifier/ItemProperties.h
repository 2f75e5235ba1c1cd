#pragma once

#include "menubar/Artwork.h"

#include <optional>
#include <string>

#include <systemd/sd-bus.h>

namespace pelistra::menubar {

enum class ItemStatus { Passive, Active, NeedsAttention };

// One of the pictures of an item: the name of a file or of an icon of the theme, a picture, both or
// neither.
struct IconSource {
    std::string name;
    ArgbImage pixmap;

    [[nodiscard]] bool isEmpty() const { return name.empty() && pixmap.pixels.empty(); }
    bool operator==(const IconSource&) const = default;
};

// What an item of the session bus says of itself. Texts that are shown are clean; names of icons
// and files are as they came, of bounded length.
struct ItemProperties {
    ItemStatus status = ItemStatus::Active;
    std::string id;
    std::string title;
    std::string toolTipTitle;
    // Lines with line breaks between.
    std::string toolTipText;
    IconSource icon;
    IconSource overlay;
    IconSource attention;
    // Where icon names are looked up first.
    std::string iconThemePath;
    // The path of its menu's object; empty without one.
    std::string menu;
    // The primary button opens the menu as well.
    bool itemIsMenu = false;
    // A text beside the icon.
    std::string label;

    bool operator==(const ItemProperties&) const = default;
};

// Reads the answer to a question for all properties; pictures are fitted into a square of `side`
// device pixels. What is of a wrong type counts as missing. Empty when the message is an error, no
// list of properties, or larger than a program has reason to send.
[[nodiscard]] std::optional<ItemProperties> readProperties(sd_bus_message& message, int side);

} // namespace pelistra::menubar

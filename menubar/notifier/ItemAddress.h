#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelistra::menubar {

// Where an item of the session bus is.
struct ItemAddress {
    // As its program registered it: a well-known name, or the unique name of its connection.
    std::string service;
    std::string path;

    bool operator==(const ItemAddress&) const = default;
    // As watchers list it.
    [[nodiscard]] std::string text() const { return service + path; }
};

// Reads what a program or another watcher calls an item: a name, a name with a path behind it, or a
// path alone, which is then one of `sender`. Empty when it is none of these.
[[nodiscard]] std::optional<ItemAddress> addressIn(std::string_view text, std::string_view sender);

} // namespace pelistra::menubar

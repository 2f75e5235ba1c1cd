#pragma once

#include "platform/x11/Properties.h"

#include <optional>
#include <string>

namespace pelistra::menubar {

// What an item is known by, made fit for the log and the order file: clean text of at most
// identityCharacterLimit characters each.
struct ItemNames {
    std::string instance;
    std::string className;
};

// From WM_CLASS; a window without one is known by its title (WM_NAME) instead. Either property may
// be missing or be anything.
[[nodiscard]] ItemNames namesOf(const std::optional<x11::PropertyValue>& windowClass,
                                const std::optional<x11::PropertyValue>& title);

} // namespace pelistra::menubar

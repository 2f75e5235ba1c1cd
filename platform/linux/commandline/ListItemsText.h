#pragma once

#include "base/Geometry.h"
#include "platform/WindowList.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::linux {

// One item as --list-items shows it.
struct ListedItem {
    WindowId id = 0;
    ProcessId process = 0;
    // "XEmbed" or "StatusNotifierItem": how its program shows it.
    std::string kind;
    std::string owner;
    std::string windowName;
    std::optional<std::string> desktopId;
    // Points, global coordinates.
    Rect frame;
    bool hidden = false;
    std::string displayName;
    std::string fallbackSymbol;
};

// A table with a heading, its columns as wide as their texts.
void writeTable(std::ostream& out, const std::vector<ListedItem>& items);
// A JSON array of objects; a missing desktop id is null.
void writeJson(std::ostream& out, const std::vector<ListedItem>& items);

} // namespace pelistra::linux

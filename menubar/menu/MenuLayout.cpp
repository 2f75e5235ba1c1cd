#include "menubar/menu/MenuLayout.h"

#include "menubar/ForeignText.h"

#include <algorithm>
#include <string_view>

namespace pelistra::menubar {

namespace {

constexpr std::size_t labelLimit = 200;
constexpr std::size_t nameLimit = 512;
constexpr std::size_t iconByteLimit = std::size_t{256} * 1024;
constexpr int mostKeys = 8;
constexpr auto entryType = "(ia{sv}av)";

bool readText(sd_bus_message& message, std::string& text) {
    const char* value = nullptr;
    const bool done =
        sd_bus_message_read_basic(&message, SD_BUS_TYPE_STRING, static_cast<void*>(&value)) > 0;
    text = done ? value : "";
    return done;
}

bool readFlag(sd_bus_message& message, bool& flag) {
    int value = 0;
    const bool done = sd_bus_message_read_basic(&message, SD_BUS_TYPE_BOOLEAN, &value) > 0;
    flag = value != 0;
    return done;
}

// The keys of the first combination: "Control", "Shift", "Q".
bool readShortcut(sd_bus_message& message, std::string& shortcut) {
    if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "as") < 0) {
        return false;
    }
    bool first = true;
    while (sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "s") > 0) {
        std::string key;
        for (int count = 0; readText(message, key); ++count) {
            if (first && count < mostKeys) {
                shortcut += shortcut.empty() ? "" : "+";
                shortcut += key == "Control" ? "Ctrl" : cleanText(key, labelLimit);
            }
        }
        first = false;
        if (sd_bus_message_exit_container(&message) < 0) {
            return false;
        }
    }
    return sd_bus_message_exit_container(&message) >= 0;
}

bool readIcon(sd_bus_message& message, std::vector<std::uint8_t>& icon) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (sd_bus_message_read_array(&message, SD_BUS_TYPE_BYTE, &data, &size) < 0) {
        return false;
    }
    if (size <= iconByteLimit) {
        const auto* const bytes = static_cast<const std::uint8_t*>(data);
        icon.assign(bytes, bytes + size);
    }
    return true;
}

void takeText(MenuEntry& entry, std::string_view name, const std::string& text) {
    if (name == "label") {
        entry.label = menuLabel(text);
    } else if (name == "type") {
        entry.separator = text == "separator";
    } else if (name == "icon-name") {
        entry.iconName = text.size() <= nameLimit ? text : "";
    } else if (name == "children-display") {
        entry.submenu = text == "submenu";
    } else if (name == "toggle-type") {
        entry.toggle = text == "checkmark" ? MenuEntry::Toggle::Check
                       : text == "radio"   ? MenuEntry::Toggle::Radio
                                           : MenuEntry::Toggle::None;
    }
}

// Reads what the variant of that type holds; false when the message cannot be read any further.
bool readValue(sd_bus_message& message, MenuEntry& entry, std::string_view name,
               std::string_view type) {
    if (type == "s") {
        std::string text;
        const bool done = readText(message, text);
        takeText(entry, name, text);
        return done;
    }
    if (type == "b") {
        bool ignored = false;
        return readFlag(message, name == "enabled"   ? entry.enabled
                                 : name == "visible" ? entry.visible
                                                     : ignored);
    }
    if (type == "i" && name == "toggle-state") {
        int number = 0;
        const bool done = sd_bus_message_read_basic(&message, SD_BUS_TYPE_INT32, &number) > 0;
        entry.checked = number == 1;
        return done;
    }
    if (type == "aas" && name == "shortcut") {
        return readShortcut(message, entry.shortcut);
    }
    if (type == "ay" && name == "icon-data") {
        return readIcon(message, entry.iconData);
    }
    return sd_bus_message_skip(&message, std::string(type).c_str()) >= 0;
}

bool readProperties(sd_bus_message& message, MenuEntry& entry) {
    if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "{sv}") < 0) {
        return false;
    }
    while (sd_bus_message_enter_container(&message, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
        std::string name;
        const char* contents = nullptr;
        if (!readText(message, name) ||
            sd_bus_message_peek_type(&message, nullptr, &contents) <= 0) {
            return false;
        }
        const std::string type = contents;
        if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_VARIANT, type.c_str()) <= 0 ||
            !readValue(message, entry, name, type) || sd_bus_message_exit_container(&message) < 0 ||
            sd_bus_message_exit_container(&message) < 0) {
            return false;
        }
    }
    return sd_bus_message_exit_container(&message) >= 0;
}

// As deep as the menu, which is bounded.
bool readEntry(sd_bus_message& message, MenuEntry& entry, int depth, int& left) {
    if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_STRUCT, "ia{sv}av") <= 0 ||
        sd_bus_message_read_basic(&message, SD_BUS_TYPE_INT32, &entry.id) <= 0 ||
        !readProperties(message, entry) ||
        sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "v") < 0) {
        return false;
    }
    while (sd_bus_message_at_end(&message, 0) == 0) {
        if (depth >= deepestMenu || left <= 0) {
            if (sd_bus_message_skip(&message, "v") < 0) {
                return false;
            }
            continue;
        }
        --left;
        if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_VARIANT, entryType) <= 0 ||
            !readEntry(message, entry.children.emplace_back(), depth + 1, left) ||
            sd_bus_message_exit_container(&message) < 0) {
            return false;
        }
    }
    entry.submenu = entry.submenu || !entry.children.empty();
    if (sd_bus_message_exit_container(&message) < 0) {
        return false;
    }
    return sd_bus_message_exit_container(&message) >= 0;
}

} // namespace

std::optional<MenuEntry> readLayout(sd_bus_message& message) {
    MenuEntry root;
    int left = mostMenuEntries;
    std::uint32_t revision = 0;
    if (sd_bus_message_is_method_error(&message, nullptr) > 0 ||
        sd_bus_message_read_basic(&message, SD_BUS_TYPE_UINT32, &revision) <= 0 ||
        !readEntry(message, root, 0, left)) {
        return std::nullopt;
    }
    return root;
}

bool isEmptyMenu(const MenuEntry& root) {
    return std::ranges::none_of(
        root.children, [](const MenuEntry& entry) { return entry.visible && !entry.separator; });
}

std::string menuLabel(const std::string& foreign) {
    std::string label;
    bool mnemonic = false;
    const std::string clean = cleanText(foreign, labelLimit);
    for (std::size_t i = 0; i < clean.size(); ++i) {
        const bool hasNext = i + 1 < clean.size();
        if (clean[i] == '&') {
            label += "&&";
        } else if (clean[i] != '_') {
            label += clean[i];
        } else if (hasNext && clean[i + 1] == '_') {
            label += '_';
            ++i;
        } else if (hasNext && !mnemonic) {
            label += '&';
            mnemonic = true;
        }
    }
    return label;
}

} // namespace pelistra::menubar

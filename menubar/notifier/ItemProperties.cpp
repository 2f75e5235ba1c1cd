#include "menubar/notifier/ItemProperties.h"

#include "menubar/ForeignText.h"
#include "menubar/OrderMemory.h"
#include "menubar/notifier/Markup.h"
#include "menubar/notifier/Pixmaps.h"

#include <array>
#include <string_view>

namespace pelistra::menubar {

namespace {

constexpr std::size_t titleLimit = 256;
// Of each line.
constexpr std::size_t toolTipLimit = 200;
constexpr std::size_t mostToolTipLines = 10;
constexpr std::size_t labelLimit = 64;
// What the kernel takes for a path.
constexpr std::size_t nameByteLimit = 4096;
constexpr int mostProperties = 256;

// Reads one property's value, with the message standing in front of what the variant holds. False
// when the message cannot be read any further.
using Read = bool (*)(sd_bus_message& message, ItemProperties& properties, int side);

bool readText(sd_bus_message& message, std::string& result) {
    const char* text = nullptr;
    char type = 0;
    if (sd_bus_message_peek_type(&message, &type, nullptr) <= 0 ||
        sd_bus_message_read_basic(&message, type, static_cast<void*>(&text)) <= 0) {
        return false;
    }
    result = text;
    return true;
}

template <std::string ItemProperties::* member, std::size_t limit>
bool readShown(sd_bus_message& message, ItemProperties& properties, int /*side*/) {
    const bool done = readText(message, properties.*member);
    properties.*member = cleanText(properties.*member, limit);
    return done;
}

bool readName(sd_bus_message& message, std::string& name) {
    const bool done = readText(message, name);
    if (name.size() > nameByteLimit) {
        name.clear();
    }
    return done;
}

template <IconSource ItemProperties::* member>
bool readIconName(sd_bus_message& message, ItemProperties& properties, int /*side*/) {
    return readName(message, (properties.*member).name);
}

template <IconSource ItemProperties::* member>
bool readIconPixmap(sd_bus_message& message, ItemProperties& properties, int side) {
    auto pixmap = readPixmaps(message, side);
    if (!pixmap) {
        return false;
    }
    (properties.*member).pixmap = *std::move(pixmap);
    return true;
}

bool readThemePath(sd_bus_message& message, ItemProperties& properties, int /*side*/) {
    const bool done = readName(message, properties.iconThemePath);
    if (!properties.iconThemePath.starts_with('/')) {
        properties.iconThemePath.clear();
    }
    return done;
}

bool readStatus(sd_bus_message& message, ItemProperties& properties, int /*side*/) {
    std::string status;
    const bool done = readText(message, status);
    if (status == "Passive") {
        properties.status = ItemStatus::Passive;
    } else if (status == "NeedsAttention") {
        properties.status = ItemStatus::NeedsAttention;
    }
    return done;
}

bool readMenu(sd_bus_message& message, ItemProperties& properties, int /*side*/) {
    const bool done = readName(message, properties.menu);
    // Both are ways to say that there is none.
    if (properties.menu == "/" || properties.menu == "/NO_DBUSMENU" ||
        sd_bus_object_path_is_valid(properties.menu.c_str()) <= 0) {
        properties.menu.clear();
    }
    return done;
}

bool readItemIsMenu(sd_bus_message& message, ItemProperties& properties, int /*side*/) {
    int value = 0;
    const bool done = sd_bus_message_read_basic(&message, SD_BUS_TYPE_BOOLEAN, &value) > 0;
    properties.itemIsMenu = value != 0;
    return done;
}

// An icon's name, pictures, a title, and a text.
bool readToolTip(sd_bus_message& message, ItemProperties& properties, int side) {
    std::string icon;
    if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_STRUCT, "sa(iiay)ss") <= 0 ||
        !readText(message, icon) || !readPixmaps(message, side) ||
        !readText(message, properties.toolTipTitle) || !readText(message, properties.toolTipText)) {
        return false;
    }
    properties.toolTipTitle = cleanText(properties.toolTipTitle, titleLimit);
    properties.toolTipText = plainText(properties.toolTipText, toolTipLimit, mostToolTipLines);
    return sd_bus_message_exit_container(&message) >= 0;
}

struct Property {
    std::string_view name;
    std::string_view type;
    Read read;
};

constexpr std::array properties{
    Property{"Status", "s", readStatus},
    Property{"Id", "s", readShown<&ItemProperties::id, identityCharacterLimit>},
    Property{"Title", "s", readShown<&ItemProperties::title, titleLimit>},
    Property{"ToolTip", "(sa(iiay)ss)", readToolTip},
    Property{"IconName", "s", readIconName<&ItemProperties::icon>},
    Property{"IconPixmap", "a(iiay)", readIconPixmap<&ItemProperties::icon>},
    Property{"OverlayIconName", "s", readIconName<&ItemProperties::overlay>},
    Property{"OverlayIconPixmap", "a(iiay)", readIconPixmap<&ItemProperties::overlay>},
    Property{"AttentionIconName", "s", readIconName<&ItemProperties::attention>},
    Property{"AttentionIconPixmap", "a(iiay)", readIconPixmap<&ItemProperties::attention>},
    Property{"IconThemePath", "s", readThemePath},
    Property{"Menu", "o", readMenu},
    Property{"ItemIsMenu", "b", readItemIsMenu},
    Property{"XAyatanaLabel", "s", readShown<&ItemProperties::label, labelLimit>},
};

// Reads one entry of the list.
bool readEntry(sd_bus_message& message, ItemProperties& result, int side) {
    const char* name = nullptr;
    const char* contents = nullptr;
    if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_DICT_ENTRY, "sv") <= 0 ||
        sd_bus_message_read_basic(&message, SD_BUS_TYPE_STRING, static_cast<void*>(&name)) <= 0 ||
        sd_bus_message_peek_type(&message, nullptr, &contents) <= 0) {
        return false;
    }
    // The message keeps what it says of its next part only until that is entered.
    const std::string type = contents;
    const Property* known = nullptr;
    for (const Property& property : properties) {
        if (property.name == name && property.type == type) {
            known = &property;
        }
    }
    if (known == nullptr) {
        if (sd_bus_message_skip(&message, "v") < 0) {
            return false;
        }
    } else if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_VARIANT, type.c_str()) <= 0 ||
               !known->read(message, result, side) || sd_bus_message_exit_container(&message) < 0) {
        return false;
    }
    return sd_bus_message_exit_container(&message) >= 0;
}

} // namespace

std::optional<ItemProperties> readProperties(sd_bus_message& message, int side) {
    if (sd_bus_message_is_method_error(&message, nullptr) > 0 ||
        sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "{sv}") < 0) {
        return std::nullopt;
    }
    ItemProperties result;
    for (int count = 0; sd_bus_message_at_end(&message, 0) == 0; ++count) {
        if (count == mostProperties || !readEntry(message, result, side)) {
            return std::nullopt;
        }
    }
    return result;
}

} // namespace pelistra::menubar

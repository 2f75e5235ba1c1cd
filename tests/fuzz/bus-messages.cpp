// What programs with an icon on the session bus answer: the properties of their items, pixmaps
// among them, and the layouts of their menus. The bus itself sees to it that a message is
// well-formed, so the input decides about everything else: which values of which types it holds,
// and how deep.

#include "menubar/menu/MenuLayout.h"
#include "menubar/notifier/BusHandles.h"
#include "menubar/notifier/ItemProperties.h"
#include "menubar/notifier/Pixmaps.h"
#include "tests/fuzz/Check.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

#include <sys/socket.h>

namespace pelistra::fuzz {
namespace {

using menubar::MessagePtr;

// A connection that nobody answers: messages are made for it.
sd_bus& connection() {
    static const menubar::BusPtr bus = [] {
        std::array<int, 2> ends{};
        check(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0);
        sd_bus* made = nullptr;
        check(sd_bus_new(&made) >= 0 && sd_bus_set_fd(made, ends[0], ends[0]) >= 0 &&
              sd_bus_start(made) >= 0);
        return menubar::BusPtr(made);
    }();
    return *bus;
}

MessagePtr newMessage() {
    sd_bus_message* message = nullptr;
    check(sd_bus_message_new_method_call(&connection(), &message, "a.b", "/a", "a.b", "C") >= 0);
    return MessagePtr(message);
}

// As whoever receives it finds it.
sd_bus_message& received(const MessagePtr& message) {
    check(sd_bus_message_seal(message.get(), 1, 0) >= 0);
    check(sd_bus_message_rewind(message.get(), 1) >= 0);
    return *message;
}

// Texts that a bus carries are UTF-8 without zero bytes.
std::string takeText(Input& input) {
    std::string text = input.text(input.byte());
    std::erase(text, '\0');
    return isUtf8(text) ? text : "text";
}

// One number of pixels often fits the size.
void appendPixmaps(sd_bus_message& message, Input& input) {
    check(sd_bus_message_open_container(&message, 'a', "(iiay)") >= 0);
    for (int count = input.byte() % 70; count > 0; --count) {
        const bool fits = input.byte() % 4 != 0;
        const int width = fits ? input.byte() % 40 : static_cast<int>(input.word());
        const int height = fits ? input.byte() % 40 : static_cast<int>(input.word());
        std::string bytes = input.text(input.byte());
        if (fits) {
            bytes.resize(static_cast<std::size_t>(4 * width * height), '\x7F');
        }
        check(sd_bus_message_open_container(&message, 'r', "iiay") >= 0);
        sd_bus_message_append(&message, "ii", width, height);
        sd_bus_message_append_array(&message, 'y', bytes.data(), bytes.size());
        sd_bus_message_close_container(&message);
    }
    sd_bus_message_close_container(&message);
}

constexpr std::array<std::string_view, 10> types{
    "s", "o", "b", "i", "ay", "a(iiay)", "(sa(iiay)ss)", "aas", "av", "x"};

void appendVariant(sd_bus_message& message, Input& input, std::string_view type) {
    check(sd_bus_message_open_container(&message, 'v', std::string(type).c_str()) >= 0);
    if (type == "s") {
        sd_bus_message_append(&message, "s", takeText(input).c_str());
    } else if (type == "o") {
        const std::string path = "/" + takeText(input);
        const bool valid = sd_bus_object_path_is_valid(path.c_str()) > 0;
        sd_bus_message_append(&message, "o", valid ? path.c_str() : "/");
    } else if (type == "b") {
        sd_bus_message_append(&message, "b", input.byte() % 2);
    } else if (type == "i") {
        sd_bus_message_append(&message, "i", input.word());
    } else if (type == "x") {
        sd_bus_message_append(&message, "x", std::uint64_t{input.word()});
    } else if (type == "ay") {
        const std::string bytes = input.text(input.byte());
        sd_bus_message_append_array(&message, 'y', bytes.data(), bytes.size());
    } else if (type == "a(iiay)") {
        appendPixmaps(message, input);
    } else if (type == "(sa(iiay)ss)") {
        sd_bus_message_open_container(&message, 'r', "sa(iiay)ss");
        sd_bus_message_append(&message, "s", takeText(input).c_str());
        appendPixmaps(message, input);
        sd_bus_message_append(&message, "ss", takeText(input).c_str(), takeText(input).c_str());
        sd_bus_message_close_container(&message);
    } else if (type == "aas") {
        sd_bus_message_append(&message, "aas", 2, 2, takeText(input).c_str(), "Q", 0);
    } else {
        sd_bus_message_append(&message, "av", 2, "s", takeText(input).c_str(), "i", 1);
    }
    check(sd_bus_message_close_container(&message) >= 0);
}

template <std::size_t count>
void appendProperties(
    sd_bus_message& message, Input& input,
    const std::array<std::pair<std::string_view, std::string_view>, count>& known) {
    check(sd_bus_message_open_container(&message, 'a', "{sv}") >= 0);
    while (!input.isEmpty()) {
        const std::uint8_t choice = input.byte();
        if (choice == 0) {
            break;
        }
        const auto& [name, usual] = known[choice % count];
        const std::uint8_t other = input.byte();
        check(sd_bus_message_open_container(&message, 'e', "sv") >= 0);
        sd_bus_message_append(&message, "s", std::string(name).c_str());
        appendVariant(message, input, other < 64 ? types[other % types.size()] : usual);
        sd_bus_message_close_container(&message);
    }
    check(sd_bus_message_close_container(&message) >= 0);
}

void checkImage(const menubar::ArgbImage& image, int side) {
    check(image.width >= 0 && image.width <= side && image.height >= 0 && image.height <= side);
    check(image.pixels.size() ==
          static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
}

void checkPixmaps(Input& input, int side) {
    const MessagePtr message = newMessage();
    appendPixmaps(*message, input);
    if (const auto image = menubar::readPixmaps(received(message), side)) {
        checkImage(*image, side);
    }
}

void checkProperties(Input& input, int side) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 15> known{{
        {"Status", "s"},
        {"Id", "s"},
        {"Title", "s"},
        {"ToolTip", "(sa(iiay)ss)"},
        {"IconName", "s"},
        {"IconPixmap", "a(iiay)"},
        {"OverlayIconName", "s"},
        {"OverlayIconPixmap", "a(iiay)"},
        {"AttentionIconName", "s"},
        {"AttentionIconPixmap", "a(iiay)"},
        {"IconThemePath", "s"},
        {"Menu", "o"},
        {"ItemIsMenu", "b"},
        {"XAyatanaLabel", "s"},
        {"WindowId", "i"},
    }};
    const MessagePtr message = newMessage();
    appendProperties(*message, input, known);
    const auto properties = menubar::readProperties(received(message), side);
    if (!properties) {
        return;
    }
    for (const std::string* const text :
         {&properties->id, &properties->title, &properties->toolTipTitle, &properties->label}) {
        check(isClean(*text));
    }
    std::string lines = properties->toolTipText;
    std::ranges::replace(lines, '\n', ' ');
    check(isClean(lines));
    for (const menubar::IconSource* const icon :
         {&properties->icon, &properties->overlay, &properties->attention}) {
        checkImage(icon->pixmap, side);
    }
    check(properties->iconThemePath.empty() || properties->iconThemePath.starts_with('/'));
    check(properties->menu.empty() || properties->menu.starts_with('/'));
}

// As deep as the input says, at most as deep as a message may.
// be.
void appendEntry(sd_bus_message& message, Input& input, int depth) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 10> known{{
        {"label", "s"},
        {"type", "s"},
        {"enabled", "b"},
        {"visible", "b"},
        {"icon-name", "s"},
        {"icon-data", "ay"},
        {"children-display", "s"},
        {"toggle-type", "s"},
        {"toggle-state", "i"},
        {"shortcut", "aas"},
    }};
    constexpr int deepest = 20;
    check(sd_bus_message_open_container(&message, 'r', "ia{sv}av") >= 0);
    sd_bus_message_append(&message, "i", input.word());
    appendProperties(message, input, known);
    check(sd_bus_message_open_container(&message, 'a', "v") >= 0);
    for (int count = depth < deepest ? input.byte() % 8 : 0; count > 0 && !input.isEmpty();
         --count) {
        if (input.byte() % 16 == 0) {
            appendVariant(message, input, "s");
            continue;
        }
        check(sd_bus_message_open_container(&message, 'v', "(ia{sv}av)") >= 0);
        appendEntry(message, input, depth + 1);
        check(sd_bus_message_close_container(&message) >= 0);
    }
    sd_bus_message_close_container(&message);
    sd_bus_message_close_container(&message);
}

// As deep as the menu, which is bounded.
int checkEntry(const menubar::MenuEntry& entry, int depth) {
    check(depth <= menubar::deepestMenu);
    check(isClean(entry.label) && isClean(entry.shortcut));
    check(entry.submenu || entry.children.empty());
    int count = 1;
    for (const menubar::MenuEntry& child : entry.children) {
        count += checkEntry(child, depth + 1);
    }
    return count;
}

void checkLayout(Input& input) {
    const MessagePtr message = newMessage();
    sd_bus_message_append(message.get(), "u", 1U);
    appendEntry(*message, input, 0);
    if (const auto root = menubar::readLayout(received(message))) {
        check(checkEntry(*root, 0) <= 1 + menubar::mostMenuEntries);
    }
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    constexpr int mostSide = 64;
    const std::uint8_t kind = input.byte();
    const int side = 1 + input.byte() % mostSide;
    switch (kind % 3) {
    case 0:
        checkPixmaps(input, side);
        break;
    case 1:
        checkProperties(input, side);
        break;
    default:
        checkLayout(input);
        break;
    }
}

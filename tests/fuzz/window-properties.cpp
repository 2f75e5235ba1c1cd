// Properties of windows as any client can set them, and the messages it can send to the tray: what
// the bar and the organiser make of them. Input: the type, format and length of a first property,
// its bytes, then the same for a second one.

#include "menubar/DockRequest.h"
#include "menubar/ItemNames.h"
#include "menubar/OrderMemory.h"
#include "menubar/SizeWish.h"
#include "menubar/XEmbed.h"
#include "platform/linux/icons/PresentableText.h"
#include "platform/x11/Properties.h"
#include "tests/fuzz/Check.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace pelistra::fuzz {
namespace {

x11::PropertyValue takeProperty(Input& input) {
    x11::PropertyValue value;
    value.type = input.byte();
    constexpr std::array<std::uint8_t, 4> formats{8, 16, 32, 0};
    const std::uint8_t format = input.byte();
    value.format = format < formats.size() ? formats.at(format) : format;
    const std::size_t unit = std::max<std::size_t>(value.format / 8U, 1);
    const auto bytes = input.bytes(input.byte() * unit);
    value.bytes.assign(bytes.begin(), bytes.end());
    return value;
}

void checkValues(const x11::PropertyValue& value) {
    const auto words = value.words();
    check(words.size() == (value.format == 32 ? value.bytes.size() / sizeof(std::uint32_t) : 0));

    const std::string text = value.text();
    check(text.find('\0') == std::string::npos);
    check(value.format == 8 || text.empty());
    check(text.size() <= value.bytes.size());
    check(isClean(linux::presentableText(text)));

    std::string joined;
    for (const std::string& part : value.texts()) {
        check(part.find('\0') == std::string::npos);
        joined += part + '\0';
    }
    const std::string all(value.bytes.begin(), value.bytes.end());
    check(value.format == 8 ? joined == all || joined == all + '\0' : joined.empty());
}

void checkSize(const std::vector<std::uint32_t>& words, double scale) {
    const auto hints = menubar::sizeFromHints(words);
    constexpr int mostOfX = 65535;
    check(!hints || (hints->width >= 0 && hints->width <= mostOfX && hints->height >= 0 &&
                     hints->height <= mostOfX));
    check(!hints || words.size() >= 7);
    const menubar::Metrics metrics(scale);
    const int most = std::min(metrics.pixels(10000), 32767);
    for (const auto source : {menubar::WishSource::None, menubar::WishSource::SizeHints,
                              menubar::WishSource::ResizeRequest}) {
        for (const bool exact : {false, true}) {
            const menubar::SizeWish wish{
                .source = source, .size = hints.value_or(menubar::PixelSize{}), .exact = exact};
            const int width = menubar::grantedWidth(wish, metrics);
            check(width >= 1 && width <= most);
            check(!exact || source == menubar::WishSource::None || wish.size.width < 1 ||
                  wish.size.width > most || width == wish.size.width);
        }
    }
}

void checkEmbedding(const std::vector<std::uint32_t>& words) {
    const menubar::XEmbedInfo info = menubar::readXEmbedInfo(words);
    check(words.size() >= 2 ? info.version == words[0] && info.mapped == (words[1] % 2 == 1)
                            : info.version == menubar::xembedVersion && info.mapped);
}

// Whoever an item claims to be, it is one line of the order file.
void checkIdentity(const x11::PropertyValue& windowClass, const x11::PropertyValue& name) {
    const menubar::ItemNames names = menubar::namesOf(windowClass, name);
    for (const std::string& part : {names.instance, names.className}) {
        check(cleanLength(part) >= 0);
        check(cleanLength(part) <= static_cast<long>(menubar::identityCharacterLimit));
    }
    menubar::OrderMemory memory;
    memory.place({.instance = names.instance, .className = names.className, .ordinal = 7}, {}, {});
    const std::string text = memory.text();
    check(std::ranges::count(text, '\n') == 2);
    const auto parsed = menubar::OrderMemory::parse(text);
    check(parsed.damagedLines == 0 && parsed.memory == memory);
}

void checkMessage(const x11::PropertyValue& value) {
    constexpr xcb_window_t owner = 0x200001;
    constexpr xcb_atom_t opcode = 0x123;
    xcb_client_message_event_t event{};
    if (!value.bytes.empty()) {
        std::memcpy(&event, value.bytes.data(), std::min(value.bytes.size(), sizeof event));
    }
    const auto honest = event;
    for (const bool forTray : {false, true}) {
        if (forTray) {
            event.window = owner;
            event.type = opcode;
            event.format = 32;
        }
        const auto window = menubar::requestedDock(event, owner, opcode);
        check(!window || (event.window == owner && event.type == opcode && event.format == 32 &&
                          event.data.data32[1] == 0 && *window == honest.data.data32[2] &&
                          *window != XCB_NONE));
        check(!forTray || window.has_value() ==
                              (event.data.data32[1] == 0 && event.data.data32[2] != XCB_NONE));
    }
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    const double scale = 0.5 + (input.byte() % 8) * 0.5;
    const x11::PropertyValue first = takeProperty(input);
    const x11::PropertyValue second = takeProperty(input);
    checkValues(first);
    checkSize(first.words(), scale);
    checkEmbedding(second.words());
    checkIdentity(first, second);
    checkMessage(first);
}

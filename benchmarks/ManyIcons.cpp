#include "benchmarks/ManyIcons.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace pelistra::testing {

namespace {

constexpr std::uint16_t iconSize = 24;
constexpr std::uint32_t firstColour = 0x305080;

} // namespace

ManyIcons::ManyIcons(const std::string& display, std::size_t count) : x_(display) {
    const xcb_window_t tray = x_.trayOwner();
    if (tray == XCB_WINDOW_NONE) {
        throw std::runtime_error("there is no tray");
    }
    for (std::size_t index = 0; index < count; ++index) {
        make(index);
        requestDock(tray, windows_.back());
    }
    x_.sync();
}

void ManyIcons::askForWidth(xcb_window_t window, std::uint32_t width) {
    xcb_configure_window(x_.get(), window, XCB_CONFIG_WINDOW_WIDTH, &width);
    x_.sync();
}

void ManyIcons::make(std::size_t index) {
    const xcb_window_t window = x_.connection().newId();
    const std::uint32_t colour = firstColour + static_cast<std::uint32_t>(index * 5);
    xcb_create_window(x_.get(), XCB_COPY_FROM_PARENT, window, x_.root(), 0, 0, iconSize, iconSize,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL,
                      &colour);
    std::string name = "Icon" + std::to_string(index);
    x11::setText(x_.connection(), window, x_.atom("_NET_WM_NAME"), x_.atom("UTF8_STRING"), name);
    name += '\0';
    x11::setText(x_.connection(), window, x_.atom("WM_CLASS"), x_.atom("STRING"), name + name);
    const std::array<std::uint32_t, 2> info{0, 1};
    x11::setWords(x_.connection(), window, x_.atom("_XEMBED_INFO"), x_.atom("_XEMBED_INFO"), info);
    // WM_NORMAL_HINTS with a least size: some trays take an icon without one for an empty one.
    constexpr std::uint32_t hasLeastSize = 1U << 4;
    const std::array<std::uint32_t, 18> hints{hasLeastSize, 0, 0, 0, 0, iconSize, iconSize};
    x11::setWords(x_.connection(), window, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints);
    windows_.push_back(window);
}

void ManyIcons::requestDock(xcb_window_t tray, xcb_window_t window) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = tray;
    message.type = x_.atom("_NET_SYSTEM_TRAY_OPCODE");
    message.data.data32[2] = window;
    std::array<char, sizeof message> bytes{};
    std::memcpy(bytes.data(), &message, sizeof message);
    xcb_send_event(x_.get(), 0, tray, XCB_EVENT_MASK_NO_EVENT, bytes.data());
}

} // namespace pelistra::testing

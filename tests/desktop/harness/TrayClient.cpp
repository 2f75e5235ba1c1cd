#include "tests/desktop/harness/TrayClient.h"

#include "tests/desktop/harness/WaitFor.h"

#include <array>
#include <cstring>

#include <sys/socket.h>

namespace pelistra::testing {

namespace {

constexpr std::uint32_t systemTrayRequestDock = 0;
constexpr std::uint32_t xembedEmbeddedNotify = 0;
constexpr std::uint32_t xembedMapped = 1;
// WM_NORMAL_HINTS: 18 words, of which flags, minimum and base size are set.
constexpr std::size_t sizeHintsWords = 18;
constexpr std::uint32_t minimumAndBaseSize = (1U << 4U) | (1U << 8U);
constexpr std::size_t minimumWidthWord = 5;
constexpr std::size_t minimumHeightWord = 6;
constexpr std::size_t baseWidthWord = 15;
constexpr std::size_t baseHeightWord = 16;
constexpr std::uint32_t opaque = 0xff000000;

} // namespace

TrayClient::TrayClient(const std::string& display, const Options& options)
    : x_(display), window_(x_.connection().newId()), colour_(x_.connection().newId()) {
    createWindow(options);
    setTitle(options.name, "UTF8_STRING");
    std::string className = options.name;
    className += '\0';
    className += options.name;
    className += '\0';
    x11::setText(x_.connection(), window_, x_.atom("WM_CLASS"), x_.atom("STRING"), className);
    if (options.withEmbedInfo) {
        setMappedFlag(options.mappedFlag);
    }
    if (options.preferredPosition) {
        const std::array<std::uint32_t, 1> position{*options.preferredPosition};
        x11::setWords(x_.connection(), window_, x_.atom("_PELISTRA_PREFERRED_POSITION"),
                      x_.atom("CARDINAL"), position);
    }
    if (options.processId) {
        const std::array<std::uint32_t, 1> process{*options.processId};
        x11::setWords(x_.connection(), window_, x_.atom("_NET_WM_PID"), x_.atom("CARDINAL"),
                      process);
    }
    x_.sync();
}

void TrayClient::createWindow(const Options& options) {
    const x11::Connection& connection = x_.connection();
    const auto visual = options.hasAlpha ? connection.alphaVisual()
                                         : connection.visual(connection.screen().root_visual);
    const xcb_visualid_t id = visual.type->visual_id;
    const xcb_colormap_t colours = connection.newId();
    xcb_create_colormap(x_.get(), XCB_COLORMAP_ALLOC_NONE, colours, x_.root(), id);
    const std::uint32_t colour = opaque | options.colour;
    const std::array<std::uint32_t, 4> values{
        colour, colour, XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY, colours};
    xcb_create_window(
        x_.get(), visual.depth, window_, x_.root(), 0, 0, static_cast<std::uint16_t>(options.width),
        static_cast<std::uint16_t>(options.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, id,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
        values.data());
    xcb_create_gc(x_.get(), colour_, window_, XCB_GC_FOREGROUND, &colour);
}

void TrayClient::changeColour(std::uint32_t colour) {
    colour |= opaque;
    xcb_change_gc(x_.get(), colour_, XCB_GC_FOREGROUND, &colour);
    paint();
}

bool requestDock(XClient& from, xcb_window_t window) {
    const xcb_window_t tray = from.trayOwner();
    if (tray == XCB_WINDOW_NONE) {
        return false;
    }
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = tray;
    message.type = from.atom("_NET_SYSTEM_TRAY_OPCODE");
    message.data.data32[1] = systemTrayRequestDock;
    message.data.data32[2] = window;
    static_assert(sizeof message == 32);
    std::array<char, sizeof message> bytes{};
    std::memcpy(bytes.data(), &message, sizeof message);
    xcb_send_event(from.get(), 0, tray, XCB_EVENT_MASK_NO_EVENT, bytes.data());
    from.sync();
    return true;
}

bool TrayClient::requestDock() {
    return testing::requestDock(x_, window_);
}

void TrayClient::handleEvents() {
    while (const x11::EventPtr event = x_.connection().pollEvent()) {
        const int type = x11::typeOf(*event);
        if (type == XCB_EXPOSE) {
            paint();
        } else if (type == XCB_CLIENT_MESSAGE) {
            const auto& message = x11::eventAs<xcb_client_message_event_t>(*event);
            if (message.type == x_.atom("_XEMBED") &&
                message.data.data32[1] == xembedEmbeddedNotify) {
                embedded_ = true;
            }
        }
    }
}

bool TrayClient::waitUntilDocked() {
    return waitFor([this] {
        handleEvents();
        return x_.parent(window_) != x_.root() && x_.isViewable(window_);
    });
}

void TrayClient::setTitle(std::string_view bytes, const std::string& type) {
    x11::setText(x_.connection(), window_, x_.atom("_NET_WM_NAME"), x_.atom(type), bytes);
    x11::setText(x_.connection(), window_, x_.atom("WM_NAME"), x_.atom(type), bytes);
    x_.sync();
}

void TrayClient::setMappedFlag(bool mapped) {
    const std::array<std::uint32_t, 2> info{0, mapped ? xembedMapped : 0};
    x11::setWords(x_.connection(), window_, x_.atom("_XEMBED_INFO"), x_.atom("_XEMBED_INFO"), info);
    x_.sync();
}

void TrayClient::askForWidth(std::uint32_t width) {
    const auto place = x_.frame(window_);
    const auto height = static_cast<std::uint32_t>(place ? place->height : 1);
    std::array<std::uint32_t, sizeHintsWords> hints{};
    hints[0] = minimumAndBaseSize;
    hints[minimumWidthWord] = width;
    hints[minimumHeightWord] = height;
    hints[baseWidthWord] = width;
    hints[baseHeightWord] = height;
    x11::setWords(x_.connection(), window_, x_.atom("WM_NORMAL_HINTS"), x_.atom("WM_SIZE_HINTS"),
                  hints);
    requestSize(width, height);
}

void TrayClient::requestSize(std::uint32_t width, std::uint32_t height) {
    const std::array<std::uint32_t, 2> size{width, height};
    xcb_configure_window(x_.get(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size.data());
    x_.sync();
}

void TrayClient::destroyWindow() {
    xcb_destroy_window(x_.get(), window_);
    x_.sync();
}

void TrayClient::die() {
    x_.connection().flush();
    shutdown(x_.connection().fileDescriptor(), SHUT_RDWR);
}

void TrayClient::paint() {
    const auto place = x_.frame(window_);
    if (!place) {
        return;
    }
    const xcb_rectangle_t all{.x = 0,
                              .y = 0,
                              .width = static_cast<std::uint16_t>(place->width),
                              .height = static_cast<std::uint16_t>(place->height)};
    xcb_poly_fill_rectangle(x_.get(), window_, colour_, 1, &all);
    x_.sync();
}

} // namespace pelistra::testing

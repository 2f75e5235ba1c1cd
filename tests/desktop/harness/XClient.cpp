#include "tests/desktop/harness/XClient.h"

#include "platform/x11/Atoms.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <ostream>
#include <stdexcept>

#include <xcb/xcb_aux.h>

namespace pelistra::testing {

namespace {

// What the user asks for by a taskbar, as window managers are told it.
constexpr std::uint32_t fromPager = 2;

template <class Reply, class Cookie>
x11::Owned<Reply> answer(xcb_connection_t* connection, Cookie cookie,
                         Reply* (*read)(xcb_connection_t*, Cookie, xcb_generic_error_t**)) {
    xcb_generic_error_t* rawError = nullptr;
    x11::Owned<Reply> reply(read(connection, cookie, &rawError));
    const x11::ErrorPtr error(rawError);
    return reply;
}

std::unique_ptr<x11::Connection> openConnection(const std::string& display) {
    x11::Connection::Failure failure;
    auto connection = x11::Connection::open(display, failure);
    if (!connection) {
        throw std::runtime_error(failure.message);
    }
    connection->setPatience(x11::Connection::startPatience);
    return connection;
}

std::uint8_t mapState(const x11::Connection& connection, xcb_window_t window) {
    const auto reply = answer(connection.get(), xcb_get_window_attributes(connection.get(), window),
                              xcb_get_window_attributes_reply);
    return reply ? reply->map_state : static_cast<std::uint8_t>(XCB_MAP_STATE_UNMAPPED);
}

} // namespace

void PrintTo(const WindowFrame& frame, std::ostream* stream) {
    *stream << frame.width << "x" << frame.height << "+" << frame.x << "+" << frame.y;
}

XClient::XClient(const std::string& display) : connection_(openConnection(display)) {}

xcb_atom_t XClient::atom(const std::string& name) {
    const auto found = atoms_.find(name);
    if (found != atoms_.end()) {
        return found->second;
    }
    return atoms_[name] = x11::internAtoms(*connection_, std::array<std::string_view, 1>{name})[0];
}

void XClient::sync() const {
    xcb_aux_sync(get());
}

bool XClient::exists(xcb_window_t window) const {
    return answer(get(), xcb_get_geometry(get(), window), xcb_get_geometry_reply) != nullptr;
}

std::optional<WindowFrame> XClient::frame(xcb_window_t window) const {
    const auto geometryCookie = xcb_get_geometry(get(), window);
    const auto originCookie = xcb_translate_coordinates(get(), window, root(), 0, 0);
    const auto geometry = answer(get(), geometryCookie, xcb_get_geometry_reply);
    const auto origin = answer(get(), originCookie, xcb_translate_coordinates_reply);
    if (!geometry || !origin) {
        return std::nullopt;
    }
    return WindowFrame{.x = origin->dst_x,
                       .y = origin->dst_y,
                       .width = geometry->width,
                       .height = geometry->height};
}

WindowFrame XClient::rootFrame() const {
    return frame(root()).value_or(WindowFrame{});
}

bool XClient::isMapped(xcb_window_t window) const {
    return mapState(*connection_, window) != XCB_MAP_STATE_UNMAPPED;
}

bool XClient::isViewable(xcb_window_t window) const {
    return mapState(*connection_, window) == XCB_MAP_STATE_VIEWABLE;
}

xcb_window_t XClient::parent(xcb_window_t window) const {
    const auto reply = answer(get(), xcb_query_tree(get(), window), xcb_query_tree_reply);
    return reply ? reply->parent : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

std::vector<xcb_window_t> XClient::children(xcb_window_t window) const {
    const auto reply = answer(get(), xcb_query_tree(get(), window), xcb_query_tree_reply);
    if (!reply) {
        return {};
    }
    const xcb_window_t* first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

xcb_window_t XClient::topLevel(xcb_window_t window) const {
    xcb_window_t top = window;
    for (xcb_window_t up = parent(top); up != root() && up != XCB_WINDOW_NONE; up = parent(top)) {
        top = up;
    }
    return top;
}

bool XClient::isAbove(xcb_window_t upper, xcb_window_t lower) const {
    const std::vector<xcb_window_t> order = children(root());
    const auto upperPlace = std::ranges::find(order, topLevel(upper));
    const auto lowerPlace = std::ranges::find(order, topLevel(lower));
    return upperPlace != order.end() && lowerPlace != order.end() && upperPlace > lowerPlace;
}

std::optional<x11::PropertyValue> XClient::windowProperty(xcb_window_t window,
                                                          const std::string& name) {
    return x11::readProperty(*connection_, x11::requestProperty(*connection_, window, atom(name)));
}

std::vector<std::uint32_t> XClient::words(xcb_window_t window, const std::string& name) {
    const auto value = windowProperty(window, name);
    return value ? value->words() : std::vector<std::uint32_t>();
}

std::string XClient::title(xcb_window_t window) {
    for (const char* name : {"_NET_WM_NAME", "WM_NAME"}) {
        if (const auto value = windowProperty(window, name)) {
            return value->text();
        }
    }
    return {};
}

std::pair<std::string, std::string> XClient::windowClass(xcb_window_t window) {
    const auto value = windowProperty(window, "WM_CLASS");
    std::vector<std::string> texts = value ? value->texts() : std::vector<std::string>();
    texts.resize(2);
    return {texts[0], texts[1]};
}

std::optional<std::uint32_t> XClient::claimedProcess(xcb_window_t window) {
    const std::vector<std::uint32_t> values = words(window, "_NET_WM_PID");
    return values.empty() ? std::nullopt : std::optional(values.front());
}

bool XClient::hasAtom(xcb_window_t window, const std::string& property, const std::string& name) {
    return std::ranges::count(words(window, property), atom(name)) > 0;
}

std::vector<xcb_window_t> XClient::managedWindows() {
    return words(root(), "_NET_CLIENT_LIST");
}

std::optional<xcb_window_t> XClient::managedWindow(std::string_view title) {
    for (const xcb_window_t window : managedWindows()) {
        if (this->title(window) == title) {
            return window;
        }
    }
    return std::nullopt;
}

std::vector<xcb_window_t> XClient::shownTopLevels() const {
    std::vector<xcb_window_t> shown = children(root());
    std::erase_if(shown, [this](xcb_window_t window) { return !isViewable(window); });
    return shown;
}

std::vector<xcb_window_t> XClient::shownMenus() {
    std::vector<xcb_window_t> menus = shownTopLevels();
    std::erase_if(menus, [this](xcb_window_t window) {
        const auto isOfType = [&](const std::string& type) {
            return hasAtom(window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_" + type);
        };
        const x11::Owned<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(get(), xcb_get_window_attributes(get(), window),
                                            nullptr));
        const bool isUnmanaged = attributes && attributes->override_redirect != 0;
        // Qt 6 has no type of its own for them. The second row looks the same.
        const bool isQtMenu =
            isUnmanaged && isOfType("NORMAL") && windowClass(window).second != "Pelistra";
        return !isOfType("POPUP_MENU") && !isQtMenu;
    });
    return menus;
}

void XClient::sendMessage(xcb_window_t to, std::uint32_t eventMask, xcb_window_t about,
                          const std::string& type, const std::array<std::uint32_t, 5>& values) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = atom(type);
    std::ranges::copy(values, std::begin(message.data.data32));
    std::array<char, sizeof message> bytes{};
    std::memcpy(bytes.data(), &message, sizeof message);
    xcb_send_event(get(), 0, to, eventMask, bytes.data());
    sync();
}

void XClient::requestFullScreen(xcb_window_t window, bool fullScreen) {
    sendMessage(root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                window, "_NET_WM_STATE",
                {fullScreen ? 1U : 0U, atom("_NET_WM_STATE_FULLSCREEN"), 0, fromPager, 0});
}

void XClient::requestActivation(xcb_window_t window) {
    sendMessage(root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                window, "_NET_ACTIVE_WINDOW", {fromPager, XCB_CURRENT_TIME, 0, 0, 0});
}

void XClient::requestMinimise(xcb_window_t window) {
    constexpr std::uint32_t iconicState = 3;
    sendMessage(root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                window, "WM_CHANGE_STATE", {iconicState, 0, 0, 0, 0});
}

void XClient::requestClose(xcb_window_t window) {
    sendMessage(window, XCB_EVENT_MASK_NO_EVENT, window, "WM_PROTOCOLS",
                {atom("WM_DELETE_WINDOW"), XCB_CURRENT_TIME, 0, 0, 0});
}

xcb_window_t XClient::selectionOwner(const std::string& name) {
    const auto reply =
        answer(get(), xcb_get_selection_owner(get(), atom(name)), xcb_get_selection_owner_reply);
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

PointerState XClient::pointer() const {
    const auto reply = answer(get(), xcb_query_pointer(get(), root()), xcb_query_pointer_reply);
    if (!reply) {
        throw std::runtime_error("the X server does not answer");
    }
    return {.x = reply->root_x, .y = reply->root_y, .mask = reply->mask};
}

xcb_window_t XClient::focus() const {
    const auto reply = answer(get(), xcb_get_input_focus(get()), xcb_get_input_focus_reply);
    return reply ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

// xcompmgr sleeps over an event that reaches it together with an answer, until the next one comes.
void XClient::wakeCompositor() {
    const xcb_window_t owner = selectionOwner("_NET_WM_CM_S0");
    if (owner == XCB_WINDOW_NONE || title(owner) != "xcompmgr") {
        return;
    }
    const xcb_window_t window = connection_->newId();
    xcb_create_window(get(), 0, window, root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_destroy_window(get(), window);
}

Picture XClient::capture(const WindowFrame& area) {
    wakeCompositor();
    const WindowFrame whole = rootFrame();
    const int left = std::clamp(area.x, 0, whole.width);
    const int top = std::clamp(area.y, 0, whole.height);
    const int right = std::clamp(area.right(), left, whole.width);
    const int bottom = std::clamp(area.y + area.height, top, whole.height);
    if (left == right || top == bottom) {
        return {};
    }
    const auto reply = answer(
        get(),
        xcb_get_image(get(), XCB_IMAGE_FORMAT_Z_PIXMAP, root(), static_cast<std::int16_t>(left),
                      static_cast<std::int16_t>(top), static_cast<std::uint16_t>(right - left),
                      static_cast<std::uint16_t>(bottom - top), ~0U),
        xcb_get_image_reply);
    if (!reply) {
        throw std::runtime_error("the X server gives no picture of the screen");
    }
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(right - left) *
                                      static_cast<std::size_t>(bottom - top));
    const std::size_t bytes = pixels.size() * sizeof(std::uint32_t);
    if (static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) != bytes) {
        throw std::runtime_error("the screen does not have 32 bits a pixel");
    }
    std::memcpy(pixels.data(), xcb_get_image_data(reply.get()), bytes);
    return {right - left, bottom - top, std::move(pixels)};
}

xcb_window_t XClient::trayOwner() {
    return selectionOwner("_NET_SYSTEM_TRAY_S" + std::to_string(connection_->screenNumber()));
}

std::vector<xcb_window_t> XClient::barItems() {
    const xcb_window_t owner = trayOwner();
    return owner == XCB_WINDOW_NONE ? std::vector<xcb_window_t>()
                                    : words(owner, "_PELISTRA_MENUBAR_ITEMS");
}

xcb_window_t XClient::barWindow() {
    const xcb_window_t owner = trayOwner();
    if (owner == XCB_WINDOW_NONE) {
        return XCB_WINDOW_NONE;
    }
    const std::vector<std::uint32_t> values = words(owner, "_PELISTRA_MENUBAR_WINDOW");
    return values.empty() ? static_cast<xcb_window_t>(XCB_WINDOW_NONE) : values.front();
}

std::optional<xcb_window_t> XClient::barItem(std::string_view name) {
    for (const xcb_window_t window : barItems()) {
        const auto [instance, className] = windowClass(window);
        if (instance == name || className == name || title(window) == name) {
            return window;
        }
    }
    return std::nullopt;
}

std::vector<WindowFrame> XClient::barItemFrames() {
    std::vector<WindowFrame> frames;
    for (const xcb_window_t window : barItems()) {
        if (const auto place = frame(window)) {
            frames.push_back(*place);
        }
    }
    return frames;
}

} // namespace pelistra::testing

#include "tests/linux/statusitem/RespondingTray.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace pelistra::testing {

namespace {

constexpr int unscaledHeight = 28;
constexpr std::uint32_t hundred = 100;

std::string selectionName(const XClient& x) {
    return "_NET_SYSTEM_TRAY_S" + std::to_string(x.connection().screenNumber());
}

} // namespace

RespondingTray::RespondingTray(const std::string& display, const Options& options)
    : x_(display), options_(options), owner_(x_.connection().newId()),
      bar_(x_.connection().newId()),
      height_(static_cast<int>(unscaledHeight * options.menuBarScale.value_or(hundred) / hundred)),
      visual_(options.alpha ? x_.connection().alphaVisual()
                            : x_.connection().visual(x_.connection().screen().root_visual)),
      colormap_(x_.connection().newId()) {
    xcb_create_colormap(x_.get(), XCB_COLORMAP_ALLOC_NONE, colormap_, x_.root(),
                        visual_.type->visual_id);
    xcb_create_window(x_.get(), XCB_COPY_FROM_PARENT, owner_, x_.root(), -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_create_window_value_list_t values{};
    values.background_pixel = options_.background;
    values.override_redirect = 1;
    xcb_create_window_aux(x_.get(), XCB_COPY_FROM_PARENT, bar_, x_.root(), 0, 0,
                          static_cast<std::uint16_t>(x_.rootFrame().width),
                          static_cast<std::uint16_t>(height_), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT,
                          &values);
    xcb_map_window(x_.get(), bar_);
    publish();
    xcb_set_selection_owner(x_.get(), owner_, x_.atom(selectionName(x_)), XCB_CURRENT_TIME);
    x_.sync();
    if (x_.trayOwner() != owner_) {
        throw std::runtime_error("the tray selection has another owner");
    }
    sendMessage(x_.root(), "MANAGER", {XCB_CURRENT_TIME, x_.atom(selectionName(x_)), owner_, 0, 0},
                XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    x_.sync();
}

void RespondingTray::end() {
    for (const Place& place : places_) {
        xcb_unmap_window(x_.get(), place.icon);
        xcb_reparent_window(x_.get(), place.icon, x_.root(), 0, 0);
    }
    xcb_destroy_window(x_.get(), bar_);
    xcb_destroy_window(x_.get(), owner_);
    x_.sync();
    places_.clear();
    docked_.clear();
}

void RespondingTray::publish() {
    const auto set = [this](const char* property, xcb_atom_t type,
                            const std::vector<std::uint32_t>& words) {
        x11::setWords(x_.connection(), owner_, x_.atom(property), type, words);
    };
    set("_NET_SYSTEM_TRAY_VISUAL", XCB_ATOM_VISUALID, {visual_.type->visual_id});
    std::vector<std::uint32_t> colours;
    for (int i = 0; i < 4; ++i) {
        colours.insert(colours.end(), options_.foreground.begin(), options_.foreground.end());
    }
    set("_NET_SYSTEM_TRAY_COLORS", XCB_ATOM_CARDINAL, colours);
    if (options_.menuBarScale) {
        set("_PELISTRA_MENUBAR_WINDOW", XCB_ATOM_WINDOW, {bar_});
        set("_PELISTRA_MENUBAR_SCALE", XCB_ATOM_CARDINAL, {*options_.menuBarScale});
        set("_PELISTRA_MENUBAR_ITEMS", XCB_ATOM_WINDOW, {docked_.rbegin(), docked_.rend()});
    }
}

void RespondingTray::handleEvents() {
    while (const x11::EventPtr event = x_.connection().pollEvent()) {
        switch (x11::typeOf(*event)) {
        case XCB_CLIENT_MESSAGE: {
            const auto& message = x11::eventAs<xcb_client_message_event_t>(*event);
            if (message.type == x_.atom("_NET_SYSTEM_TRAY_OPCODE") && message.data.data32[1] == 0) {
                dock(message.data.data32[2]);
            }
            break;
        }
        case XCB_CONFIGURE_REQUEST: {
            const auto& request = x11::eventAs<xcb_configure_request_event_t>(*event);
            const auto place = std::ranges::find(places_, request.window, &Place::icon);
            ++sizeRequests_;
            if (granting_ && place != places_.end() &&
                (request.value_mask & XCB_CONFIG_WINDOW_WIDTH) != 0) {
                place->width = request.width;
                layOut();
            }
            break;
        }
        case XCB_DESTROY_NOTIFY:
            forget(x11::eventAs<xcb_destroy_notify_event_t>(*event).window);
            break;
        default:
            break;
        }
    }
}

xcb_window_t RespondingTray::makeContainer() {
    const xcb_window_t container = x_.connection().newId();
    xcb_create_window_value_list_t values{};
    values.background_pixel = options_.background | 0xff000000;
    values.border_pixel = 0;
    values.event_mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    values.colormap = colormap_;
    xcb_create_window_aux(
        x_.get(), visual_.depth, container, bar_, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
        visual_.type->visual_id,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, &values);
    xcb_map_window(x_.get(), container);
    return container;
}

void RespondingTray::dock(xcb_window_t icon) {
    const auto frame = x_.frame(icon);
    if (!frame || std::ranges::find(docked_, icon) != docked_.end()) {
        return;
    }
    const xcb_window_t container = makeContainer();
    xcb_change_save_set(x_.get(), XCB_SET_MODE_INSERT, icon);
    xcb_reparent_window(x_.get(), icon, container, 0, 0);
    places_.push_back({.icon = icon, .container = container, .width = frame->width});
    docked_.push_back(icon);
    layOut();
    xcb_map_window(x_.get(), icon);
    sendMessage(icon, "_XEMBED", {XCB_CURRENT_TIME, 0, 0, container, 0}, XCB_EVENT_MASK_NO_EVENT);
    publish();
    x_.sync();
}

void RespondingTray::forget(xcb_window_t icon) {
    const auto place = std::ranges::find(places_, icon, &Place::icon);
    if (place == places_.end()) {
        return;
    }
    xcb_destroy_window(x_.get(), place->container);
    places_.erase(place);
    std::erase(docked_, icon);
    layOut();
    publish();
    x_.sync();
}

void RespondingTray::layOut() {
    std::vector<Place> places = places_;
    if (options_.order == Order::ByName) {
        std::ranges::sort(places, {},
                          [this](const Place& place) { return x_.windowClass(place.icon).first; });
    }
    int left = 0;
    int right = x_.rootFrame().width;
    for (const Place& place : places) {
        right -= place.width;
        const int x = options_.order == Order::FromRightEdge ? right : left;
        left += place.width;
        farthest_ = std::max(farthest_, x);
        const std::array<std::uint32_t, 4> frame{static_cast<std::uint32_t>(x), 0,
                                                 static_cast<std::uint32_t>(place.width),
                                                 static_cast<std::uint32_t>(height_)};
        xcb_configure_window(x_.get(), place.container,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             frame.data());
        xcb_configure_window(x_.get(), place.icon,
                             XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, &frame[2]);
    }
    x_.sync();
}

void RespondingTray::sendMessage(xcb_window_t to, const std::string& type,
                                 const std::array<std::uint32_t, 5>& words, std::uint32_t mask) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = to;
    message.type = x_.atom(type);
    std::ranges::copy(words, std::begin(message.data.data32));
    std::array<char, sizeof message> bytes{};
    std::memcpy(bytes.data(), &message, sizeof message);
    xcb_send_event(x_.get(), 0, to, mask, bytes.data());
}

std::optional<xcb_window_t> RespondingTray::item(const std::string& name) {
    const auto found = std::ranges::find_if(
        docked_, [&](xcb_window_t icon) { return x_.windowClass(icon).first == name; });
    return found == docked_.end() ? std::nullopt : std::optional(*found);
}

xcb_window_t RespondingTray::waitForItem(const std::string& name) {
    if (!waitFor([&] { return item(name) && x_.isViewable(*item(name)); })) {
        throw std::runtime_error(name + " was not docked");
    }
    return *item(name);
}

WindowFrame RespondingTray::frameOf(xcb_window_t icon) {
    return x_.frame(icon).value_or(WindowFrame{});
}

bool RespondingTray::waitForWidth(xcb_window_t icon, int width) {
    return waitFor([&] { return frameOf(icon).width == width; });
}

void RespondingTray::setForeground(const std::array<std::uint32_t, 3>& foreground) {
    options_.foreground = foreground;
    publish();
    x_.sync();
}

void RespondingTray::setMenuBarScale(std::uint32_t hundredths) {
    options_.menuBarScale = hundredths;
    height_ = static_cast<int>(unscaledHeight * hundredths / hundred);
    const auto height = static_cast<std::uint32_t>(height_);
    xcb_configure_window(x_.get(), bar_, XCB_CONFIG_WINDOW_HEIGHT, &height);
    publish();
    layOut();
}

void RespondingTray::eject(xcb_window_t icon) {
    const auto place = std::ranges::find(places_, icon, &Place::icon);
    xcb_reparent_window(x_.get(), icon, x_.root(), 0, 0);
    xcb_destroy_window(x_.get(), place->container);
    places_.erase(place);
    std::erase(docked_, icon);
    publish();
    x_.sync();
}

} // namespace pelistra::testing

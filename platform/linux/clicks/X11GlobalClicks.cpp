#include "platform/linux/clicks/X11GlobalClicks.h"

#include "platform/linux/clicks/Buttons.h"
#include "platform/linux/clicks/PointerDevice.h"
#include "platform/linux/clicks/WindowsAt.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace pelistra::linux {

namespace {

// The first version in which raw events come while another program holds a grab.
constexpr std::uint16_t inputMajor = 2;
constexpr std::uint16_t inputMinor = 2;

struct EventMaskRequest {
    xcb_input_event_mask_t header;
    std::uint32_t mask;
};

} // namespace

struct X11GlobalClicks::Monitor {
    EventMask matching = 0;
    std::function<void()> handler;
};

class X11GlobalClicks::Token final : public Subscription {
public:
    explicit Token(std::function<void()> end) : end_(std::move(end)) {}
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;
    ~Token() override { end_(); }

private:
    std::function<void()> end_;
};

X11GlobalClicks::X11GlobalClicks(const x11::Connection& connection, EventPump& pump, OwnWindows own)
    : connection_(connection), pump_(pump), own_(std::move(own)) {}

SubscriptionPtr X11GlobalClicks::addMonitor(EventMask matching, std::function<void()> handler) {
    if (!prepare()) {
        return nullptr;
    }
    if (monitors_.empty()) {
        events_ = pump_.addHandler([this](const xcb_generic_event_t& event) { handle(event); });
        select(true);
    }
    auto monitor =
        std::make_shared<Monitor>(Monitor{.matching = matching, .handler = std::move(handler)});
    const Monitor* const identity = monitor.get();
    monitors_.push_back(std::move(monitor));
    return std::make_unique<Token>(lifetime_.guard([this, identity] { remove(identity); }));
}

bool X11GlobalClicks::prepare() {
    if (!isSupported_) {
        const std::uint64_t unanswered = connection_.unanswered();
        x11::Owned<xcb_input_xi_query_version_reply_t> version;
        if (const auto* extension = connection_.extension(xcb_input_id)) {
            opcode_ = extension->major_opcode;
            version = connection_.take<xcb_input_xi_query_version_reply_t>(
                xcb_input_xi_query_version(connection_.get(), inputMajor, inputMinor));
        }
        if (connection_.unanswered() != unanswered) {
            return false;
        }
        isSupported_ = version && std::pair(version->major_version, version->minor_version) >=
                                      std::pair(inputMajor, inputMinor);
    }
    return *isSupported_;
}

void X11GlobalClicks::select(bool on) const {
    const EventMaskRequest request{
        .header = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
        .mask = on ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS} : 0};
    xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &request.header);
    connection_.flush();
}

void X11GlobalClicks::remove(const Monitor* monitor) {
    std::erase_if(monitors_, [monitor](const auto& known) { return known.get() == monitor; });
    if (monitors_.empty()) {
        events_.reset();
        select(false);
    }
}

void X11GlobalClicks::handle(const xcb_generic_event_t& event) {
    if (x11::typeOf(event) != XCB_GE_GENERIC) {
        return;
    }
    const auto& generic = x11::eventAs<xcb_ge_generic_event_t>(event);
    if (generic.extension == opcode_ && generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
        handlePress(x11::eventAs<xcb_input_raw_button_press_event_t>(event));
    }
}

void X11GlobalClicks::handlePress(const xcb_input_raw_button_press_event_t& press) {
    const std::uint64_t unanswered = connection_.unanswered();
    const auto type = typeOf(press.detail);
    const auto wanted = [&type](const auto& monitor) {
        return (monitor->matching & maskOf(*type)) != 0;
    };
    if (!type || std::ranges::none_of(monitors_, wanted) || isOwnDevice(press.deviceid) ||
        isOwnPlace(press.deviceid) || connection_.unanswered() != unanswered) {
        return;
    }
    // A handler may end its own monitor or another one.
    const auto called = monitors_;
    for (const auto& monitor : called) {
        const bool isThere = std::ranges::find(monitors_, monitor) != monitors_.end();
        if (isThere && wanted(monitor)) {
            monitor->handler();
        }
    }
}

// Raw events carry the device's own button; which one that is to the user is a setting of the
// server, as for left-handed people.
std::optional<EventType> X11GlobalClicks::typeOf(std::uint32_t physicalButton) const {
    const auto mapping = connection_.take<xcb_get_pointer_mapping_reply_t>(
        xcb_get_pointer_mapping(connection_.get()));
    std::uint32_t button = physicalButton;
    if (mapping && physicalButton >= 1 && physicalButton <= mapping->map_len) {
        button = xcb_get_pointer_mapping_map(mapping.get())[physicalButton - 1];
    }
    return buttonEventType(button, true);
}

bool X11GlobalClicks::isOwnDevice(xcb_input_device_id_t device) const {
    const auto reply = connection_.take<xcb_input_xi_query_device_reply_t>(
        xcb_input_xi_query_device(connection_.get(), device));
    if (!reply) {
        return false;
    }
    const auto infos = xcb_input_xi_query_device_infos_iterator(reply.get());
    if (infos.rem == 0) {
        return false;
    }
    const std::string_view name(
        xcb_input_xi_device_info_name(infos.data),
        static_cast<std::size_t>(xcb_input_xi_device_info_name_length(infos.data)));
    return name == PointerDevice::pointerName;
}

bool X11GlobalClicks::isOwnPlace(xcb_input_device_id_t device) const {
    const auto pointer = connection_.take<xcb_input_xi_query_pointer_reply_t>(
        xcb_input_xi_query_pointer(connection_.get(), connection_.root(), device));
    if (!pointer) {
        return false;
    }
    constexpr int fractionBits = 16;
    const auto x = static_cast<std::int16_t>(pointer->root_x >> fractionBits);
    const auto y = static_cast<std::int16_t>(pointer->root_y >> fractionBits);
    const xcb_window_t topLevel = pointer->child;
    xcb_window_t window = topLevel;
    for (int depth = 0; window != XCB_WINDOW_NONE && depth < deepestWindow; ++depth) {
        if (isOwnWindow(window)) {
            return true;
        }
        const auto inside = connection_.take<xcb_translate_coordinates_reply_t>(
            xcb_translate_coordinates(connection_.get(), connection_.root(), window, x, y));
        window = inside ? inside->child : xcb_window_t{XCB_WINDOW_NONE};
    }
    return topLevel != XCB_WINDOW_NONE && isFrameOfOwnWindow(topLevel);
}

bool X11GlobalClicks::isOwnWindow(xcb_window_t window) const {
    return connection_.hasMade(window) || own_.hasMade(window);
}

bool X11GlobalClicks::isFrameOfOwnWindow(xcb_window_t topLevel) const {
    return std::ranges::any_of(own_.shown(),
                               [&](xcb_window_t window) { return topLevelOf(window) == topLevel; });
}

xcb_window_t X11GlobalClicks::topLevelOf(xcb_window_t window) const {
    for (int depth = 0; depth < deepestWindow; ++depth) {
        const auto tree =
            connection_.take<xcb_query_tree_reply_t>(xcb_query_tree(connection_.get(), window));
        if (!tree || tree->parent == XCB_WINDOW_NONE) {
            return XCB_WINDOW_NONE;
        }
        if (tree->parent == tree->root) {
            return window;
        }
        window = tree->parent;
    }
    return XCB_WINDOW_NONE;
}

} // namespace pelistra::linux

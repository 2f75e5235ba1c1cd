#include "menubar/notifier/BusListener.h"

#include <utility>

namespace pelistra::menubar {

struct BusListener::State : std::enable_shared_from_this<State> {
    explicit State(Handler toCall) : handler(std::move(toCall)) {}

    static int handle(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
        // The handler may end the listener.
        const std::shared_ptr<State> self = static_cast<State*>(data)->shared_from_this();
        self->handler(*message);
        return 0;
    }

    Handler handler;
};

BusListener BusListener::call(sd_bus& bus, const MessagePtr& message, Handler handler) {
    BusListener listener;
    if (message == nullptr) {
        return listener;
    }
    listener.state_ = std::make_shared<State>(std::move(handler));
    sd_bus_slot* slot = nullptr;
    constexpr auto timeout = std::chrono::microseconds(patience).count();
    if (sd_bus_call_async(&bus, &slot, message.get(), State::handle, listener.state_.get(),
                          static_cast<std::uint64_t>(timeout)) < 0) {
        return {};
    }
    listener.slot_.reset(slot);
    return listener;
}

BusListener BusListener::match(sd_bus& bus, const std::string& rule, Handler handler) {
    // Without this, a rule that the bus refuses would end the connection.
    constexpr auto installed = [](sd_bus_message*, void*, sd_bus_error*) { return 0; };
    BusListener listener;
    listener.state_ = std::make_shared<State>(std::move(handler));
    sd_bus_slot* slot = nullptr;
    if (sd_bus_add_match_async(&bus, &slot, rule.c_str(), State::handle, installed,
                               listener.state_.get()) < 0) {
        return {};
    }
    listener.slot_.reset(slot);
    return listener;
}

MessagePtr newCall(sd_bus& bus, const std::string& service, const std::string& path,
                   const char* interface, const char* member) {
    sd_bus_message* message = nullptr;
    if (sd_bus_message_new_method_call(&bus, &message, service.c_str(), path.c_str(), interface,
                                       member) < 0) {
        return nullptr;
    }
    MessagePtr call(message);
    // Nobody is started for the sake of an icon.
    sd_bus_message_set_auto_start(message, 0);
    return call;
}

MessagePtr newBusCall(sd_bus& bus, const char* member) {
    return newCall(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                   member);
}

std::string textIn(sd_bus_message& message) {
    const char* text = nullptr;
    if (sd_bus_message_is_method_error(&message, nullptr) > 0 ||
        sd_bus_message_read_basic(&message, SD_BUS_TYPE_STRING, static_cast<void*>(&text)) <= 0) {
        return {};
    }
    return text;
}

} // namespace pelistra::menubar

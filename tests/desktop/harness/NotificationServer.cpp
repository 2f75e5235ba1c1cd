#include "tests/desktop/harness/NotificationServer.h"

#include "tests/desktop/harness/NotifierClient.h"

#include <cstdint>
#include <stdexcept>

namespace pelistra::testing {

NotificationServer::NotificationServer(const std::string& address) : bus_(connectToBus(address)) {
    if (sd_bus_add_object(bus_, nullptr, "/org/freedesktop/Notifications", handle, this) < 0 ||
        sd_bus_request_name(bus_, "org.freedesktop.Notifications", 0) < 0) {
        sd_bus_unref(bus_);
        throw std::runtime_error("notifications cannot be taken at " + address);
    }
}

NotificationServer::~NotificationServer() {
    sd_bus_close_unref(bus_);
}

void NotificationServer::handleEvents() {
    while (sd_bus_process(bus_, nullptr) > 0) {
    }
}

bool NotificationServer::isConnected(const std::string& uniqueName) const {
    return sd_bus_get_name_creds(bus_, uniqueName.c_str(), 0, nullptr) >= 0;
}

int NotificationServer::handle(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
    auto& server = *static_cast<NotificationServer*>(data);
    if (sd_bus_message_is_method_call(message, "org.freedesktop.Notifications", "Notify") <= 0) {
        return 0;
    }
    const char* application = "";
    const char* icon = "";
    const char* summary = "";
    const char* body = "";
    std::uint32_t replaced = 0;
    if (sd_bus_message_has_signature(message, "susssasa{sv}i") <= 0 ||
        sd_bus_message_read(message, "susss", &application, &replaced, &icon, &summary, &body) <
            0) {
        return -EINVAL;
    }
    server.shown_.push_back({.sender = sd_bus_message_get_sender(message),
                             .application = application,
                             .summary = summary,
                             .body = body});
    return server.answering_ ? sd_bus_reply_method_return(message, "u", std::uint32_t{1}) : 1;
}

} // namespace pelistra::testing

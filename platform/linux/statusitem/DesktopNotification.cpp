#include "platform/linux/statusitem/DesktopNotification.h"

#include <cstdint>

#include <systemd/sd-bus.h>

namespace pelistra::linux {

namespace {

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* path = "/org/freedesktop/Notifications";
// The server's own time.
constexpr std::int32_t usualExpiry = -1;

int noteAnswer(sd_bus_message* /*answer*/, void* isAnswered, sd_bus_error* /*error*/) {
    *static_cast<bool*>(isAnswered) = true;
    return 0;
}

} // namespace

void DesktopNotification::BusEnd::operator()(sd_bus* bus) const {
    sd_bus_close_unref(bus);
}

DesktopNotification::DesktopNotification(const std::string& summary, const std::string& body) {
    if (!send(summary, body)) {
        end();
        return;
    }
    source_ = timedSource([this] { process(); });
    descriptorTag_ = g_source_add_unix_fd(source_.get(), sd_bus_get_fd(bus_.get()), G_IO_IN);
    rearm();
}

DesktopNotification::~DesktopNotification() = default;

bool DesktopNotification::send(const std::string& summary, const std::string& body) {
    sd_bus* bus = nullptr;
    const bool isOpen = sd_bus_open_user(&bus) >= 0;
    bus_.reset(bus);
    // What is called before the bus has answered is sent once it has.
    return isOpen && sd_bus_call_method_async(bus, nullptr, service, path, service, "Notify",
                                              noteAnswer, &isAnswered_, "susssasa{sv}i", "Pelistra",
                                              std::uint32_t{0}, "pelistra", summary.c_str(),
                                              body.c_str(), 0, 0, usualExpiry) >= 0;
}

void DesktopNotification::process() {
    int result = 1;
    while (result > 0 && !isAnswered_) {
        result = sd_bus_process(bus_.get(), nullptr);
    }
    if (result < 0 || isAnswered_) {
        end();
    } else {
        rearm();
    }
}

void DesktopNotification::rearm() {
    const int events = sd_bus_get_events(bus_.get());
    std::uint64_t due = 0;
    if (events < 0 || sd_bus_get_timeout(bus_.get(), &due) < 0) {
        end();
        return;
    }
    // poll()'s events are those of GLib.
    g_source_modify_unix_fd(source_.get(), descriptorTag_, static_cast<GIOCondition>(events));
    g_source_set_ready_time(source_.get(), due == UINT64_MAX ? -1 : static_cast<gint64>(due));
}

void DesktopNotification::end() {
    source_.reset();
    bus_.reset();
}

} // namespace pelistra::linux

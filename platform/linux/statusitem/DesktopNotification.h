#pragma once

#include "platform/linux/loop/Source.h"

#include <memory>
#include <string>

struct sd_bus;

namespace pelistra::linux {

// One message to whoever shows notifications on the session bus (org.freedesktop.Notifications),
// over a connection of its own that ends with the answer. Nobody waits: a bus or a server that is
// missing or hangs is given up in silence, after the usual time-out of the bus.
class DesktopNotification {
public:
    // The body may be markup to the server.
    DesktopNotification(const std::string& summary, const std::string& body);
    DesktopNotification(const DesktopNotification&) = delete;
    DesktopNotification& operator=(const DesktopNotification&) = delete;
    ~DesktopNotification();

private:
    struct BusEnd {
        // Not flushed: that would wait for a bus that has stopped reading.
        void operator()(sd_bus* bus) const;
    };

    [[nodiscard]] bool send(const std::string& summary, const std::string& body);
    void process();
    // Waits for what the bus needs next.
    void rearm();
    void end();

    std::unique_ptr<sd_bus, BusEnd> bus_;
    bool isAnswered_ = false;
    void* descriptorTag_ = nullptr;
    SourcePtr source_;
};

} // namespace pelistra::linux

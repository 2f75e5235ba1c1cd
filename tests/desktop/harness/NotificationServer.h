#pragma once

#include <memory>
#include <string>
#include <vector>

#include <systemd/sd-bus.h>

namespace pelistra::testing {

// Takes notifications on a session bus, and shows them to the test alone. It answers when
// handleEvents() is called.
class NotificationServer {
public:
    struct Notification {
        std::string sender;
        std::string application;
        std::string summary;
        std::string body;
    };

    // Throws std::runtime_error when there is no bus, or another server.
    explicit NotificationServer(const std::string& address);
    NotificationServer(const NotificationServer&) = delete;
    NotificationServer& operator=(const NotificationServer&) = delete;
    ~NotificationServer();

    void handleEvents();
    // Whether it tells the programs that it has shown what they sent; it does at first.
    void setAnswering(bool answering) { answering_ = answering; }

    [[nodiscard]] const std::vector<Notification>& shown() const { return shown_; }
    // Whether that connection is still on the bus.
    [[nodiscard]] bool isConnected(const std::string& uniqueName) const;

private:
    static int handle(sd_bus_message* message, void* data, sd_bus_error* error);

    sd_bus* bus_;
    bool answering_ = true;
    std::vector<Notification> shown_;
};

} // namespace pelistra::testing

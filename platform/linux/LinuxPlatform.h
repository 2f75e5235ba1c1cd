#pragma once

#include "platform/Platform.h"
#include "platform/x11/Connection.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pelistra::linux {

class SingleInstance;

// The seam on Linux: owns one of each service, in the order in which they need
// each other.
class LinuxPlatform {
public:
    // The connection and the instance must outlive this object; nobody else handles the
    // connection's events from now on.
    LinuxPlatform(x11::Connection& connection, SingleInstance& instance,
                  std::vector<std::string> arguments);
    LinuxPlatform(const LinuxPlatform&) = delete;
    LinuxPlatform& operator=(const LinuxPlatform&) = delete;
    ~LinuxPlatform();

    // The services, valid as long as this object.
    [[nodiscard]] Platform platform();

    // Runs the event loop until the application is terminated, a signal asks for its end, or the
    // display is lost, which ends the process.
    void run();

private:
    struct Services;
    std::unique_ptr<Services> services_;
};

} // namespace pelistra::linux

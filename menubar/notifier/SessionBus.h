#pragma once

#include "menubar/notifier/BusHandles.h"

#include <chrono>
#include <functional>
#include <optional>

#include <poll.h>

namespace pelistra::menubar {

// The connection to the user's session bus, made again after it was lost. It never waits: the loop
// that owns it polls what it says and calls process().
class SessionBus {
public:
    using Clock = std::chrono::steady_clock;
    // How soon after the loss the bus is looked for, twice as long after every failure, at most.
    static constexpr std::chrono::milliseconds firstRetry{250};
    static constexpr std::chrono::milliseconds lastRetry{4'000};

    // Calls `changed` with the bus once it answers, and with null once it is lost.
    explicit SessionBus(std::function<void(sd_bus*)> changed) : changed_(std::move(changed)) {}

    // What to wait for; a negative descriptor when there is nothing.
    [[nodiscard]] pollfd descriptor() const;
    // When process() is to be called although nothing came; empty: never.
    [[nodiscard]] std::optional<Clock::time_point> due() const;
    // Handles some of what has come. Returns whether anything had.
    bool process();

private:
    void open();
    void lose();

    std::function<void(sd_bus*)> changed_;
    BusPtr bus_;
    bool ready_ = false;
    // There is a loss in the log that no success has followed.
    bool complained_ = false;
    std::chrono::milliseconds retryAfter_ = firstRetry;
    std::optional<Clock::time_point> retryAt_ = Clock::now();
};

} // namespace pelistra::menubar

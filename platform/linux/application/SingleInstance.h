#pragma once

#include "platform/x11/Connection.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace pelistra::linux {

// One organiser per X screen. The running one owns the selection _PELISTRA_ORGANISER_S<n>; a later
// start finds that out and hands over what it was asked to show by converting a target of the
// selection.
class SingleInstance {
public:
    enum class Request { ShowSettings, ShowOnboarding };
    enum class Claim {
        // This process is the organiser now.
        Claimed,
        // Another one runs.
        Taken,
        // The server did not let us.
        Failed
    };

    // How long the other organiser has to answer.
    static constexpr std::chrono::milliseconds patience{5000};

    explicit SingleInstance(x11::Connection& connection);
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    ~SingleInstance();

    // Takes the selection, unless another organiser owns it; a few round trips.
    [[nodiscard]] Claim claim();
    // Hands a request to the running organiser; whether it took it in time. Drops other events that
    // come meanwhile.
    [[nodiscard]] bool handOver(Request request, std::chrono::milliseconds bound = patience);

    // What to do with the requests of later starts.
    void setRequestHandler(std::function<void(Request)> handler);
    // To be called for every event of the connection, by the process that claimed it.
    void handle(const xcb_generic_event_t& event);

private:
    enum Name : std::uint8_t {
        Selection,
        ShowSettings,
        ShowOnboarding,
        Targets,
        Timestamp,
        Answer,
        NameCount
    };

    // Waits for an event that `isIt` accepts; null when none comes in time.
    [[nodiscard]] x11::EventPtr waitFor(const std::function<bool(const xcb_generic_event_t&)>& isIt,
                                        std::chrono::milliseconds bound);
    [[nodiscard]] std::optional<xcb_timestamp_t> serverTime();
    [[nodiscard]] xcb_window_t owner() const;
    // Whether the request was one of ours; fills the property that the requestor named.
    [[nodiscard]] bool answer(const xcb_selection_request_event_t& request);

    x11::Connection& connection_;
    std::array<xcb_atom_t, NameCount> atoms_{};
    xcb_window_t window_;
    xcb_timestamp_t claimedAt_ = XCB_CURRENT_TIME;
    std::function<void(Request)> handler_;
};

} // namespace pelistra::linux

#pragma once

#include "menubar/notifier/BusHandles.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace pelistra::menubar {

// Waits for messages of the bus without stopping for them: for the answer to one call, or for the
// signals that a rule matches. Nothing comes any more once the listener is gone.
class BusListener {
public:
    using Handler = std::function<void(sd_bus_message& message)>;

    // How long a program may take to answer.
    static constexpr std::chrono::seconds patience{10};

    BusListener() = default;

    // Sends the call; the handler gets the answer or an error, once. Empty when it cannot be sent.
    [[nodiscard]] static BusListener call(sd_bus& bus, const MessagePtr& message, Handler handler);
    // The handler gets every message that the rule matches.
    [[nodiscard]] static BusListener match(sd_bus& bus, const std::string& rule, Handler handler);

    explicit operator bool() const { return slot_ != nullptr; }
    void reset() { *this = BusListener(); }

private:
    struct State;

    // The slot goes first: it refers to the state.
    std::shared_ptr<State> state_;
    SlotPtr slot_;
};

// A call without arguments yet; null when a name in it is none that the bus knows.
[[nodiscard]] MessagePtr newCall(sd_bus& bus, const std::string& service, const std::string& path,
                                 const char* interface, const char* member);
// The same, to the bus itself.
[[nodiscard]] MessagePtr newBusCall(sd_bus& bus, const char* member);

// The text that a message consists of; empty when it is an error or anything else.
[[nodiscard]] std::string textIn(sd_bus_message& message);

} // namespace pelistra::menubar

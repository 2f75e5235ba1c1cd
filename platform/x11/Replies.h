#pragma once

#include "platform/x11/Connection.h"

#include <chrono>
#include <cstdint>

namespace pelistra::x11 {

// Answers of the X server for a task that may wait for a bounded time altogether, where a question
// alone would take them from the connection.
//
// A task begins with begin(), sends its requests in batches and takes every answer with take(): the
// answers of one batch cost one round trip together when all of its requests are sent before the
// first answer is taken.
class Replies {
public:
    explicit Replies(const Connection& connection) : connection_(&connection) {}

    // Starts a task that may wait for this long altogether. False when the server still owes an
    // answer to a task that ran out of time: nothing should be sent then.
    [[nodiscard]] bool begin(std::chrono::milliseconds patience);

    // The answer to a request whose errors come with its answer (not an _unchecked one). Null when
    // the server answered with an error, or not in time.
    template <class Reply, class Cookie>
    [[nodiscard]] Owned<Reply> take(Cookie cookie) {
        return Owned<Reply>(static_cast<Reply*>(takeRaw(cookie.sequence)));
    }

    // True when an answer of the current task did not come in time, or the connection broke.
    [[nodiscard]] bool failed() const { return failed_; }
    // How often the current task has waited for the server after sending something.
    [[nodiscard]] int roundTrips() const { return roundTrips_; }

private:
    [[nodiscard]] void* takeRaw(unsigned sequence);

    const Connection* connection_;
    Connection::TimePoint deadline_;
    std::uint64_t written_ = 0;
    int roundTrips_ = 0;
    bool failed_ = false;
};

} // namespace pelistra::x11

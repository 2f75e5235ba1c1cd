#include "platform/x11/Replies.h"

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <xcb/xcbext.h>

namespace pelistra::x11 {

bool Replies::begin(std::chrono::milliseconds patience) {
    if (owed_) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(connection_->get(), *owed_, &reply, &error) == 0) {
            return false;
        }
        const Owned<void> ownedReply(reply);
        const ErrorPtr ownedError(error);
        owed_.reset();
    }
    deadline_ = std::chrono::steady_clock::now() + patience;
    written_ = xcb_total_written(connection_->get());
    roundTrips_ = 0;
    failed_ = !connection_->isAlive();
    return !failed_;
}

void* Replies::takeRaw(unsigned sequence) {
    if (failed_) {
        xcb_discard_reply(connection_->get(), sequence);
        return nullptr;
    }
    connection_->flush();
    if (const std::uint64_t written = xcb_total_written(connection_->get()); written != written_) {
        written_ = written;
        ++roundTrips_;
    }
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    while (xcb_poll_for_reply(connection_->get(), sequence, &reply, &error) == 0) {
        if (!waitForInput()) {
            fail(sequence);
            return nullptr;
        }
    }
    const ErrorPtr ownedError(error);
    failed_ = failed_ || !connection_->isAlive();
    return reply;
}

bool Replies::waitForInput() const {
    using std::chrono::milliseconds;
    while (true) {
        const auto left =
            std::chrono::ceil<milliseconds>(deadline_ - std::chrono::steady_clock::now());
        pollfd descriptor{.fd = connection_->fileDescriptor(), .events = POLLIN, .revents = 0};
        const int ready =
            ::poll(&descriptor, 1, static_cast<int>(std::max<milliseconds::rep>(left.count(), 0)));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

void Replies::fail(unsigned sequence) {
    failed_ = true;
    owed_ = sequence;
}

} // namespace pelistra::x11

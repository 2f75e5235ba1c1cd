#include "platform/x11/Replies.h"

#include <xcb/xcbext.h>

namespace pelistra::x11 {

bool Replies::begin(std::chrono::milliseconds patience) {
    deadline_ = std::chrono::steady_clock::now() + patience;
    written_ = xcb_total_written(connection_->get());
    roundTrips_ = 0;
    failed_ = connection_->isStalled() || !connection_->isAlive();
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
    const Connection::Answer answer = connection_->await(sequence, deadline_);
    failed_ = !answer.hasCome;
    return answer.reply;
}

} // namespace pelistra::x11

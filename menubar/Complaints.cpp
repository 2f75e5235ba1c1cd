#include "menubar/Complaints.h"

#include "menubar/Log.h"

#include <utility>

namespace pelistra::menubar {

void Complaints::add(std::string_view text) {
    if (const std::optional<std::string> line = lineFor(text, Clock::now())) {
        log(*line);
    }
}

std::optional<std::string> Complaints::lineFor(std::string_view text, Clock::time_point now) {
    if (last_ && now - *last_ < pause) {
        ++heldBack_;
        return std::nullopt;
    }
    last_ = now;
    std::string line(text);
    if (const int count = std::exchange(heldBack_, 0); count > 0) {
        line += " (and " + std::to_string(count) + " more such faults before)";
    }
    return line;
}

} // namespace pelistra::menubar

#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace pelistra::menubar {

// Log lines about other programs' faults: one in a while, however often a program errs. A line that
// follows others that were held back says how many.
class Complaints {
public:
    using Clock = std::chrono::steady_clock;
    // From one line to the next. Long enough for a log that stays readable.
    static constexpr std::chrono::seconds pause{10};

    // Logs the complaint, or holds it back.
    void add(std::string_view text);

    // What add() does at a time of the caller's choice: the line to log for a complaint at `now`;
    // empty when it is held back.
    [[nodiscard]] std::optional<std::string> lineFor(std::string_view text, Clock::time_point now);

private:
    std::optional<Clock::time_point> last_;
    int heldBack_ = 0;
};

} // namespace pelistra::menubar

#pragma once

#include "base/Geometry.h"

#include <string>
#include <string_view>
#include <vector>

namespace pelistra::testing {

// What was asked of the fakes, across all of them, in the order of asking.
class Journal {
public:
    void note(std::string entry) { entries_.push_back(std::move(entry)); }

    [[nodiscard]] const std::vector<std::string>& entries() const { return entries_; }
    // The entries that start with the given text, in order.
    [[nodiscard]] std::vector<std::string> entriesStartingWith(std::string_view prefix) const;
    [[nodiscard]] bool contains(std::string_view entry) const;
    void clear() { entries_.clear(); }

private:
    std::vector<std::string> entries_;
};

// The shortest decimal text of a number: 14, 0.25, -2.
std::string decimal(double value);
// "true" or "false".
std::string flag(bool value);
// "14 x 0.25": width and height in points.
std::string dimensions(Size size);

} // namespace pelistra::testing

#include "tests/platform/Journal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

namespace pelistra::testing {

std::vector<std::string> Journal::entriesStartingWith(std::string_view prefix) const {
    std::vector<std::string> found;
    std::ranges::copy_if(entries_, std::back_inserter(found),
                         [&](const std::string& entry) { return entry.starts_with(prefix); });
    return found;
}

bool Journal::contains(std::string_view entry) const {
    return std::ranges::find(entries_, entry) != entries_.end();
}

std::string decimal(double value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

std::string flag(bool value) {
    return value ? "true" : "false";
}

std::string dimensions(Size size) {
    return decimal(size.width) + " x " + decimal(size.height);
}

} // namespace pelistra::testing

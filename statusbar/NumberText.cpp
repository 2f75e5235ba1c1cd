#include "statusbar/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace pelistra {
namespace {

// Room for the longest plain decimal text of a double: a sign, 309 digits, a point, and the
// fraction of the smallest one.
using Buffer = std::array<char, 1200>;

std::string textUpTo(const Buffer& buffer, const char* end) {
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

} // namespace

std::string fixedText(double value) {
    Buffer buffer{};
    constexpr int digits = 6;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, digits);
    return textUpTo(buffer, result.ptr);
}

std::string shortestDecimalText(double value) {
    Buffer buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed);
    auto text = textUpTo(buffer, result.ptr);
    if (std::isfinite(value) && text.find('.') == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string_view booleanText(bool value) {
    return value ? "true" : "false";
}

} // namespace pelistra

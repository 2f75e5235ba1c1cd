#include "platform/x11/Resources.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace pelistra::x11 {

namespace {

void trimLeft(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
}

// Takes the next line off the text.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

// The value of the line's entry, if its name is that one.
std::optional<std::string_view> valueOf(std::string_view line, std::string_view name) {
    trimLeft(line);
    if (!line.starts_with(name)) {
        return std::nullopt;
    }
    line.remove_prefix(name.size());
    trimLeft(line);
    if (!line.starts_with(':')) {
        return std::nullopt;
    }
    line.remove_prefix(1);
    trimLeft(line);
    return line;
}

} // namespace

std::optional<double> textResolutionIn(std::string_view resourceDatabase) {
    while (!resourceDatabase.empty()) {
        const auto value = valueOf(takeLine(resourceDatabase), "Xft.dpi");
        if (!value) {
            continue;
        }
        double resolution = 0;
        const auto result =
            std::from_chars(value->data(), value->data() + value->size(), resolution);
        const bool isUsable =
            result.ec == std::errc() && std::isfinite(resolution) && resolution > 0;
        return isUsable ? std::optional(resolution) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace pelistra::x11

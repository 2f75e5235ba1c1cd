#include "menubar/Metrics.h"

#include "menubar/Options.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace pelistra::menubar {

namespace {

constexpr std::string_view resolutionKey = "Xft.dpi";
constexpr std::string_view blanks = " \t";
// The resolution at which one point is one device pixel.
constexpr double wholeResolution = 96;

void trimLeft(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
}

} // namespace

Metrics::Metrics(double scale) : hundredths_(static_cast<int>(std::lround(scale * wholeScale))) {}

int Metrics::pixels(double points) const {
    return static_cast<int>(std::lround(points * hundredths_ / wholeScale));
}

double scaleFromResources(std::string_view resourceDatabase) {
    while (!resourceDatabase.empty()) {
        const std::size_t end = std::min(resourceDatabase.find('\n'), resourceDatabase.size());
        std::string_view line = resourceDatabase.substr(0, end);
        resourceDatabase.remove_prefix(std::min(end + 1, resourceDatabase.size()));
        trimLeft(line);
        if (!line.starts_with(resolutionKey)) {
            continue;
        }
        line.remove_prefix(resolutionKey.size());
        trimLeft(line);
        if (!line.starts_with(':')) {
            continue;
        }
        line.remove_prefix(1);
        trimLeft(line);
        double resolution = 0;
        const auto result = std::from_chars(line.data(), line.data() + line.size(), resolution);
        if (result.ec != std::errc() || !std::isfinite(resolution) || resolution <= 0) {
            return 1;
        }
        return std::clamp(resolution / wholeResolution, leastScale, greatestScale);
    }
    return 1;
}

} // namespace pelistra::menubar

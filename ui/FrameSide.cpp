#include "ui/FrameSide.h"

#include "ui/Measuring.h"

#include <algorithm>
#include <cmath>

namespace pelistra::ui {

namespace {

FrameSide side(const std::optional<double>& length, const std::optional<double>& shortest,
               const std::optional<double>& longest) {
    FrameSide side;
    if (length && !std::isnan(*length)) {
        side.fixed = std::max(0.0, reckonable(*length));
    }
    if (shortest && !std::isnan(*shortest)) {
        side.least = std::max(0.0, reckonable(*shortest));
    }
    if (longest && !std::isnan(*longest)) {
        side.most = std::max(0.0, *longest);
    }
    return side;
}

} // namespace

std::optional<double> FrameSide::within(const std::optional<double>& offered) const {
    if (fixed || !offered) {
        return fixed;
    }
    return std::max(std::min(*offered, most.value_or(infinity)), least.value_or(0));
}

double FrameSide::taken(const std::optional<double>& offered, double content) const {
    if (fixed) {
        return *fixed;
    }
    const double low = least.value_or(std::min(content, most.value_or(content)));
    const double high = most.value_or(std::max(content, low));
    return std::max(low, std::min(offered.value_or(content), high));
}

FrameSide widthOf(const FrameLimits& limits) {
    return side(limits.width, limits.minWidth, limits.maxWidth);
}

FrameSide heightOf(const FrameLimits& limits) {
    return side(limits.height, limits.minHeight, limits.maxHeight);
}

} // namespace pelistra::ui

#include "menubar/Metrics.h"

#include "menubar/Options.h"
#include "platform/x11/Resources.h"

#include <algorithm>
#include <cmath>

namespace pelistra::menubar {

Metrics::Metrics(double scale) : hundredths_(static_cast<int>(std::lround(scale * wholeScale))) {}

int Metrics::pixels(double points) const {
    return static_cast<int>(std::lround(points * hundredths_ / wholeScale));
}

double scaleFromResources(std::string_view resourceDatabase) {
    const auto resolution = x11::textResolutionIn(resourceDatabase);
    return resolution ? std::clamp(*resolution / x11::unscaledResolution, leastScale, greatestScale)
                      : 1;
}

} // namespace pelistra::menubar

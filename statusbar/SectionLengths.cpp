#include "statusbar/SectionLengths.h"

#include "platform/Screens.h"

#include <algorithm>

namespace pelistra {

double SectionLengths::collapsed(const Screens& screens) {
    constexpr double withoutScreens = 3456;
    constexpr double longest = 10'000;
    constexpr double shortest = 500;

    const auto all = screens.screens();
    if (all.empty()) {
        return withoutScreens;
    }
    double widest = all.front().frame.width();
    for (const Screen& screen : all) {
        widest = std::max(widest, screen.frame.width());
    }
    return std::max(std::min(2 * widest, longest), shortest);
}

} // namespace pelistra

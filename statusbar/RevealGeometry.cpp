#include "statusbar/RevealGeometry.h"

#include "statusbar/SectionLengths.h"

#include <algorithm>

namespace pelistra {
namespace {

constexpr double areaInset = 4;
constexpr double safetyMargin = 2;

bool liesSafelyIn(const std::optional<ScreenRect>& area, const Rect& frame) {
    return area && area->minX() + safetyMargin <= frame.minX() &&
           frame.maxX() <= area->maxX() - safetyMargin;
}

} // namespace

std::optional<Screen> RevealGeometry::screen(double containingHorizontalPoint) const {
    const auto all = screens_.screens();
    const auto found = std::ranges::find_if(all, [&](const Screen& candidate) {
        return candidate.frame.minX() <= containingHorizontalPoint &&
               candidate.frame.maxX() >= containingHorizontalPoint;
    });
    return found == all.end() ? screens_.main() : *found;
}

bool RevealGeometry::isSafelyVisible(const Rect& frame) const {
    const auto home = screen(frame.midX());
    if (!home) {
        return false;
    }
    if (home->auxiliaryTopLeftArea || home->auxiliaryTopRightArea) {
        return liesSafelyIn(home->auxiliaryTopLeftArea, frame) ||
               liesSafelyIn(home->auxiliaryTopRightArea, frame);
    }
    return liesSafelyIn(home->frame, frame);
}

double RevealGeometry::temporaryDividerLength(const Rect& currentItemFrame, const Rect& home,
                                              const Screen& screen, double dividerLength) {
    const ScreenRect rightArea = screen.auxiliaryTopRightArea.value_or(screen.frame);
    const double target = std::min(home.minX(), rightArea.minX() + areaInset);
    const double distance = target - currentItemFrame.minX();
    // Written so that a distance that is not a number counts as none.
    const double shift = distance > 0 ? distance : 0;
    return std::max(dividerLength - shift, SectionLengths::expanded);
}

} // namespace pelistra

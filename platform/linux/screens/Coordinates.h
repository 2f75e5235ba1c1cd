#pragma once

#include "base/Geometry.h"
#include "platform/x11/PixelRect.h"

namespace pelistra::linux {

using RootRect = x11::PixelRect;

// Translates between root pixels and the two spaces in points. One scale holds for the whole X
// screen; the primary monitor is the origin of both spaces.
class Coordinates {
public:
    // `scale` is device pixels per point, greater than 0; `primary` is the primary monitor.
    Coordinates(double scale, const RootRect& primary) : scale_(scale), primary_(primary) {}

    [[nodiscard]] double scale() const { return scale_; }

    [[nodiscard]] Rect toGlobal(const RootRect& rect) const {
        return makeRect<GlobalSpace>((rect.x - primary_.x) / scale_, (rect.y - primary_.y) / scale_,
                                     rect.width / scale_, rect.height / scale_);
    }
    [[nodiscard]] ScreenRect toScreen(const RootRect& rect) const {
        return makeRect<ScreenSpace>((rect.x - primary_.x) / scale_,
                                     (primary_.bottom() - rect.bottom()) / scale_,
                                     rect.width / scale_, rect.height / scale_);
    }
    // The point of the top-left corner of a pixel.
    [[nodiscard]] ScreenPoint toScreen(int x, int y) const {
        return {.x = (x - primary_.x) / scale_, .y = (primary_.bottom() - y) / scale_};
    }
    // The nearest pixels.
    [[nodiscard]] RootRect toPixels(const ScreenRect& rect) const {
        return {.x = primary_.x + rounded(rect.minX()),
                .y = primary_.bottom() - rounded(rect.maxY()),
                .width = rounded(rect.width()),
                .height = rounded(rect.height())};
    }
    [[nodiscard]] RootRect toPixels(const Rect& rect) const {
        return {.x = primary_.x + rounded(rect.minX()),
                .y = primary_.y + rounded(rect.minY()),
                .width = rounded(rect.width()),
                .height = rounded(rect.height())};
    }

private:
    [[nodiscard]] int rounded(double points) const {
        return static_cast<int>(std::lround(points * scale_));
    }

    double scale_;
    RootRect primary_;
};

} // namespace pelistra::linux

#pragma once

#include "ui/Layout.h"

#include <optional>

namespace pelistra::ui {

// What a frame's limits say of its width or of its height, in points. A limit that is no number
// counts as none, a negative one as 0.
struct FrameSide {
    std::optional<double> fixed;
    std::optional<double> least;
    std::optional<double> most;

    // What the content is offered. The minimum is stronger than the maximum.
    [[nodiscard]] std::optional<double> within(const std::optional<double>& offered) const;
    // What the frame takes around such a content.
    [[nodiscard]] double taken(const std::optional<double>& offered, double content) const;
    // Whether a content that was free to choose has chosen too much.
    [[nodiscard]] bool isExceeded(const std::optional<double>& offered, double content) const {
        return !offered && most && content > *most;
    }
};

[[nodiscard]] FrameSide widthOf(const FrameLimits& limits);
[[nodiscard]] FrameSide heightOf(const FrameLimits& limits);

} // namespace pelistra::ui

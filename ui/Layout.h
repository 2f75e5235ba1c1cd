#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace pelistra::ui {

// As a largest width or height: takes all that is offered.
inline constexpr double infinity = std::numeric_limits<double>::infinity();

enum class HorizontalAlignment : std::uint8_t { Leading, Center, Trailing };
enum class VerticalAlignment : std::uint8_t { Top, Center, Bottom };

struct Alignment {
    HorizontalAlignment horizontal = HorizontalAlignment::Center;
    VerticalAlignment vertical = VerticalAlignment::Center;

    bool operator==(const Alignment&) const = default;
};

// Distances in points. Leading is the side where reading starts.
struct Edges {
    double top = 0;
    double leading = 0;
    double bottom = 0;
    double trailing = 0;

    [[nodiscard]] static constexpr Edges all(double length) {
        return {.top = length, .leading = length, .bottom = length, .trailing = length};
    }
    [[nodiscard]] static constexpr Edges horizontal(double length) {
        return {.top = 0, .leading = length, .bottom = 0, .trailing = length};
    }
    [[nodiscard]] static constexpr Edges vertical(double length) {
        return {.top = length, .leading = 0, .bottom = length, .trailing = 0};
    }

    bool operator==(const Edges&) const = default;
};

// What a view's size is held to, in points. A fixed width or height rules out its two limits; a
// member that is empty leaves that side to the content.
struct FrameLimits {
    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;
    std::optional<double> minWidth = std::nullopt;
    std::optional<double> maxWidth = std::nullopt;
    std::optional<double> minHeight = std::nullopt;
    std::optional<double> maxHeight = std::nullopt;
    // Where the content lies in a frame that is larger.
    Alignment alignment = {};

    bool operator==(const FrameLimits&) const = default;
};

} // namespace pelistra::ui

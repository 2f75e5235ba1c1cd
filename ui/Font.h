#pragma once

#include <cstdint>
#include <optional>
#include <variant>

namespace pelistra::ui {

// The platform's named text styles, as far as the views use them.
enum class TextStyle : std::uint8_t { Caption2, Caption, Subheadline, Body, Headline, Title3 };

enum class Weight : std::uint8_t { Regular, Medium, Semibold, Bold };

// A font of the system: a text style, or a size in points, in the default design.
struct Font {
    std::variant<TextStyle, double> size = TextStyle::Body;
    // Empty: the weight that the text style has by itself, regular for a size.
    std::optional<Weight> weight = std::nullopt;

    bool operator==(const Font&) const = default;
};

// The height of the font in points where the body text is bodySize points high. The text styles
// have the sizes of the macOS desktop, whose body is 13 points; a desktop with larger text hands in
// its own body size and everything grows with it.
[[nodiscard]] double pointSize(const Font& font, double bodySize = 13);

// The weight to draw with.
[[nodiscard]] Weight effectiveWeight(const Font& font);

} // namespace pelistra::ui

#pragma once

#include "ui/Measures.h"

#include <algorithm>
#include <cmath>

namespace pelistra::testing {

// Leaves of invented sizes, the same on every machine: each byte of a text is 3 points wide and a
// line 10 high, a symbol is a square of its font's size.
class InventedMeasures : public ui::Measures {
public:
    static constexpr double byteWidth = 3;
    static constexpr double lineHeight = 10;

    [[nodiscard]] Size text(const ui::Text& text, std::optional<double> width) const override {
        ++asked;
        const double whole = byteWidth * static_cast<double>(text.text.size());
        if (!width || whole <= *width) {
            return {.width = whole, .height = lineHeight};
        }
        const double inLine = std::max(byteWidth, std::floor(*width / byteWidth) * byteWidth);
        return {.width = inLine, .height = lineHeight * std::ceil(whole / inLine)};
    }
    [[nodiscard]] Size symbol(const ui::Symbol& symbol) const override {
        const double side = ui::pointSize(symbol.font);
        return {.width = side, .height = side};
    }
    [[nodiscard]] std::optional<Size> nativeButton(const ui::Button& /*button*/) const override {
        return std::nullopt;
    }
    [[nodiscard]] ui::ButtonMetrics button(const ui::Button& button) const override {
        const bool isBare = button.style == ui::ButtonStyle::Plain;
        return {.insets = ui::Edges::all(isBare ? 0 : 4), .leastWidth = isBare ? 0.0 : 50.0};
    }
    [[nodiscard]] ui::SwitchMetrics toggle() const override {
        return {.size = {.width = 30, .height = 16}, .distance = 10};
    }
    [[nodiscard]] ui::FormMetrics form() const override {
        return {.margins = {.top = 10, .leading = 20, .bottom = 30, .trailing = 20},
                .widestCard = 500,
                .titleFont = {.size = ui::TextStyle::Headline},
                .titleDistance = 5,
                .sectionDistance = 15,
                .rowInsets = {.top = 6, .leading = 8, .bottom = 6, .trailing = 8},
                .scrollerWidth = scrollerWidth};
    }

    double scrollerWidth = 0;
    // How often a text was measured.
    mutable int asked = 0;
};

} // namespace pelistra::testing

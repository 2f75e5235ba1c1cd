#pragma once

#include "base/Geometry.h"
#include "ui/Nodes.h"

#include <optional>

namespace pelistra::ui {

// The size that is offered, in points; an empty side asks for what a view takes by itself.
struct Proposal {
    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;

    bool operator==(const Proposal&) const = default;
};

// What a button has around its label where the front end draws it.
struct ButtonMetrics {
    Edges insets;
    double leastWidth = 0;
};

struct SwitchMetrics {
    Size size;
    // Between the label and the switch.
    double distance = 0;
};

// The grouped style of a form: sections of a title and, under it, a card with the rows.
struct FormMetrics {
    Edges margins;
    double widestCard = infinity;
    Font titleFont;
    // Between a title and its card, and between a card and the next title.
    double titleDistance = 0;
    double sectionDistance = 0;
    // Between a card's edge or hairline and what is in the row.
    Edges rowInsets;
    // What a scroller takes of the width when the form is higher than its place.
    double scrollerWidth = 0;
};

// What only a front end knows: how large the leaves are that it draws, in points. Nothing that it
// answers changes between two arrangements unless it says so (Arranger::forget).
class Measures {
public:
    Measures() = default;
    Measures(const Measures&) = delete;
    Measures& operator=(const Measures&) = delete;
    virtual ~Measures() = default;

    // The text in lines no longer than the width, or unbroken without one.
    [[nodiscard]] virtual Size text(const Text& text, std::optional<double> width) const = 0;
    [[nodiscard]] virtual Size symbol(const Symbol& symbol) const = 0;
    // A button that is one of the platform's own, label and all; empty: its label is arranged, with
    // what button() says around it.
    [[nodiscard]] virtual std::optional<Size> nativeButton(const Button& button) const = 0;
    [[nodiscard]] virtual ButtonMetrics button(const Button& button) const = 0;
    [[nodiscard]] virtual SwitchMetrics toggle() const = 0;
    [[nodiscard]] virtual FormMetrics form() const = 0;
};

} // namespace pelistra::ui

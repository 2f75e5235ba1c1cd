#include "platform/linux/views/QtMeasures.h"

#include "platform/linux/images/Symbols.h"
#include "platform/linux/views/Metrics.h"
#include "platform/linux/views/TextElement.h"
#include "ui/Walk.h"

#include <algorithm>
#include <cmath>

namespace pelistra::linux {

namespace {

bool hasText(const ui::View& view) {
    const auto* text = view.as<ui::Text>();
    return (text != nullptr && !text->text.empty()) ||
           std::ranges::any_of(ui::childrenOf(view), hasText);
}

} // namespace

Size QtMeasures::text(const ui::Text& text, std::optional<double> width) const {
    return textSize(text, width, look_.get());
}

Size QtMeasures::symbol(const ui::Symbol& symbol) const {
    const auto drawing = symbolNamed(symbol.name);
    if (!drawing) {
        return {};
    }
    const double factor = ui::pointSize(symbol.font, look_.get().bodySize) / symbolTextSize;
    return {.width = std::ceil(drawing->width * factor),
            .height = std::ceil(drawing->height * factor)};
}

ui::ButtonMetrics QtMeasures::button(const ui::Button& button) const {
    constexpr ui::Edges usual = {.top = 3, .leading = 14, .bottom = 3, .trailing = 14};
    switch (button.style) {
    case ui::ButtonStyle::Plain:
        return {};
    case ui::ButtonStyle::Borderless:
        return {.insets = hasText(button.label)
                              ? ui::Edges{.top = 5, .leading = 12, .bottom = 5, .trailing = 12}
                              : ui::Edges::all(6)};
    case ui::ButtonStyle::BorderedProminent:
        return {.insets = button.size == ui::ControlSize::Large
                              ? ui::Edges{.top = 6, .leading = 20, .bottom = 6, .trailing = 20}
                              : usual,
                .leastWidth = metrics::leastProminentWidth};
    case ui::ButtonStyle::Automatic:
        break;
    }
    return {.insets = usual};
}

ui::SwitchMetrics QtMeasures::toggle() const {
    return {.size = {.width = metrics::switchWidth, .height = metrics::switchHeight},
            .distance = metrics::switchDistance};
}

ui::FormMetrics QtMeasures::form() const {
    return {.margins = metrics::formMargins,
            .widestCard = metrics::formWidest,
            .titleFont = {.size = ui::TextStyle::Body, .weight = ui::Weight::Semibold},
            .titleDistance = metrics::formTitleDistance,
            .sectionDistance = metrics::formSectionDistance,
            .rowInsets = metrics::formRowInsets};
}

} // namespace pelistra::linux

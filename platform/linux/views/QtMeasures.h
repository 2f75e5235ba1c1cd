#pragma once

#include "base/Published.h"
#include "platform/linux/views/Look.h"
#include "ui/Measures.h"

namespace pelistra::linux {

// How large texts, symbols and the controls that the project draws itself are in the present look.
class QtMeasures final : public ui::Measures {
public:
    // The look outlives the measures.
    explicit QtMeasures(const Published<Look>& look) : look_(look) {}

    [[nodiscard]] Size text(const ui::Text& text, std::optional<double> width) const override;
    [[nodiscard]] Size symbol(const ui::Symbol& symbol) const override;
    [[nodiscard]] std::optional<Size> nativeButton(const ui::Button& /*button*/) const override {
        return std::nullopt;
    }
    [[nodiscard]] ui::ButtonMetrics button(const ui::Button& button) const override;
    [[nodiscard]] ui::SwitchMetrics toggle() const override;
    [[nodiscard]] ui::FormMetrics form() const override;

private:
    const Published<Look>& look_;
};

} // namespace pelistra::linux

#pragma once

#include "platform/macos/Owned.h"
#include "ui/Measures.h"

#import <AppKit/AppKit.h>

namespace pelistra::macos {

// Between a card's edge and what is in its rows, in points.
inline constexpr double formRowMargin = 12;

// How large AppKit's texts, symbols and controls are.
class AppKitMeasures final : public ui::Measures {
public:
    AppKitMeasures();

    [[nodiscard]] Size text(const ui::Text& text, std::optional<double> width) const override;
    [[nodiscard]] Size symbol(const ui::Symbol& symbol) const override;
    [[nodiscard]] std::optional<Size> nativeButton(const ui::Button& button) const override;
    [[nodiscard]] ui::ButtonMetrics button(const ui::Button& button) const override;
    [[nodiscard]] ui::SwitchMetrics toggle() const override;
    [[nodiscard]] ui::FormMetrics form() const override;

private:
    // Shown nowhere: they only say how large they would be.
    Owned<NSView*> field_;
    Owned<NSSwitch*> switch_;
    Owned<NSScrollView*> scroll_;
};

} // namespace pelistra::macos

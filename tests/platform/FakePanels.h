#pragma once

#include "platform/Panel.h"
#include "tests/platform/Journal.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// What there is to know about a panel, kept also after the panel is gone.
struct FakePanelRecord {
    PanelConfiguration configuration;
    Size contentSize;
    std::optional<ScreenPoint> frameOrigin;
    std::shared_ptr<ui::Content> content;
    bool visible = false;
    bool destroyed = false;

    // Where it lies on the screen; its origin must have been set.
    [[nodiscard]] ScreenRect frame() const { return {.origin = *frameOrigin, .size = contentSize}; }
};

// Journal: "panel(<width> x <height>, style <mask>)", "panel.content", "panel.contentSize = ",
// "panel.frameOrigin = ", "panel.orderFrontRegardless", "panel.orderOut", "panel destroyed".
class FakePanels final : public Panels {
public:
    explicit FakePanels(Journal& journal) : journal_(journal) {}

    [[nodiscard]] std::unique_ptr<Panel> panel(const PanelConfiguration& configuration) override;

    // In the order in which they were asked for.
    std::vector<std::shared_ptr<FakePanelRecord>> made;

private:
    Journal& journal_;
};

} // namespace pelistra::testing

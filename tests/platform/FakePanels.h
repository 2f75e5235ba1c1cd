#pragma once

#include "platform/Panel.h"
#include "tests/platform/Journal.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// What there is to know about a panel, kept also after the panel is gone. A property is empty while
// nobody has set it.
struct FakePanelRecord {
    std::uint32_t styleMask = 0;
    Size contentSize;
    std::optional<ScreenPoint> frameOrigin;
    std::optional<std::string> title;
    std::optional<std::string> accessibilityLabel;
    std::optional<std::int64_t> level;
    std::optional<bool> floatingPanel;
    std::optional<bool> hidesOnDeactivate;
    std::optional<std::uint64_t> collectionBehavior;
    std::optional<bool> opaque;
    std::optional<PanelBackground> background;
    std::optional<bool> hasShadow;
    std::optional<AnimationBehavior> animationBehavior;
    std::optional<bool> releasedWhenClosed;
    std::shared_ptr<ui::Content> content;
    bool visible = false;
    bool destroyed = false;

    // Where it lies on the screen; its origin must have been set.
    [[nodiscard]] ScreenRect frame() const { return {.origin = *frameOrigin, .size = contentSize}; }
};

// Journal: "panel(<width> x <height>, style <mask>)", then "panel.title = " and so on by the names
// of the operations, "panel.content", "panel.contentSize = ", "panel.frameOrigin = ",
// "panel.orderFrontRegardless", "panel.orderOut", "panel destroyed".
class FakePanels final : public Panels {
public:
    explicit FakePanels(Journal& journal) : journal_(journal) {}

    [[nodiscard]] std::unique_ptr<Panel> panel(Size contentSize, std::uint32_t styleMask) override;

    // In the order in which they were asked for.
    std::vector<std::shared_ptr<FakePanelRecord>> made;

private:
    Journal& journal_;
};

} // namespace pelistra::testing

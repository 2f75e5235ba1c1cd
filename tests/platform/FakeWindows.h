#pragma once

#include "platform/Window.h"
#include "tests/platform/Journal.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// What there is to know about a window, kept also after the window is gone.
struct FakeWindowRecord {
    Size contentSize;
    std::uint32_t styleMask = 0;
    std::string title;
    TitleVisibility titleVisibility = TitleVisibility::Visible;
    bool titlebarAppearsTransparent = false;
    bool movableByWindowBackground = false;
    // Empty while nobody has set it.
    std::optional<bool> releasedWhenClosed;
    Size contentMinSize;
    std::shared_ptr<ui::Content> content;
    bool onScreen = false;
    bool destroyed = false;
};

// Journal: "window(<width> x <height>, style <mask>)", then the operations by their names, with the
// values that they were given ("title = ", "content", "center", "showWindow", "close",
// "window destroyed").
class FakeWindows final : public Windows {
public:
    explicit FakeWindows(Journal& journal) : journal_(journal) {}

    [[nodiscard]] std::unique_ptr<Window> window(Size contentSize,
                                                 std::uint32_t styleMask) override;

    // In the order in which they were asked for.
    std::vector<std::shared_ptr<FakeWindowRecord>> made;

private:
    Journal& journal_;
};

} // namespace pelistra::testing

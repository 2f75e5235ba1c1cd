#pragma once

#include "ui/Action.h"
#include "ui/Representable.h"

namespace pelistra {

// Lies over an icon of the second row and takes the right mouse button only, since a button of the
// view tree answers to the left one only.
class SecondRowRightClickView final : public ui::EventView {
public:
    // The application outlives the view.
    explicit SecondRowRightClickView(const Application& application) : application_(application) {}

    // The view itself while a right press or release is being handled, else null, so that left
    // clicks, hovering and scrolling reach what lies underneath. The point plays no part: the view
    // relies on its placement.
    [[nodiscard]] ui::EventView* hitTest(const ScreenPoint& point) override;

    // Calls the action and passes the event to nobody.
    void rightMouseDown(const Event& event) override;

    // Empty in a new view.
    ui::Action action;

private:
    const Application& application_;
};

} // namespace pelistra

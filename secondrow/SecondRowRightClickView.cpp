#include "secondrow/SecondRowRightClickView.h"

namespace pelistra {

ui::EventView* SecondRowRightClickView::hitTest(const ScreenPoint& /*point*/) {
    const auto event = application_.currentEvent();
    if (!event) {
        return nullptr;
    }
    const bool isRight =
        event->type == EventType::RightMouseDown || event->type == EventType::RightMouseUp;
    return isRight ? this : nullptr;
}

void SecondRowRightClickView::rightMouseDown(const Event& /*event*/) {
    // A copy: the action may lead to this view being updated or removed.
    const auto called = action;
    called();
}

} // namespace pelistra

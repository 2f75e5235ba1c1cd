#include "overflow/PrivateMenuBarActivator.h"

#include "platform/RunningApplications.h"

#include <string>
#include <utility>

namespace pelistra {

PrivateMenuBarActivator::PrivateMenuBarActivator(std::shared_ptr<PrivateMenuBarBridge> bridge,
                                                 const OverflowServices& services)
    : bridge_(std::move(bridge)), logger_(services.log, "private-activation"),
      application_(services.application), runningApplications_(services.runningApplications),
      eventPosting_(services.eventPosting) {}

bool PrivateMenuBarActivator::activate(const OverflowItem& item) const {
    if (item.ownerPID < 1 || !runningApplications_.runningApplication(item.ownerPID)) {
        return false;
    }
    const auto source = eventPosting_.source(EventSourceState::Private);
    if (!source) {
        return false;
    }
    const Rect frame = bridge_->windowFrame(item.id).value_or(item.lastKnownFrame);
    const Point centre{.x = frame.midX(), .y = frame.midY()};
    const auto down = addressedEvent(*source, EventType::LeftMouseDown, centre, item);
    if (!down) {
        return false;
    }
    const auto up = addressedEvent(*source, EventType::LeftMouseUp, centre, item);
    return up && post(item, *down, *up);
}

std::unique_ptr<MouseEvent>
PrivateMenuBarActivator::addressedEvent(EventSource& source, EventType type, Point location,
                                        const OverflowItem& item) const {
    auto event = eventPosting_.mouseEvent(source, type, location, MouseButton::Left);
    if (event) {
        event->setIntegerValueField(event_field::targetUnixProcessId, item.ownerPID);
        event->setIntegerValueField(event_field::windowUnderMousePointer, item.id);
        event->setIntegerValueField(event_field::windowUnderMousePointerThatCanHandleThisEvent,
                                    item.id);
        event->setIntegerValueField(event_field::windowNumber, item.id);
        event->setIntegerValueField(event_field::clickState, 1);
    }
    return event;
}

bool PrivateMenuBarActivator::post(const OverflowItem& item, const MouseEvent& down,
                                   const MouseEvent& up) const {
    const ScreenPoint before = application_.mouseLocation();
    // Whoever got the first one waits for the second, so what became of it decides nothing.
    const bool downIsPosted = eventPosting_.postToPid(item.ownerPID, down);
    const bool upIsPosted = eventPosting_.postToPid(item.ownerPID, up);
    if (application_.mouseLocation() != before) {
        logger_.fault(
            "Targeted activation unexpectedly changed pointer position; disabling this result");
        return false;
    }
    const bool posted = downIsPosted && upIsPosted;
    if (posted) {
        logger_.info("Posted a PID-scoped click to window " + std::to_string(item.id));
    }
    return posted;
}

} // namespace pelistra

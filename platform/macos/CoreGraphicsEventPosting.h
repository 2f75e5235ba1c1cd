#pragma once

#include "platform/EventPosting.h"

namespace pelistra::appkit {

// Events by CGEvent.
class CoreGraphicsEventPosting final : public EventPosting {
public:
    [[nodiscard]] std::unique_ptr<EventSource> source(EventSourceState state) override;
    [[nodiscard]] std::unique_ptr<MouseEvent>
    mouseEvent(EventSource& source, EventType type, Point location, MouseButton button) override;
    // The system does not tell whether anybody received the event: always true.
    [[nodiscard]] bool postToPid(ProcessId processIdentifier, const MouseEvent& event) override;
};

} // namespace pelistra::appkit

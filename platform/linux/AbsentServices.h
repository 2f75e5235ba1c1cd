#pragma once

#include "platform/EventPosting.h"

namespace pelistra::linux {

// Services that are not there. Each answers what its interface has for a system that cannot do it;
// nothing here pretends to have done anything.

// For a server that takes no connection for it.
class AbsentEventPosting final : public EventPosting {
public:
    [[nodiscard]] std::unique_ptr<EventSource> source(EventSourceState state) override;
    [[nodiscard]] std::unique_ptr<MouseEvent>
    mouseEvent(EventSource& source, EventType type, Point location, MouseButton button) override;
    [[nodiscard]] bool postToPid(ProcessId processIdentifier, const MouseEvent& event) override;
};

} // namespace pelistra::linux

#pragma once

#include "base/Logger.h"
#include "platform/EventPosting.h"

namespace pelistra::macos {

// Events by CGEvent.
class CoreGraphicsEventPosting final : public EventPosting {
public:
    explicit CoreGraphicsEventPosting(LogSink& log) : logger_(log, "event-posting") {}

    [[nodiscard]] std::unique_ptr<EventSource> source(EventSourceState state) override;
    [[nodiscard]] std::unique_ptr<MouseEvent>
    mouseEvent(EventSource& source, EventType type, Point location, MouseButton button) override;
    // The system does not tell whether anybody received the event: always true. Before the first
    // one it is logged whether the system lets this process post events at all.
    [[nodiscard]] bool postToPid(ProcessId processIdentifier, const MouseEvent& event) override;

private:
    void logPermission();

    Logger logger_;
    bool saidSo_ = false;
};

} // namespace pelistra::macos

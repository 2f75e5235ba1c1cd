#pragma once

#include "platform/EventPosting.h"
#include "platform/linux/clicks/ClickDelivery.h"
#include "platform/linux/icons/TrayReader.h"

namespace pelistra::linux {

// Mouse events for one process over X11. An event keeps the fields that are set on it; posting a
// left press and its release to the process opens the menu of the icon whose window they
// name (ClickDelivery). Other events cannot be posted.
class X11EventPosting final : public EventPosting {
public:
    // Both must outlive this object.
    X11EventPosting(TrayReader& reader, ClickDelivery& delivery);

    [[nodiscard]] std::unique_ptr<EventSource> source(EventSourceState state) override;
    [[nodiscard]] std::unique_ptr<MouseEvent>
    mouseEvent(EventSource& source, EventType type, Point location, MouseButton button) override;
    // False when the event names no window or is known to have reached nobody.
    [[nodiscard]] bool postToPid(ProcessId processIdentifier, const MouseEvent& event) override;

private:
    TrayReader* reader_;
    ClickDelivery* delivery_;
};

} // namespace pelistra::linux

#include "platform/linux/clicks/X11EventPosting.h"

#include <array>
#include <cmath>
#include <map>

namespace pelistra::linux {

namespace {

class X11EventSource final : public EventSource {};

class X11MouseEvent final : public MouseEvent {
public:
    X11MouseEvent(EventType type, Point location) : type_(type), location_(location) {}

    void setIntegerValueField(EventField field, std::int64_t value) override {
        fields_[field] = value;
    }

    [[nodiscard]] EventType type() const { return type_; }
    [[nodiscard]] Point location() const { return location_; }
    // The window that the event is for; 0 when it names none.
    [[nodiscard]] WindowId window() const {
        for (const EventField field : {event_field::windowUnderMousePointer,
                                       event_field::windowUnderMousePointerThatCanHandleThisEvent,
                                       event_field::windowNumber}) {
            if (const auto found = fields_.find(field); found != fields_.end()) {
                return static_cast<WindowId>(found->second);
            }
        }
        return 0;
    }

private:
    EventType type_;
    Point location_;
    std::map<EventField, std::int64_t> fields_;
};

} // namespace

X11EventPosting::X11EventPosting(TrayReader& reader, ClickDelivery& delivery)
    : reader_(&reader), delivery_(&delivery) {}

std::unique_ptr<EventSource> X11EventPosting::source(EventSourceState /*state*/) {
    return std::make_unique<X11EventSource>();
}

std::unique_ptr<MouseEvent> X11EventPosting::mouseEvent(EventSource& /*source*/, EventType type,
                                                        Point location, MouseButton /*button*/) {
    if (type != EventType::LeftMouseDown && type != EventType::LeftMouseUp) {
        return nullptr;
    }
    return std::make_unique<X11MouseEvent>(type, location);
}

bool X11EventPosting::postToPid(ProcessId processIdentifier, const MouseEvent& event) {
    const auto* const mouseEvent = dynamic_cast<const X11MouseEvent*>(&event);
    if (mouseEvent == nullptr || mouseEvent->window() == 0 || processIdentifier < 1) {
        return false;
    }
    const auto coordinates = reader_->coordinates();
    if (!coordinates) {
        return false;
    }
    const Point location = mouseEvent->location();
    const RootRect pixel =
        coordinates->toPixels(makeRect<GlobalSpace>(location.x, location.y, 0, 0));
    const RootPlace place{.x = pixel.x, .y = pixel.y};
    return mouseEvent->type() == EventType::LeftMouseDown
               ? delivery_->press(mouseEvent->window(), processIdentifier, place)
               : delivery_->release(mouseEvent->window(), place);
}

} // namespace pelistra::linux

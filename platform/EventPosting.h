#pragma once

#include "base/Geometry.h"
#include "platform/Application.h"

#include <cstdint>
#include <memory>

namespace pelistra {

// Raw values of CGEventSourceStateID.
enum class EventSourceState : std::int32_t { Private = -1 };

// Raw values of CGMouseButton.
enum class MouseButton : std::uint32_t { Left = 0 };

// Numbers of an event's integer fields (CGEventField).
using EventField = std::uint32_t;
namespace event_field {
// Which click of a quick series it is, counted from 1.
inline constexpr EventField clickState = 1;
// Not among the published names; the window that the event belongs to.
inline constexpr EventField windowNumber = 51;
// The process that the event is meant for.
inline constexpr EventField targetUnixProcessId = 40;
// The window ids by which the receiver finds its view.
inline constexpr EventField windowUnderMousePointer = 91;
inline constexpr EventField windowUnderMousePointerThatCanHandleThisEvent = 92;
} // namespace event_field

// Where events are said to come from. Released when it dies, as is an event.
class EventSource {
public:
    EventSource() = default;
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;
    virtual ~EventSource() = default;
};

// One press or release of a button, to be addressed by its fields and then posted.
class MouseEvent {
public:
    MouseEvent() = default;
    MouseEvent(const MouseEvent&) = delete;
    MouseEvent& operator=(const MouseEvent&) = delete;
    virtual ~MouseEvent() = default;

    // Replaces the field's value. Fields that the platform makes nothing of are ignored.
    virtual void setIntegerValueField(EventField field, std::int64_t value) = 0;
};

// Makes input events and hands them to one process, without moving the user's pointer.
class EventPosting {
public:
    EventPosting() = default;
    EventPosting(const EventPosting&) = delete;
    EventPosting& operator=(const EventPosting&) = delete;
    virtual ~EventPosting() = default;

    // Null when no source can be made.
    [[nodiscard]] virtual std::unique_ptr<EventSource> source(EventSourceState state) = 0;
    // An event at a place in global coordinates, in points; null when none can be made. EventType
    // has the raw values of CGEventType.
    [[nodiscard]] virtual std::unique_ptr<MouseEvent>
    mouseEvent(EventSource& source, EventType type, Point location, MouseButton button) = 0;
    // Hands the event to the process without waiting for a reaction; false when it is known that
    // nobody received it. Platforms that cannot know answer true.
    [[nodiscard]] virtual bool postToPid(ProcessId processIdentifier, const MouseEvent& event) = 0;
};

} // namespace pelistra

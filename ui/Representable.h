#pragma once

#include "platform/Application.h"

#include <memory>
#include <typeinfo>

namespace pelistra::ui {

// A platform view of the core's own making: it draws nothing and only decides which events it
// takes. The front end gives it an area of the window and asks it first for every event there.
class EventView {
public:
    EventView() = default;
    EventView(const EventView&) = delete;
    EventView& operator=(const EventView&) = delete;
    virtual ~EventView() = default;

    // The view that takes the event being handled, or null: then the event belongs to whatever
    // lies underneath. The point is in the view's own coordinates.
    [[nodiscard]] virtual EventView* hitTest(const ScreenPoint& point) = 0;

    // The right mouse button went down on the view that hitTest gave. The front end does nothing
    // more with that event.
    virtual void rightMouseDown(const Event& event) = 0;
};

// A value that stands for such a view in a tree.
class Representable {
public:
    Representable() = default;
    Representable(const Representable&) = delete;
    Representable& operator=(const Representable&) = delete;
    virtual ~Representable() = default;

    // A new view in the value's present state; never null. The application outlives it.
    [[nodiscard]] virtual std::unique_ptr<EventView>
    makeView(const Application& application) const = 0;

    // Brings a view that a value of the same type has made to this value's state. To be called at
    // every update of the tree, also when the tree is equal.
    virtual void updateView(EventView& view) const = 0;

    // Values of one type differ in their actions only, so they are equal.
    bool operator==(const Representable& other) const { return typeid(*this) == typeid(other); }
};

} // namespace pelistra::ui

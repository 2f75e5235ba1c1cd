#pragma once

#include "platform/EventPosting.h"
#include "tests/platform/Journal.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace pelistra::testing {

struct FakeMouseEventRecord {
    EventType type = EventType::LeftMouseDown;
    Point location;
    MouseButton button = MouseButton::Left;
    // In the order of setting.
    std::vector<std::pair<EventField, std::int64_t>> fields;
    std::vector<ProcessId> postedTo;
};

// Journal: "source <state>", "mouseEvent <raw type>", "field <raw type> <field>",
// "post <raw type> <pid>".
class FakeEventPosting final : public EventPosting {
public:
    explicit FakeEventPosting(Journal& journal) : journal_(journal) {}

    [[nodiscard]] std::unique_ptr<EventSource> source(EventSourceState state) override;
    [[nodiscard]] std::unique_ptr<MouseEvent>
    mouseEvent(EventSource& source, EventType type, Point location, MouseButton button) override;
    [[nodiscard]] bool postToPid(ProcessId processIdentifier, const MouseEvent& event) override;

    bool refusesSource = false;
    // The types of which no event can be made, and those that nobody receives.
    std::set<EventType> refusedEvents;
    std::set<EventType> unreceivedEvents;
    // Run while an event is being made, or posted.
    std::function<void(EventType)> duringMaking;
    std::function<void(EventType)> duringPost;

    // Every event that was made, kept also after it is gone.
    std::vector<std::shared_ptr<FakeMouseEventRecord>> events;

    // How many sources and events have not been released.
    [[nodiscard]] long living() const { return alive_.use_count() - 1; }

private:
    Journal& journal_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

} // namespace pelistra::testing

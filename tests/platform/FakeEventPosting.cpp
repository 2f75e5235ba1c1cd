#include "tests/platform/FakeEventPosting.h"

#include <string>

namespace pelistra::testing {

namespace {

std::string rawType(EventType type) {
    return std::to_string(static_cast<std::uint32_t>(type));
}

class FakeEventSource final : public EventSource {
public:
    explicit FakeEventSource(std::shared_ptr<char> alive) : alive_(std::move(alive)) {}

private:
    std::shared_ptr<char> alive_;
};

class FakeMouseEvent final : public MouseEvent {
public:
    FakeMouseEvent(Journal& journal, std::shared_ptr<FakeMouseEventRecord> record,
                   std::shared_ptr<char> alive)
        : journal_(journal), record_(std::move(record)), alive_(std::move(alive)) {}

    void setIntegerValueField(EventField field, std::int64_t value) override {
        journal_.note("field " + rawType(record_->type) + " " + std::to_string(field));
        record_->fields.emplace_back(field, value);
    }
    [[nodiscard]] FakeMouseEventRecord& record() const { return *record_; }

private:
    Journal& journal_;
    std::shared_ptr<FakeMouseEventRecord> record_;
    std::shared_ptr<char> alive_;
};

} // namespace

std::unique_ptr<EventSource> FakeEventPosting::source(EventSourceState state) {
    journal_.note("source " + std::to_string(static_cast<std::int32_t>(state)));
    return refusesSource ? nullptr : std::make_unique<FakeEventSource>(alive_);
}

std::unique_ptr<MouseEvent> FakeEventPosting::mouseEvent(EventSource& /*source*/, EventType type,
                                                         Point location, MouseButton button) {
    journal_.note("mouseEvent " + rawType(type));
    if (duringMaking) {
        duringMaking(type);
    }
    if (refusedEvents.contains(type)) {
        return nullptr;
    }
    auto record = std::make_shared<FakeMouseEventRecord>();
    record->type = type;
    record->location = location;
    record->button = button;
    events.push_back(record);
    return std::make_unique<FakeMouseEvent>(journal_, std::move(record), alive_);
}

bool FakeEventPosting::postToPid(ProcessId processIdentifier, const MouseEvent& event) {
    auto& record = dynamic_cast<const FakeMouseEvent&>(event).record();
    journal_.note("post " + rawType(record.type) + " " + std::to_string(processIdentifier));
    record.postedTo.push_back(processIdentifier);
    if (duringPost) {
        duringPost(record.type);
    }
    return !unreceivedEvents.contains(record.type);
}

} // namespace pelistra::testing

#include "platform/macos/CoreGraphicsEventPosting.h"

#include "platform/macos/CoreFoundationOwned.h"

#import <CoreGraphics/CoreGraphics.h>

#include <utility>

namespace pelistra::macos {

namespace {

static_assert(static_cast<std::int32_t>(EventSourceState::Private) == kCGEventSourceStatePrivate);
static_assert(static_cast<std::uint32_t>(EventType::LeftMouseDown) == kCGEventLeftMouseDown);
static_assert(static_cast<std::uint32_t>(EventType::LeftMouseUp) == kCGEventLeftMouseUp);
static_assert(event_field::clickState == kCGMouseEventClickState);
static_assert(event_field::targetUnixProcessId == kCGEventTargetUnixProcessID);
static_assert(event_field::windowUnderMousePointer == kCGMouseEventWindowUnderMousePointer);
static_assert(event_field::windowUnderMousePointerThatCanHandleThisEvent ==
              kCGMouseEventWindowUnderMousePointerThatCanHandleThisEvent);

class CoreGraphicsEventSource final : public EventSource {
  public:
    explicit CoreGraphicsEventSource(CoreFoundationOwned<CGEventSourceRef> source)
        : source_(std::move(source)) {}
    [[nodiscard]] CGEventSourceRef native() const { return source_.get(); }

  private:
    CoreFoundationOwned<CGEventSourceRef> source_;
};

class CoreGraphicsMouseEvent final : public MouseEvent {
  public:
    explicit CoreGraphicsMouseEvent(CoreFoundationOwned<CGEventRef> event)
        : event_(std::move(event)) {}
    [[nodiscard]] CGEventRef native() const { return event_.get(); }

    void setIntegerValueField(EventField field, std::int64_t value) override {
        CGEventSetIntegerValueField(event_.get(), static_cast<CGEventField>(field), value);
    }

  private:
    CoreFoundationOwned<CGEventRef> event_;
};

} // namespace

std::unique_ptr<EventSource> CoreGraphicsEventPosting::source(EventSourceState state) {
    CoreFoundationOwned<CGEventSourceRef> source(
        CGEventSourceCreate(static_cast<CGEventSourceStateID>(state)));
    return source ? std::make_unique<CoreGraphicsEventSource>(std::move(source)) : nullptr;
}

std::unique_ptr<MouseEvent> CoreGraphicsEventPosting::mouseEvent(EventSource& source,
                                                                 EventType type, Point location,
                                                                 MouseButton button) {
    // Every source that reaches this class was made by it.
    auto& native = static_cast<CoreGraphicsEventSource&>(source);
    CoreFoundationOwned<CGEventRef> event(CGEventCreateMouseEvent(
        native.native(), static_cast<CGEventType>(type), CGPointMake(location.x, location.y),
        static_cast<CGMouseButton>(button)));
    return event ? std::make_unique<CoreGraphicsMouseEvent>(std::move(event)) : nullptr;
}

void CoreGraphicsEventPosting::logPermission() {
    if (std::exchange(saidSo_, true)) {
        return;
    }
    if (CGPreflightPostEventAccess()) {
        logger_.info("Posting events is permitted");
    } else {
        logger_.error("Posting events is not permitted; posted clicks may be dropped silently");
    }
}

bool CoreGraphicsEventPosting::postToPid(ProcessId processIdentifier, const MouseEvent& event) {
    logPermission();
    CGEventPostToPid(processIdentifier, static_cast<const CoreGraphicsMouseEvent&>(event).native());
    return true;
}

} // namespace pelistra::macos

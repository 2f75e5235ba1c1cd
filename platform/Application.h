#pragma once

#include "base/Geometry.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra {

using ProcessId = std::int32_t;

// Event types by the platform's raw values (NSEventType).
enum class EventType : std::uint32_t {
    LeftMouseDown = 1,
    LeftMouseUp = 2,
    RightMouseDown = 3,
    RightMouseUp = 4,
};

// Bits of a set of event types (1 << type, NSEventMask).
using EventMask = std::uint64_t;
constexpr EventMask maskOf(EventType type) {
    return EventMask{1} << static_cast<unsigned>(type);
}

// Modifier flags by the platform's raw values (NSEventModifierFlags).
inline constexpr std::uint64_t modifierOption = 0x80000;

struct Event {
    EventType type = EventType::LeftMouseUp;
    std::uint64_t modifierFlags = 0;

    bool operator==(const Event&) const = default;
};

// Raw values of NSApplicationActivationPolicy.
enum class ActivationPolicy : std::int8_t { Regular = 0, Accessory = 1 };

// The running application itself.
class Application {
public:
    Application() = default;
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    virtual ~Application() = default;

    // Whether it is an ordinary application or an accessory, which takes no place in the Dock and
    // has no menu bar. Changes nothing where the desktop makes no such difference.
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    // Brings the application to the front although another one is active.
    virtual void activateIgnoringOtherApps() = 0;

    // Ends the application in an orderly way.
    virtual void terminate() = 0;

    // The event being handled; empty outside event handling.
    [[nodiscard]] virtual std::optional<Event> currentEvent() const = 0;

    // The process arguments, the executable's path first.
    [[nodiscard]] virtual const std::vector<std::string>& arguments() const = 0;

    // The text under a key of the main bundle's information dictionary; empty when it is absent or
    // not a text.
    [[nodiscard]] virtual std::optional<std::string> infoText(std::string_view key) const = 0;

    // This process's own id.
    [[nodiscard]] virtual ProcessId processIdentifier() const = 0;

    // Where the user's pointer is, in points; where it was last when that cannot be read.
    [[nodiscard]] virtual ScreenPoint mouseLocation() const = 0;
};

// Whether any of the process arguments, the executable's path included, is that very text.
[[nodiscard]] inline bool hasArgument(const Application& application, std::string_view argument) {
    const auto& arguments = application.arguments();
    return std::ranges::find(arguments, argument) != arguments.end();
}

} // namespace pelistra

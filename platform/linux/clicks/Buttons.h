#pragma once

#include "platform/Application.h"

#include <cstdint>
#include <optional>

#include <xcb/xproto.h>

namespace pelistra::linux {

inline constexpr xcb_button_t leftButton = XCB_BUTTON_INDEX_1;
inline constexpr xcb_button_t rightButton = XCB_BUTTON_INDEX_3;

// What a press or release of that button is to the core, by the number that programs see; empty for
// any other than the left and the right one.
[[nodiscard]] inline std::optional<EventType> buttonEventType(std::uint32_t button, bool pressed) {
    switch (button) {
    case leftButton:
        return pressed ? EventType::LeftMouseDown : EventType::LeftMouseUp;
    case rightButton:
        return pressed ? EventType::RightMouseDown : EventType::RightMouseUp;
    default:
        return std::nullopt;
    }
}

} // namespace pelistra::linux

#pragma once

#include "tests/desktop/harness/XClient.h"

#include <cstdint>
#include <initializer_list>
#include <vector>

#include <xcb/xproto.h>

namespace pelistra::testing {

// Keys by their X key symbols.
namespace keys {
inline constexpr std::uint32_t shift = 0xffe1;
inline constexpr std::uint32_t control = 0xffe3;
inline constexpr std::uint32_t alt = 0xffe9;
inline constexpr std::uint32_t super = 0xffeb;
inline constexpr std::uint32_t escape = 0xff1b;
inline constexpr std::uint32_t enter = 0xff0d;
inline constexpr std::uint32_t tab = 0xff09;
inline constexpr std::uint32_t space = 0x0020;
} // namespace keys

struct RootPoint {
    int x = 0;
    int y = 0;
};

[[nodiscard]] inline RootPoint centre(const WindowFrame& frame) {
    return {.x = frame.midX(), .y = frame.midY()};
}

// A user's hand on mouse and keyboard, through XTEST: the server cannot tell these events from a
// device's. Every operation returns when the server has handled it.
class UserInput {
public:
    // The client must outlive this object.
    explicit UserInput(XClient& client) : client_(client) {}

    using Modifiers = std::vector<std::uint32_t>;
    enum class Button : std::uint8_t { Left = 1, Middle = 2, Right = 3 };

    void moveTo(RootPoint point);
    void press(Button button = Button::Left);
    void release(Button button = Button::Left);
    void pressKey(std::uint32_t symbol);
    void releaseKey(std::uint32_t symbol);
    void tapKey(std::uint32_t symbol);

    // Moves there and clicks with the modifiers held.
    void click(RootPoint point, Button button = Button::Left, const Modifiers& modifiers = {});
    enum class Wheel : std::uint8_t { Up = 4, Down = 5 };
    // Moves there and turns the wheel by that many notches.
    void turnWheel(RootPoint point, Wheel direction, int notches);
    // Presses at `from`, moves to `to` in steps of a few pixels, releases there.
    void drag(RootPoint from, RootPoint to, const Modifiers& modifiers,
              Button button = Button::Left);
    // The first two thirds of drag(): the button and the modifiers stay held until endDrag().
    void beginDrag(RootPoint from, RootPoint to, const Modifiers& modifiers,
                   Button button = Button::Left);
    void endDrag(const Modifiers& modifiers, Button button = Button::Left);

private:
    void fake(std::uint8_t type, std::uint8_t detail, RootPoint point = {});
    [[nodiscard]] std::uint8_t keyCode(std::uint32_t symbol) const;

    XClient& client_;
};

} // namespace pelistra::testing

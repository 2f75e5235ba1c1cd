#include "tests/desktop/harness/UserInput.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <ranges>
#include <stdexcept>
#include <thread>

#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

namespace pelistra::testing {

namespace {

constexpr int dragStep = 6;
// A hand moves at a finite speed, and toolkits compress motion that comes all at once.
constexpr std::chrono::milliseconds dragStepTime{4};

struct KeySymbolsDeleter {
    void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
};

} // namespace

void UserInput::moveTo(RootPoint point) {
    fake(XCB_MOTION_NOTIFY, 0, point);
}

void UserInput::press(Button button) {
    fake(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
}

void UserInput::release(Button button) {
    fake(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
}

void UserInput::pressKey(std::uint32_t symbol) {
    fake(XCB_KEY_PRESS, keyCode(symbol));
}

void UserInput::releaseKey(std::uint32_t symbol) {
    fake(XCB_KEY_RELEASE, keyCode(symbol));
}

void UserInput::tapKey(std::uint32_t symbol) {
    pressKey(symbol);
    releaseKey(symbol);
}

void UserInput::click(RootPoint point, Button button, const Modifiers& modifiers) {
    moveTo(point);
    for (const std::uint32_t modifier : modifiers) {
        pressKey(modifier);
    }
    press(button);
    release(button);
    for (const std::uint32_t modifier : modifiers | std::views::reverse) {
        releaseKey(modifier);
    }
}

void UserInput::turnWheel(RootPoint point, Wheel direction, int notches) {
    moveTo(point);
    for (int notch = 0; notch < notches; ++notch) {
        fake(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(direction));
        fake(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(direction));
    }
}

void UserInput::drag(RootPoint from, RootPoint to, const Modifiers& modifiers, Button button) {
    beginDrag(from, to, modifiers, button);
    endDrag(modifiers, button);
}

void UserInput::beginDrag(RootPoint from, RootPoint to, const Modifiers& modifiers, Button button) {
    moveTo(from);
    for (const std::uint32_t modifier : modifiers) {
        pressKey(modifier);
    }
    press(button);
    const int distance = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
    const int steps = std::max(1, distance / dragStep);
    for (int step = 1; step <= steps; ++step) {
        moveTo({.x = from.x + ((to.x - from.x) * step / steps),
                .y = from.y + ((to.y - from.y) * step / steps)});
        std::this_thread::sleep_for(dragStepTime);
    }
}

void UserInput::endDrag(const Modifiers& modifiers, Button button) {
    release(button);
    for (const std::uint32_t modifier : modifiers | std::views::reverse) {
        releaseKey(modifier);
    }
}

void UserInput::fake(std::uint8_t type, std::uint8_t detail, RootPoint point) {
    xcb_test_fake_input(client_.get(), type, detail, XCB_CURRENT_TIME, client_.root(),
                        static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 0);
    client_.sync();
}

std::uint8_t UserInput::keyCode(std::uint32_t symbol) const {
    const std::unique_ptr<xcb_key_symbols_t, KeySymbolsDeleter> symbols(
        xcb_key_symbols_alloc(client_.get()));
    const x11::Owned<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols.get(), symbol));
    if (!codes || *codes == XCB_NO_SYMBOL) {
        throw std::runtime_error("the keyboard has no such key");
    }
    return *codes;
}

} // namespace pelistra::testing

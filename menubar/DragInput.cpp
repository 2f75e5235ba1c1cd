#include "menubar/DragInput.h"

#include <array>
#include <cstdint>

namespace pelistra::menubar {

namespace {

constexpr xcb_keysym_t escapeSymbol = 0xff1b;

constexpr std::array<std::uint16_t, 2> gestures{XCB_MOD_MASK_4,
                                                XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT};
// Caps Lock, and the modifiers that Num Lock and Scroll Lock sit on: they must not matter.
constexpr std::array<std::uint16_t, 4> locks{XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_3,
                                             XCB_MOD_MASK_5};

std::uint16_t lockCombination(unsigned index) {
    std::uint16_t mask = 0;
    for (std::size_t i = 0; i < locks.size(); ++i) {
        if ((index & (1U << i)) != 0) {
            mask |= locks[i];
        }
    }
    return mask;
}

} // namespace

DragInput::DragInput(const Server& server, xcb_window_t bar)
    : server_(&server), bar_(bar), symbols_(xcb_key_symbols_alloc(server.xcb())) {
    constexpr std::uint16_t events = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                     XCB_EVENT_MASK_BUTTON_1_MOTION;
    for (const std::uint16_t gesture : gestures) {
        for (unsigned combination = 0; combination < (1U << locks.size()); ++combination) {
            xcb_grab_button(server.xcb(), 0, bar, events, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                            XCB_NONE, XCB_NONE, XCB_BUTTON_INDEX_1,
                            static_cast<std::uint16_t>(gesture | lockCombination(combination)));
        }
    }
}

void DragInput::begin(xcb_timestamp_t time) const {
    const auto cookie =
        xcb_grab_keyboard(server_->xcb(), 0, bar_, time, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    // When somebody else has the keyboard, the drag goes on without Escape.
    xcb_discard_reply(server_->xcb(), cookie.sequence);
}

void DragInput::end() const {
    xcb_ungrab_keyboard(server_->xcb(), XCB_CURRENT_TIME);
}

void DragInput::releasePointer() const {
    xcb_ungrab_pointer(server_->xcb(), XCB_CURRENT_TIME);
}

bool DragInput::isEscape(const xcb_key_press_event_t& event) const {
    // What the symbols wait for has come by then.
    return server_->connection().sync() &&
           xcb_key_symbols_get_keysym(symbols_.get(), event.detail, 0) == escapeSymbol;
}

void DragInput::refresh(xcb_mapping_notify_event_t& event) const {
    xcb_refresh_keyboard_mapping(symbols_.get(), &event);
}

} // namespace pelistra::menubar

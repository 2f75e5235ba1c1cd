#pragma once

#include "base/Lifetime.h"
#include "platform/MainQueue.h"
#include "platform/WindowList.h"
#include "platform/linux/clicks/PointerDevice.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Replies.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>

namespace pelistra::linux {

// Looks after a menu that a click of the second pointer has opened. The menu belongs to that
// pointer: the user's own can choose in it, but neither a click outside nor the user's keyboard
// would reach it. So while it is open a click outside is repeated with the second pointer, and the
// user's keys go to the menu. Both end with the menu.
class MenuWatch {
public:
    // How long one question to the server may take.
    static constexpr std::chrono::milliseconds patience{500};

    // All must outlive this object.
    MenuWatch(const x11::Connection& connection, x11::Replies& replies, PointerDevice& device,
              MainQueue& mainQueue);
    MenuWatch(const MenuWatch&) = delete;
    MenuWatch& operator=(const MenuWatch&) = delete;
    ~MenuWatch() = default;

    // The icon has been clicked: its menu, if one opens, is watched from then on.
    void expect(WindowId icon);
    // Closes the menu of an earlier click, inside a task of the Replies object. False when it stays
    // open: it would swallow the next click.
    [[nodiscard]] bool close();
    // The user's clicks and keys go where they went before.
    void end();

    void handle(const xcb_generic_event_t& event);

    [[nodiscard]] bool isWatching() const { return menu_.has_value(); }

private:
    struct Menu {
        WindowId icon = 0;
        bool keyboardIsGrabbed = false;
        // Where the click is repeated that the user has made outside, until the menu has closed,
        // and how often it has been.
        std::optional<RootPlace> clickedOutside;
        int repetitions = 0;
        // Those that the second keyboard holds down; it would not press them again.
        std::set<std::uint8_t> heldKeys;
    };

    void look(WindowId icon, std::size_t attempt);
    void begin(WindowId icon);
    void checkSoon();
    void check();
    void handlePress(xcb_input_device_id_t device);
    void handleKey(const xcb_input_key_press_event_t& event, bool pressed);
    [[nodiscard]] std::optional<RootPlace> placeOf(xcb_input_device_id_t device);
    // Clicks there with the second pointer if a menu has it grabbed, so that nobody but the menu
    // sees the click.
    void clickOutside(RootPlace place);
    void selectRawPresses(bool on) const;
    // Whether the server let us.
    [[nodiscard]] bool grabUserKeyboard();
    void allowKey(std::uint8_t mode) const;

    const x11::Connection* connection_;
    x11::Replies* replies_;
    PointerDevice* device_;
    MainQueue* mainQueue_;
    std::optional<Menu> menu_;
    // Counts clicks, so that a look for the menu of an earlier one ends.
    std::uint64_t click_ = 0;
    Lifetime lifetime_;
};

} // namespace pelistra::linux

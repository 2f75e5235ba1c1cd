#pragma once

#include "base/Lifetime.h"
#include "base/Logger.h"
#include "platform/Application.h"
#include "platform/MainQueue.h"
#include "platform/WindowList.h"
#include "platform/linux/clicks/PointerDevice.h"
#include "platform/linux/clicks/ServerClock.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Replies.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <set>

namespace pelistra::linux {

// Opens the menu of one icon by a click on its window, while the user's own pointer and the
// keyboard focus stay where they are. The click is one of the secondary button: on X11 the primary
// button makes an icon act, and only the secondary one opens its menu.
//
// A window that listens to core button events (GTK 2, Qt, Tk) gets them sent: nothing else in the
// server changes. Any other window (GTK 3, GTK 4, Java) is clicked by a second pointer of ours. A
// menu that opens then belongs to that second pointer: the user's pointer can choose in it, but
// neither a click outside nor the user's keyboard would reach it. So while such a menu is open a
// click outside is repeated with the second pointer, and the user's keys go to the menu. Both end
// with the menu.
class ClickDelivery {
public:
    // How long one question to the server may take.
    static constexpr std::chrono::milliseconds patience{500};

    // The connection must be used by nobody else, and its events must be handed to handle(). All
    // must outlive this object. Some seconds from now it removes second pointers that programs
    // which have crashed left behind.
    ClickDelivery(const x11::Connection& connection, MainQueue& mainQueue, LogSink& log);
    ClickDelivery(const ClickDelivery&) = delete;
    ClickDelivery& operator=(const ClickDelivery&) = delete;
    // Closes the menu that its last click has opened and takes the second pointer away, which takes
    // up to half a second if there is one.
    ~ClickDelivery();

    // Presses the button on a window of that process. False when it is known that the press reached
    // nobody: there is no such window, it belongs to another process, or it needs the second
    // pointer and that cannot be made or the window is covered at that place.
    [[nodiscard]] bool press(WindowId window, ProcessId process, RootPlace place);
    // Releases what press() has pressed.
    [[nodiscard]] bool release(WindowId window, RootPlace place);

    void handle(const xcb_generic_event_t& event);

    // Whether a menu opened by the second pointer is being looked after.
    [[nodiscard]] bool watchesMenu() const { return menu_.has_value(); }
    // How a window is reached; for people who look for the reason of a click that did nothing.
    enum class Way : std::uint8_t { None, Sent, SecondPointer };
    [[nodiscard]] Way wayOf(WindowId window, ProcessId process, RootPlace place);

private:
    // A window and the clicked place in it.
    struct Target {
        WindowId window = 0;
        RootPlace inside;
        std::uint32_t eventMask = 0;
        // Its child at that place; 0 when there is none.
        WindowId child = 0;

        [[nodiscard]] bool listensToButtons() const {
            return (eventMask & XCB_EVENT_MASK_BUTTON_PRESS) != 0;
        }
    };
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

    [[nodiscard]] std::optional<Target> describe(WindowId window, RootPlace place);
    [[nodiscard]] std::optional<Target> find(WindowId window, ProcessId process, RootPlace place);
    [[nodiscard]] Target deepestListener(Target target, RootPlace place);
    [[nodiscard]] bool belongsTo(WindowId window, ProcessId process);
    [[nodiscard]] bool isLent(WindowId window);
    [[nodiscard]] std::vector<WindowId> windowsAt(RootPlace place);
    [[nodiscard]] bool isUncovered(WindowId window, RootPlace place);
    void sendButton(std::uint8_t type, const Target& target, RootPlace place);
    void sendCrossing(const Target& target, RootPlace place);
    [[nodiscard]] bool pressWithDevice(WindowId window, RootPlace place);

    void lookForMenu(WindowId icon, std::size_t attempt);
    void beginWatching(WindowId icon);
    void endWatching();
    void checkMenuSoon();
    void checkMenu();
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
    [[nodiscard]] std::uint32_t clientOf(WindowId window) const;
    void ignoreErrorOf(xcb_void_cookie_t request) const;

    const x11::Connection* connection_;
    MainQueue* mainQueue_;
    Logger logger_;
    x11::Replies replies_;
    PointerDevice device_;
    ServerClock clock_;
    bool hasResource_ = false;
    Way pressedBy_ = Way::None;
    // Who was sent the press, and when.
    Target pressed_;
    xcb_timestamp_t pressedAt_ = XCB_CURRENT_TIME;
    std::optional<Menu> menu_;
    // Counts clicks, so that a look for the menu of an earlier one ends.
    std::uint64_t click_ = 0;
    Lifetime lifetime_;
};

} // namespace pelistra::linux

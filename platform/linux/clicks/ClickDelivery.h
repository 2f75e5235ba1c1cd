#pragma once

#include "base/Logger.h"
#include "platform/Application.h"
#include "platform/MainQueue.h"
#include "platform/WindowList.h"
#include "platform/linux/clicks/MenuWatch.h"
#include "platform/linux/clicks/PointerDevice.h"
#include "platform/linux/clicks/ServerClock.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Replies.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace pelistra::linux {

// Opens the menu of one icon by a click on its window, while the user's own pointer and the
// keyboard focus stay where they are. The click is one of the secondary button: on X11 the primary
// button makes an icon act, and only the secondary one opens its menu.
//
// A window that listens to core button events (GTK 2, Qt, Tk) gets them sent: nothing else in the
// server changes. Any other window (GTK 3, GTK 4, Java) is clicked by a second pointer of ours;
// MenuWatch looks after the menu that opens then.
class ClickDelivery {
public:
    // How long one question to the server may take.
    static constexpr std::chrono::milliseconds patience = MenuWatch::patience;

    // The connection must be used by nobody else, and its events must be handed to handle(). All
    // must outlive this object.
    ClickDelivery(const x11::Connection& connection, MainQueue& mainQueue, LogSink& log);
    ClickDelivery(const ClickDelivery&) = delete;
    ClickDelivery& operator=(const ClickDelivery&) = delete;
    // Closes the menu that its last click has opened.
    ~ClickDelivery();

    // Presses the button on a window of that process. False when it is known that the press reached
    // nobody: there is no such window, it belongs to another process, or it needs the second
    // pointer and that cannot be made or the window is covered at that place.
    [[nodiscard]] bool press(WindowId window, ProcessId process, RootPlace place);
    // Releases what press() has pressed.
    [[nodiscard]] bool release(WindowId window, RootPlace place);

    void handle(const xcb_generic_event_t& event) { menu_.handle(event); }

    // Whether a menu opened by the second pointer is being looked after.
    [[nodiscard]] bool watchesMenu() const { return menu_.isWatching(); }

private:
    enum class Way : std::uint8_t { None, Sent, SecondPointer };
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
    [[nodiscard]] std::optional<Target> describe(WindowId window, RootPlace place);
    [[nodiscard]] std::optional<Target> find(WindowId window, ProcessId process, RootPlace place);
    [[nodiscard]] Target deepestListener(Target target, RootPlace place);
    [[nodiscard]] bool belongsTo(WindowId window, ProcessId process);
    [[nodiscard]] bool isLent(WindowId window);
    [[nodiscard]] bool isUncovered(WindowId window, RootPlace place);
    void sendButton(std::uint8_t type, const Target& target, RootPlace place);
    void sendCrossing(const Target& target, RootPlace place);
    [[nodiscard]] bool pressWithDevice(WindowId window, RootPlace place);

    const x11::Connection* connection_;
    Logger logger_;
    x11::Replies replies_;
    PointerDevice device_;
    ServerClock clock_;
    MenuWatch menu_;
    Way pressedBy_ = Way::None;
    // Who was sent the press, and when.
    Target pressed_;
    xcb_timestamp_t pressedAt_ = XCB_CURRENT_TIME;
};

} // namespace pelistra::linux

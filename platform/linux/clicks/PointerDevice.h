#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/Replies.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xinput.h>

namespace pelistra::linux {

// A place on the root window in device pixels.
struct RootPlace {
    int x = 0;
    int y = 0;
};

// A second pair of master devices: a pointer that can click anywhere while the user's own stays
// where it is and keeps its focus. It is invisible, made when it is first needed, and stays on the
// server for whoever needs it next: taking one away kills every program on Qt 6.8 at once, and GTK
// 3 programs that still ask about it.
//
// Operations work inside a task of the caller's Replies object.
class PointerDevice {
public:
    // As the server lists the pointer of the pair.
    static constexpr std::string_view pointerName = "Pelistra clicks pointer";

    // Both must outlive this object. The connection's events are the caller's.
    PointerDevice(const x11::Connection& connection, x11::Replies& replies);
    PointerDevice(const PointerDevice&) = delete;
    PointerDevice& operator=(const PointerDevice&) = delete;
    ~PointerDevice() = default;

    // Takes the device that an earlier program has left, whatever that still held down, or makes
    // it; false when the server refuses.
    [[nodiscard]] bool prepare();
    [[nodiscard]] bool exists() const { return device_.has_value(); }
    // The pointer of the pair; 0 while there is none.
    [[nodiscard]] xcb_input_device_id_t pointer() const {
        return device_ ? device_->pointer : xcb_input_device_id_t{0};
    }

    void moveTo(RootPlace place) const;
    // A button by the number that programs see, whatever the user's own pointer makes of its
    // buttons.
    void press(xcb_button_t button);
    void release(xcb_button_t button);
    // Keys of the keyboard that belongs to the pointer, by their key codes.
    void pressKey(std::uint8_t keyCode);
    void releaseKey(std::uint8_t keyCode);
    // Where it is least in the way, and moving there.
    [[nodiscard]] RootPlace restingPlace() const;
    void park() const;

    // Whether some program has grabbed the device, as an open menu does.
    [[nodiscard]] bool isGrabbed();
    // Whether an event's device is this one.
    [[nodiscard]] bool isOwn(xcb_input_device_id_t device) const;

    // The user's own keyboard: the first master keyboard that was there when the device was made.
    [[nodiscard]] xcb_input_device_id_t userKeyboard() const { return userKeyboard_; }

private:
    struct Device {
        xcb_input_device_id_t pointer = 0;
        xcb_input_device_id_t keyboard = 0;
        xcb_input_device_id_t testPointer = 0;
        xcb_input_device_id_t testKeyboard = 0;
    };
    struct Listed {
        xcb_input_device_id_t id = 0;
        std::uint16_t type = 0;
        xcb_input_device_id_t attachment = 0;
        std::string name;
    };

    [[nodiscard]] std::vector<Listed> listDevices();
    [[nodiscard]] static std::optional<Device> find(const std::vector<Listed>& devices);
    void add() const;
    void hideCursor(xcb_input_device_id_t pointer) const;
    void releaseEverything();
    void fake(std::uint8_t eventOffset, std::uint8_t detail, xcb_input_device_id_t device);

    const x11::Connection* connection_;
    x11::Replies* replies_;
    std::uint8_t firstEvent_ = 0;
    bool supported_ = false;
    std::optional<Device> device_;
    xcb_input_device_id_t userKeyboard_ = 0;
};

} // namespace pelistra::linux

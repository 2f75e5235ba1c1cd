#include "platform/linux/clicks/PointerDevice.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <xcb/xtest.h>

namespace pelistra::linux {

namespace {

// The server makes the names of its devices of it.
constexpr std::string_view name = "Pelistra clicks";

constexpr std::uint16_t inputMajor = 2;
constexpr std::uint16_t inputMinor = 2;
// Places of the events in XInput's range of event numbers.
constexpr std::uint8_t deviceKeyPress = 1;
constexpr std::uint8_t deviceKeyRelease = 2;
constexpr std::uint8_t deviceButtonPress = 3;
constexpr std::uint8_t deviceButtonRelease = 4;
constexpr xcb_input_device_id_t allDevices = 0;

xcb_input_fp1616_t fixed(int value) {
    constexpr int fractionBits = 16;
    return static_cast<xcb_input_fp1616_t>(static_cast<std::uint32_t>(value) << fractionBits);
}

} // namespace

PointerDevice::PointerDevice(const x11::Connection& connection, x11::Replies& replies)
    : connection_(&connection), replies_(&replies) {
    const auto* const input = connection.extension(xcb_input_id);
    if (input == nullptr || connection.extension(xcb_test_id) == nullptr) {
        return;
    }
    firstEvent_ = input->first_event;
    constexpr std::chrono::milliseconds patience{1000};
    if (!replies.begin(patience)) {
        return;
    }
    const auto version = replies.take<xcb_input_xi_query_version_reply_t>(
        xcb_input_xi_query_version(connection.get(), inputMajor, inputMinor));
    supported_ =
        version && (version->major_version > inputMajor ||
                    (version->major_version == inputMajor && version->minor_version >= inputMinor));
}

std::vector<PointerDevice::Listed> PointerDevice::listDevices() {
    std::vector<Listed> devices;
    const auto reply = replies_->take<xcb_input_xi_query_device_reply_t>(
        xcb_input_xi_query_device(connection_->get(), allDevices));
    if (!reply) {
        return devices;
    }
    for (auto info = xcb_input_xi_query_device_infos_iterator(reply.get()); info.rem != 0;
         xcb_input_xi_device_info_next(&info)) {
        devices.push_back(
            {.id = info.data->deviceid,
             .type = info.data->type,
             .attachment = info.data->attachment,
             .name = std::string(
                 xcb_input_xi_device_info_name(info.data),
                 static_cast<std::size_t>(xcb_input_xi_device_info_name_length(info.data)))});
    }
    return devices;
}

std::optional<PointerDevice::Device> PointerDevice::find(const std::vector<Listed>& devices) {
    const auto pointer = std::ranges::find_if(devices, [&](const Listed& device) {
        return device.type == XCB_INPUT_DEVICE_TYPE_MASTER_POINTER && device.name == pointerName;
    });
    if (pointer == devices.end()) {
        return std::nullopt;
    }
    const auto slaveOf = [&](xcb_input_device_id_t master, std::uint16_t type) {
        const auto slave = std::ranges::find_if(devices, [&](const Listed& device) {
            return device.type == type && device.attachment == master;
        });
        return slave == devices.end() ? xcb_input_device_id_t{0} : slave->id;
    };
    const Device found{.pointer = pointer->id,
                       .keyboard = pointer->attachment,
                       .testPointer = slaveOf(pointer->id, XCB_INPUT_DEVICE_TYPE_SLAVE_POINTER),
                       .testKeyboard =
                           slaveOf(pointer->attachment, XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD)};
    return found.testPointer != 0 && found.testKeyboard != 0 ? std::optional(found) : std::nullopt;
}

bool PointerDevice::prepare() {
    if (!supported_) {
        return false;
    }
    if (device_) {
        return true;
    }
    std::vector<Listed> devices = listDevices();
    device_ = find(devices);
    if (device_) {
        releaseEverything();
    } else {
        add();
        devices = listDevices();
        device_ = find(devices);
    }
    const auto keyboard =
        std::ranges::find(devices, XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD, &Listed::type);
    userKeyboard_ = keyboard == devices.end() ? xcb_input_device_id_t{0} : keyboard->id;
    if (device_) {
        hideCursor(device_->pointer);
    }
    return device_.has_value();
}

void PointerDevice::add() const {
    constexpr std::size_t unit = 4;
    const std::size_t units = (sizeof(xcb_input_add_master_t) + name.size() + unit - 1) / unit;
    std::vector<std::uint32_t> buffer(units);
    const xcb_input_add_master_t header{.type = XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER,
                                        .len = static_cast<std::uint16_t>(units),
                                        .name_len = static_cast<std::uint16_t>(name.size()),
                                        .send_core = 1,
                                        .enable = 1};
    auto* const bytes = reinterpret_cast<std::uint8_t*>(buffer.data());
    std::memcpy(bytes, &header, sizeof(header));
    std::ranges::copy(name, bytes + sizeof(header));
    connection_->ignoreErrorOf(xcb_input_xi_change_hierarchy_checked(
        connection_->get(), 1,
        // The request takes changes of several shapes.
        reinterpret_cast<const xcb_input_hierarchy_change_t*>(buffer.data())));
}

void PointerDevice::releaseEverything() {
    for (const xcb_button_t button : {XCB_BUTTON_INDEX_1, XCB_BUTTON_INDEX_2, XCB_BUTTON_INDEX_3}) {
        release(button);
    }
    const xcb_setup_t& setup = *xcb_get_setup(connection_->get());
    for (unsigned key = setup.min_keycode; key <= setup.max_keycode; ++key) {
        releaseKey(static_cast<std::uint8_t>(key));
    }
}

void PointerDevice::hideCursor(xcb_input_device_id_t pointer) const {
    xcb_connection_t* const server = connection_->get();
    const xcb_pixmap_t shape = connection_->newId();
    const xcb_gcontext_t context = connection_->newId();
    const xcb_cursor_t cursor = connection_->newId();
    const std::uint32_t clear = 0;
    const xcb_rectangle_t pixel{.x = 0, .y = 0, .width = 1, .height = 1};
    xcb_create_pixmap(server, 1, shape, connection_->root(), 1, 1);
    xcb_create_gc(server, context, shape, XCB_GC_FOREGROUND, &clear);
    xcb_poly_fill_rectangle(server, shape, context, 1, &pixel);
    xcb_create_cursor(server, cursor, shape, shape, 0, 0, 0, 0, 0, 0, 0, 0);
    connection_->ignoreErrorOf(
        xcb_input_xi_change_cursor_checked(server, connection_->root(), cursor, pointer));
    xcb_free_cursor(server, cursor);
    xcb_free_gc(server, context);
    xcb_free_pixmap(server, shape);
}

void PointerDevice::moveTo(RootPlace place) const {
    if (device_) {
        connection_->ignoreErrorOf(xcb_input_xi_warp_pointer_checked(
            connection_->get(), XCB_NONE, connection_->root(), 0, 0, 0, 0, fixed(place.x),
            fixed(place.y), device_->pointer));
    }
}

RootPlace PointerDevice::restingPlace() const {
    return {.x = connection_->screen().width_in_pixels - 1,
            .y = connection_->screen().height_in_pixels - 1};
}

void PointerDevice::park() const {
    moveTo(restingPlace());
    connection_->flush();
}

void PointerDevice::fake(std::uint8_t eventOffset, std::uint8_t detail,
                         xcb_input_device_id_t device) {
    connection_->ignoreErrorOf(xcb_test_fake_input_checked(
        connection_->get(), static_cast<std::uint8_t>(firstEvent_ + eventOffset), detail,
        XCB_CURRENT_TIME, XCB_NONE, 0, 0, static_cast<std::uint8_t>(device)));
    connection_->flush();
}

void PointerDevice::press(xcb_button_t button) {
    if (device_) {
        fake(deviceButtonPress, button, device_->testPointer);
    }
}

void PointerDevice::release(xcb_button_t button) {
    if (device_) {
        fake(deviceButtonRelease, button, device_->testPointer);
    }
}

void PointerDevice::pressKey(std::uint8_t keyCode) {
    if (device_) {
        fake(deviceKeyPress, keyCode, device_->testKeyboard);
    }
}

void PointerDevice::releaseKey(std::uint8_t keyCode) {
    if (device_) {
        fake(deviceKeyRelease, keyCode, device_->testKeyboard);
    }
}

bool PointerDevice::isGrabbed() {
    if (!device_) {
        return false;
    }
    // The only way to ask is to try. The grab asks for no events and ends in the same batch.
    xcb_connection_t* const server = connection_->get();
    const std::uint32_t noEvents = 0;
    const auto request = xcb_input_xi_grab_device(server, connection_->root(), XCB_CURRENT_TIME,
                                                  XCB_NONE, device_->pointer, XCB_GRAB_MODE_ASYNC,
                                                  XCB_GRAB_MODE_ASYNC, 1, 1, &noEvents);
    connection_->ignoreErrorOf(
        xcb_input_xi_ungrab_device_checked(server, XCB_CURRENT_TIME, device_->pointer));
    const auto reply = replies_->take<xcb_input_xi_grab_device_reply_t>(request);
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool PointerDevice::isOwn(xcb_input_device_id_t device) const {
    return device_ && (device == device_->pointer || device == device_->keyboard ||
                       device == device_->testPointer || device == device_->testKeyboard);
}

} // namespace pelistra::linux

#include "platform/linux/clicks/PointerDevice.h"

#include "platform/posix/Environment.h"
#include "platform/x11/Clients.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <thread>

#include <csignal>
#include <unistd.h>
#include <xcb/xtest.h>

namespace pelistra::linux {

namespace {

constexpr std::string_view namePrefix = "Pelistra clicks ";
// The server adds these to the name of a pair of masters.
constexpr std::string_view pointerSuffix = " pointer";

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
    : connection_(&connection), replies_(&replies), host_(posix::hostName()) {
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

std::string PointerDevice::nameOf(ProcessId process, std::string_view host) {
    return std::string(namePrefix) + std::to_string(process) + "@" + std::string(host);
}

std::optional<PointerDevice::Maker> PointerDevice::makerIn(std::string_view deviceName) {
    if (!deviceName.starts_with(namePrefix) || !deviceName.ends_with(pointerSuffix)) {
        return std::nullopt;
    }
    deviceName.remove_prefix(namePrefix.size());
    deviceName.remove_suffix(pointerSuffix.size());
    const std::size_t at = deviceName.find('@');
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    Maker maker{.process = 0, .host = std::string(deviceName.substr(at + 1))};
    const auto* const end = deviceName.data() + at;
    // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): the end goes along
    const auto [rest, error] = std::from_chars(deviceName.data(), end, maker.process);
    if (error != std::errc() || rest != end || maker.process < 1) {
        return std::nullopt;
    }
    return maker;
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

std::optional<PointerDevice::Device> PointerDevice::find(const std::vector<Listed>& devices,
                                                         const std::string& name) {
    const auto pointer = std::ranges::find_if(devices, [&](const Listed& device) {
        return device.type == XCB_INPUT_DEVICE_TYPE_MASTER_POINTER &&
               device.name == name + std::string(pointerSuffix);
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
    const std::string name = nameOf(::getpid(), host_);
    if (!device_) {
        add(name);
        const std::vector<Listed> devices = listDevices();
        const auto keyboard =
            std::ranges::find(devices, XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD, &Listed::type);
        userKeyboard_ = keyboard == devices.end() ? xcb_input_device_id_t{0} : keyboard->id;
        device_ = find(devices, name);
        if (device_) {
            hideCursor(device_->pointer);
        }
    }
    return device_.has_value();
}

void PointerDevice::add(const std::string& name) const {
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

void PointerDevice::remove(xcb_input_device_id_t pointer,
                           const std::vector<Listed>& devices) const {
    // Real devices that somebody has attached to the pair go back to the user's own masters, the
    // first of each kind.
    const auto firstOf = [&](std::uint16_t type) {
        const auto found = std::ranges::find(devices, type, &Listed::type);
        return found == devices.end() ? xcb_input_device_id_t{0} : found->id;
    };
    constexpr std::uint16_t lengthInUnits = sizeof(xcb_input_remove_master_t) / 4;
    const xcb_input_remove_master_t change{
        .type = XCB_INPUT_HIERARCHY_CHANGE_TYPE_REMOVE_MASTER,
        .len = lengthInUnits,
        .deviceid = pointer,
        .return_mode = XCB_INPUT_CHANGE_MODE_ATTACH,
        .pad0 = 0,
        .return_pointer = firstOf(XCB_INPUT_DEVICE_TYPE_MASTER_POINTER),
        .return_keyboard = firstOf(XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD)};
    connection_->ignoreErrorOf(xcb_input_xi_change_hierarchy_checked(
        connection_->get(), 1,
        // The request takes changes of several shapes.
        reinterpret_cast<const xcb_input_hierarchy_change_t*>(&change)));
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
    lastUse_ = std::chrono::steady_clock::now();
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

void PointerDevice::removeWhenQuiet() {
    if (!device_) {
        return;
    }
    std::this_thread::sleep_until(lastUse_ + quietTime);
    remove(device_->pointer, listDevices());
    device_.reset();
    connection_->flush();
}

bool PointerDevice::isAbandoned(const Maker& maker) {
    if (maker.host != host_ || maker.process == ::getpid()) {
        return false;
    }
    // A process that ended is no client; one that runs under a reused id is most likely none
    // either.
    if (const auto request = x11::requestAllProcesses(*connection_)) {
        const auto processes = x11::takeProcesses(*replies_, request);
        return processes && std::ranges::none_of(*processes, [&](const auto& known) {
                   return known.second == maker.process;
               });
    }
    return ::kill(maker.process, 0) != 0 && errno == ESRCH;
}

int PointerDevice::removeAbandoned() {
    if (!supported_) {
        return 0;
    }
    // Nobody else may remove or make devices between the look and the removal.
    xcb_grab_server(connection_->get());
    const std::vector<Listed> devices = listDevices();
    int removed = 0;
    for (const Listed& device : devices) {
        const auto maker = makerIn(device.name);
        if (device.type == XCB_INPUT_DEVICE_TYPE_MASTER_POINTER && maker && isAbandoned(*maker)) {
            remove(device.id, devices);
            ++removed;
        }
    }
    xcb_ungrab_server(connection_->get());
    connection_->flush();
    return removed;
}

} // namespace pelistra::linux

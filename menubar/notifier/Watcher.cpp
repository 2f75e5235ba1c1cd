#include "menubar/notifier/Watcher.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include <unistd.h>

namespace pelistra::menubar {

namespace {

constexpr auto watcherName = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";
constexpr auto watcherInterface = "org.kde.StatusNotifierWatcher";
// Of another watcher's list.
constexpr int mostListed = 1'000;

} // namespace

struct Watcher::Methods {
    static int registerItem(sd_bus_message* message, void* data, sd_bus_error* error) {
        const char* text = nullptr;
        if (sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, static_cast<void*>(&text)) < 0) {
            return -EINVAL;
        }
        const char* const sender = sd_bus_message_get_sender(message);
        const std::string registrant = sender != nullptr ? sender : "";
        const auto address = addressIn(text, registrant);
        if (!address) {
            return sd_bus_error_set_const(
                error, SD_BUS_ERROR_INVALID_ARGS,
                "neither the name of a service nor the path of an object");
        }
        static_cast<Watcher*>(data)->registered_(*address, registrant);
        return sd_bus_reply_method_return(message, "");
    }

    // There is a host as long as there is this watcher.
    static int registerHost(sd_bus_message* message, void* /*data*/, sd_bus_error* /*error*/) {
        return sd_bus_reply_method_return(message, "");
    }

    static int getItems(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                        const char* /*property*/, sd_bus_message* reply, void* data,
                        sd_bus_error* /*error*/) {
        int result = sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "s");
        for (const std::string& item : static_cast<Watcher*>(data)->items_) {
            if (result >= 0) {
                result = sd_bus_message_append(reply, "s", item.c_str());
            }
        }
        return result < 0 ? result : sd_bus_message_close_container(reply);
    }

    static int getHostRegistered(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                                 const char* /*property*/, sd_bus_message* reply, void* /*data*/,
                                 sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "b", 1);
    }

    static int getVersion(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                          const char* /*property*/, sd_bus_message* reply, void* /*data*/,
                          sd_bus_error* /*error*/) {
        return sd_bus_message_append(reply, "i", 0);
    }

    static const sd_bus_vtable* table() {
        static const std::array<sd_bus_vtable, 12> entries{{
            SD_BUS_VTABLE_START(0),
            SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem,
                          SD_BUS_VTABLE_UNPRIVILEGED),
            SD_BUS_METHOD("RegisterStatusNotifierHost", "s", "", registerHost,
                          SD_BUS_VTABLE_UNPRIVILEGED),
            SD_BUS_PROPERTY("RegisteredStatusNotifierItems", "as", getItems, 0, 0),
            SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", getHostRegistered, 0, 0),
            SD_BUS_PROPERTY("ProtocolVersion", "i", getVersion, 0, 0),
            SD_BUS_SIGNAL("StatusNotifierItemRegistered", "s", 0),
            SD_BUS_SIGNAL("StatusNotifierItemUnregistered", "s", 0),
            SD_BUS_SIGNAL("StatusNotifierHostRegistered", "", 0),
            SD_BUS_SIGNAL("StatusNotifierHostUnregistered", "", 0),
            SD_BUS_VTABLE_END,
            SD_BUS_VTABLE_END,
        }};
        return entries.data();
    }
};

Watcher::Watcher(sd_bus& bus, Registered registered)
    : bus_(&bus), registered_(std::move(registered)) {
    // The object before the name: whoever sees the name calls at once.
    sd_bus_slot* object = nullptr;
    sd_bus_add_object_vtable(&bus, &object, watcherPath, watcherInterface, Methods::table(), this);
    object_.reset(object);
    ownerChanges_ = BusListener::match(
        bus,
        std::string("type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
                    "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='") +
            watcherName + "'",
        [this](sd_bus_message& message) {
            const char* owner = nullptr;
            if (sd_bus_message_read(&message, "sss", nullptr, nullptr, &owner) > 0) {
                ownerChanged(owner);
            }
        });
    const MessagePtr call = newBusCall(bus, "RequestName");
    // Without any flag, the bus puts us in the queue behind a watcher that is there.
    sd_bus_message_append(call.get(), "su", watcherName, std::uint32_t{0});
    nameRequest_ =
        BusListener::call(bus, call, [this](sd_bus_message& message) { nameAnswered(message); });
}

void Watcher::nameAnswered(sd_bus_message& message) {
    constexpr std::uint32_t inQueue = 2;
    std::uint32_t answer = 0;
    if (sd_bus_message_is_method_error(&message, nullptr) == 0 &&
        sd_bus_message_read_basic(&message, SD_BUS_TYPE_UINT32, &answer) > 0 && answer == inQueue) {
        joinOther();
    }
}

void Watcher::ownerChanged(const std::string& owner) {
    const char* own = nullptr;
    sd_bus_get_unique_name(bus_, &own);
    isOurs_ = own != nullptr && owner == own;
    if (isOurs_) {
        otherItems_.reset();
        otherList_.reset();
        announce("StatusNotifierHostRegistered", "");
    } else if (!owner.empty()) {
        joinOther();
    }
}

void Watcher::joinOther() {
    const char* own = nullptr;
    sd_bus_get_unique_name(bus_, &own);
    const MessagePtr host =
        newCall(*bus_, watcherName, watcherPath, watcherInterface, "RegisterStatusNotifierHost");
    sd_bus_message_append(host.get(), "s", own != nullptr ? own : "");
    hostRequest_ = BusListener::call(*bus_, host, [](sd_bus_message&) {});
    std::string registrations = "type='signal',member='StatusNotifierItemRegistered',sender='";
    registrations.append(watcherName).append("',path='").append(watcherPath);
    registrations.append("',interface='").append(watcherInterface).append("'");
    otherItems_ = BusListener::match(*bus_, registrations, [this](sd_bus_message& message) {
        if (const auto address = addressIn(textIn(message), "")) {
            registered_(*address, {});
        }
    });
    const MessagePtr list =
        newCall(*bus_, watcherName, watcherPath, "org.freedesktop.DBus.Properties", "Get");
    sd_bus_message_append(list.get(), "ss", watcherInterface, "RegisteredStatusNotifierItems");
    otherList_ = BusListener::call(*bus_, list, [this](sd_bus_message& message) {
        const char* item = nullptr;
        if (sd_bus_message_is_method_error(&message, nullptr) > 0 ||
            sd_bus_message_enter_container(&message, SD_BUS_TYPE_VARIANT, "as") <= 0 ||
            sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "s") < 0) {
            return;
        }
        for (int count = 0;
             count < mostListed &&
             sd_bus_message_read_basic(&message, SD_BUS_TYPE_STRING, static_cast<void*>(&item)) > 0;
             ++count) {
            if (const auto address = addressIn(item, "")) {
                registered_(*address, {});
            }
        }
    });
}

void Watcher::publish(std::vector<std::string> items) {
    std::swap(items, items_);
    const auto isIn = [](const std::vector<std::string>& list, const std::string& item) {
        return std::ranges::find(list, item) != list.end();
    };
    for (const std::string& item : items) {
        if (!isIn(items_, item)) {
            announce("StatusNotifierItemUnregistered", item);
        }
    }
    for (const std::string& item : items_) {
        if (!isIn(items, item)) {
            announce("StatusNotifierItemRegistered", item);
        }
    }
}

void Watcher::announce(const char* signal, const std::string& item) {
    if (!isOurs_) {
        return;
    }
    if (item.empty()) {
        sd_bus_emit_signal(bus_, watcherPath, watcherInterface, signal, "");
    } else {
        sd_bus_emit_signal(bus_, watcherPath, watcherInterface, signal, "s", item.c_str());
    }
}

} // namespace pelistra::menubar

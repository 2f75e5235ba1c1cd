#include "menubar/notifier/NotifierItem.h"

#include "menubar/notifier/ProgramName.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace pelistra::menubar {

namespace {

constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

const char* memberFor(NotifierItem::Deed deed) {
    switch (deed) {
    case NotifierItem::Deed::Activate:
        return "Activate";
    case NotifierItem::Deed::SecondaryActivate:
        return "SecondaryActivate";
    case NotifierItem::Deed::ContextMenu:
        break;
    }
    return "ContextMenu";
}

bool isUnknown(sd_bus_message& message) {
    const sd_bus_error* const error = sd_bus_message_get_error(&message);
    return error != nullptr && (sd_bus_error_has_name(error, SD_BUS_ERROR_UNKNOWN_METHOD) > 0 ||
                                sd_bus_error_has_name(error, SD_BUS_ERROR_UNKNOWN_INTERFACE) > 0 ||
                                sd_bus_error_has_name(error, SD_BUS_ERROR_NOT_SUPPORTED) > 0);
}

} // namespace

NotifierItem::NotifierItem(sd_bus& bus, std::uint64_t number, ItemAddress address, int iconSide)
    : bus_(&bus), number_(number), address_(std::move(address)), iconSide_(iconSide) {
    // Before the question, so that no change goes unnoticed in between.
    ownerChanges_ = BusListener::match(
        bus,
        "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
        "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" +
            address_.service + "'",
        [this](sd_bus_message& message) {
            const char* newOwner = nullptr;
            if (sd_bus_message_read(&message, "sss", nullptr, nullptr, &newOwner) > 0) {
                // Before we know the owner, the answer that is on its way is newer.
                gone_ = gone_ || (!owner_.empty() && owner_ != newOwner);
            }
        });
    const MessagePtr call = newBusCall(bus, "GetNameOwner");
    sd_bus_message_append(call.get(), "s", address_.service.c_str());
    ownerQuestion_ = BusListener::call(
        bus, call, [this](sd_bus_message& message) { ownerAnswered(textIn(message)); });
    gone_ = !ownerQuestion_;
}

void NotifierItem::setRegistrant(const std::string& name) {
    registrant_ = name;
    if (address_.service == name) {
        // Need not be asked for: it has just spoken.
        ownerAnswered(name);
    }
}

void NotifierItem::ownerAnswered(const std::string& owner) {
    if (owner.empty()) {
        gone_ = true;
    }
    if (owner.empty() || owner == owner_) {
        return;
    }
    owner_ = owner;
    follow();
    askProcess();
    refresh();
}

void NotifierItem::follow() {
    const std::string rule =
        "type='signal',sender='" + owner_ + "',path='" + address_.path + "',interface='";
    for (const char* const interface : {itemInterface, propertiesInterface}) {
        signals_.push_back(BusListener::match(*bus_, rule + interface + "'",
                                              [this](sd_bus_message&) { noteChange(); }));
    }
}

void NotifierItem::noteChange() {
    stale_ = true;
    // Whoever did not answer may do so now.
    constexpr std::chrono::seconds soon{1};
    notBefore_ = std::min(notBefore_, Clock::now() + soon);
}

void NotifierItem::askProcess() {
    const MessagePtr call = newBusCall(*bus_, "GetConnectionUnixProcessID");
    sd_bus_message_append(call.get(), "s", owner_.c_str());
    processQuestion_ = BusListener::call(*bus_, call, [this](sd_bus_message& message) {
        std::uint32_t process = 0;
        if (sd_bus_message_is_method_error(&message, nullptr) == 0 &&
            sd_bus_message_read_basic(&message, SD_BUS_TYPE_UINT32, &process) > 0) {
            process_ = static_cast<pid_t>(process);
            program_ = programName(process_);
        }
    });
}

void NotifierItem::setIconSide(int side) {
    if (std::exchange(iconSide_, side) != side) {
        refresh();
    }
}

void NotifierItem::refresh() {
    stale_ = true;
    failures_ = 0;
    notBefore_ = {};
}

std::optional<NotifierItem::Clock::time_point> NotifierItem::due() const {
    const bool canAsk = !gone_ && !owner_.empty() && stale_ && !question_;
    return canAsk ? std::optional(notBefore_) : std::nullopt;
}

void NotifierItem::update(Clock::time_point now) {
    if (const auto when = due(); when && *when <= now) {
        notBefore_ = now + shortestInterval;
        ask();
    }
}

const std::string& NotifierItem::destination() const {
    return usesOwner_ ? owner_ : address_.service;
}

void NotifierItem::ask() {
    stale_ = false;
    const MessagePtr call =
        newCall(*bus_, destination(), address_.path, propertiesInterface, "GetAll");
    sd_bus_message_append(call.get(), "s", itemInterface);
    question_ =
        BusListener::call(*bus_, call, [this](sd_bus_message& message) { answered(message); });
}

void NotifierItem::answered(sd_bus_message& message) {
    question_.reset();
    auto properties = readProperties(message, iconSide_);
    if (!properties) {
        failed();
        return;
    }
    failures_ = 0;
    // A file may be another picture under the same name.
    const bool namesFiles =
        !properties->iconThemePath.empty() || properties->icon.name.starts_with('/');
    changed_ = changed_ || namesFiles || properties != properties_;
    properties_ = std::move(properties);
}

void NotifierItem::failed() {
    // At last it is asked once a minute.
    constexpr int slowest = 10;
    failures_ = std::min(failures_ + 1, slowest);
    stale_ = true;
    const bool hasOtherName = address_.service != owner_;
    usesOwner_ = hasOtherName && !usesOwner_;
    if (!hasOtherName || failures_ % 2 == 0) {
        // Some register before they are ready to answer: later, and then later still.
        notBefore_ = Clock::now() + shortestInterval * (1 << failures_);
    }
}

void NotifierItem::tell(Deed deed, int x, int y, std::function<void()> refused) {
    const MessagePtr call =
        newCall(*bus_, destination(), address_.path, itemInterface, memberFor(deed));
    if (call == nullptr) {
        return;
    }
    sd_bus_message_append(call.get(), "ii", x, y);
    if (!refused) {
        sd_bus_message_set_expect_reply(call.get(), 0);
        sd_bus_send(bus_, call.get(), nullptr);
        return;
    }
    deed_ = BusListener::call(*bus_, call, [refused = std::move(refused)](sd_bus_message& message) {
        if (isUnknown(message)) {
            refused();
        }
    });
}

void NotifierItem::scroll(int delta, Axis axis) {
    const MessagePtr call = newCall(*bus_, destination(), address_.path, itemInterface, "Scroll");
    if (call == nullptr) {
        return;
    }
    sd_bus_message_append(call.get(), "is", delta,
                          axis == Axis::Vertical ? "vertical" : "horizontal");
    sd_bus_message_set_expect_reply(call.get(), 0);
    sd_bus_send(bus_, call.get(), nullptr);
}

} // namespace pelistra::menubar

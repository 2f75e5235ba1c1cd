#include "menubar/notifier/NotifierHost.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace pelistra::menubar {

namespace {

// How the programs call themselves on the bus that follow the older rule.
constexpr std::string_view usualName = "org.kde.StatusNotifierItem-";

} // namespace

std::optional<NotifierHost::Clock::time_point> NotifierHost::due() const {
    std::optional<Clock::time_point> first = bus_.due();
    for (const auto& item : items_) {
        if (const auto due = item->due(); due && (!first || *due < *first)) {
            first = due;
        }
    }
    return first;
}

bool NotifierHost::process() {
    const bool came = bus_.process();
    const auto now = Clock::now();
    for (const auto& item : items_) {
        item->update(now);
    }
    if (came) {
        sweep();
    }
    return came;
}

void NotifierHost::busChanged(sd_bus* bus) {
    items_.clear();
    names_.reset();
    watcher_.reset();
    connected_ = bus;
    if (bus == nullptr) {
        return;
    }
    sd_id128_t id{};
    sd_bus_get_bus_id(bus, &id);
    std::string text(SD_ID128_STRING_MAX, '\0');
    busId_ = sd_id128_to_string(id, text.data());
    for (const ItemAddress& address : memory_.read(busId_)) {
        add(address);
    }
    watcher_ = std::make_unique<Watcher>(
        *bus,
        [this](const ItemAddress& item, const std::string& registrant) { add(item, registrant); });
    findUnregistered();
}

void NotifierHost::findUnregistered() {
    names_ = BusListener::call(
        *connected_, newBusCall(*connected_, "ListNames"), [this](sd_bus_message& message) {
            const char* name = nullptr;
            if (sd_bus_message_is_method_error(&message, nullptr) > 0 ||
                sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "s") < 0) {
                return;
            }
            while (sd_bus_message_read_basic(&message, SD_BUS_TYPE_STRING,
                                             static_cast<void*>(&name)) > 0) {
                if (std::string_view(name).starts_with(usualName)) {
                    if (const auto address = addressIn(name, "")) {
                        add(*address);
                    }
                }
            }
        });
}

void NotifierHost::add(const ItemAddress& address, const std::string& registrant) {
    const auto known = std::ranges::find(
        items_, address, [](const auto& item) -> const ItemAddress& { return item->address(); });
    if (known != items_.end()) {
        (*known)->refresh();
        return;
    }
    const auto isFull = [&](std::size_t limit, std::size_t count, const char* where) {
        if (count >= limit) {
            complaints_.add("an item of the session bus is refused: there are " +
                            std::to_string(limit) + where);
        }
        return count >= limit;
    };
    const auto ofProgram = static_cast<std::size_t>(std::ranges::count_if(
        items_, [&](const auto& item) { return item->registrant() == registrant; }));
    if (isFull(itemLimit, items_.size(), " already") ||
        (!registrant.empty() &&
         isFull(itemLimitPerProgram, ofProgram, " of the same program already"))) {
        return;
    }
    items_.push_back(
        std::make_unique<NotifierItem>(*connected_, nextNumber_++, address, iconSide_));
    items_.back()->setRegistrant(registrant);
}

NotifierItem* NotifierHost::find(std::uint64_t number) const {
    const auto found =
        std::ranges::find(items_, number, [](const auto& item) { return item->number(); });
    return found == items_.end() ? nullptr : found->get();
}

void NotifierHost::setIconSide(int side) {
    iconSide_ = side;
    for (const auto& item : items_) {
        item->setIconSide(side);
    }
}

bool NotifierHost::isSurplus(const NotifierItem& item) const {
    if (item.owner().empty()) {
        return false;
    }
    std::size_t ofProgram = 0;
    for (const auto& earlier : items_) {
        if (earlier.get() == &item) {
            return false;
        }
        if (earlier->owner() == item.owner()) {
            // Registered once by the name of its connection, once by another.
            if (earlier->address().path == item.address().path ||
                ++ofProgram >= itemLimitPerProgram) {
                return true;
            }
        }
    }
    return false;
}

void NotifierHost::sweep() {
    for (auto item = items_.begin(); item != items_.end();) {
        item = (*item)->isGone() || isSurplus(**item) ? items_.erase(item) : std::next(item);
    }
    if (watcher_ != nullptr) {
        std::vector<std::string> texts;
        texts.reserve(items_.size());
        for (const auto& item : items_) {
            if (!item->owner().empty()) {
                texts.push_back(item->address().text());
            }
        }
        watcher_->publish(std::move(texts));
    }
}

void NotifierHost::remember() {
    if (connected_ == nullptr) {
        return;
    }
    std::vector<ItemAddress> addresses;
    addresses.reserve(items_.size());
    for (const auto& item : items_) {
        addresses.push_back(item->address());
    }
    memory_.write(busId_, addresses);
}

} // namespace pelistra::menubar

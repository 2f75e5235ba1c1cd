#pragma once

#include "menubar/Complaints.h"
#include "menubar/notifier/NotifierItem.h"
#include "menubar/notifier/RememberedItems.h"
#include "menubar/notifier/SessionBus.h"
#include "menubar/notifier/Watcher.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::menubar {

// The icons that programs put on the session bus (StatusNotifierItem), from their registration to
// the end of their programs.
class NotifierHost {
public:
    using Clock = NotifierItem::Clock;
    // More than any desktop has; what registers beyond it is refused.
    static constexpr std::size_t itemLimit = 256;
    static constexpr std::size_t itemLimitPerProgram = 32;

    explicit NotifierHost(RememberedItems memory)
        : memory_(std::move(memory)), bus_([this](sd_bus* bus) { busChanged(bus); }) {}
    NotifierHost(const NotifierHost&) = delete;
    NotifierHost& operator=(const NotifierHost&) = delete;
    ~NotifierHost() = default;

    // What to wait for, and when process() is to be called although nothing came.
    [[nodiscard]] pollfd descriptor() const { return bus_.descriptor(); }
    [[nodiscard]] std::optional<Clock::time_point> due() const;
    // Handles what has come. Returns whether anything had.
    bool process();

    // The side of the square that pictures are to fit into, in device pixels.
    void setIconSide(int side);
    // All that are registered, those that have not answered yet included.
    [[nodiscard]] const std::vector<std::unique_ptr<NotifierItem>>& items() const { return items_; }
    // Null when there is none of that number (any more).
    [[nodiscard]] NotifierItem* find(std::uint64_t number) const;
    // Writes down which there are, for the next bar.
    void remember();

private:
    void busChanged(sd_bus* bus);
    // `registrant`: the unique name of the program that has registered it; empty when unknown.
    void add(const ItemAddress& address, const std::string& registrant = {});
    void findUnregistered();
    // Lets go what is gone, and what is there twice.
    void sweep();
    [[nodiscard]] bool isSurplus(const NotifierItem& item) const;

    RememberedItems memory_;
    Complaints complaints_;
    int iconSide_ = 1;
    std::uint64_t nextNumber_ = 1;
    std::string busId_;
    sd_bus* connected_ = nullptr;

    // The bus outlives what listens to it.
    SessionBus bus_;
    std::unique_ptr<Watcher> watcher_;
    BusListener names_;
    std::vector<std::unique_ptr<NotifierItem>> items_;
};

} // namespace pelistra::menubar

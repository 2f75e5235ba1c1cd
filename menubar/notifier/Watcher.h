#pragma once

#include "menubar/notifier/BusListener.h"
#include "menubar/notifier/ItemAddress.h"

#include <functional>
#include <string>
#include <vector>

namespace pelistra::menubar {

// The place where programs register their items. It is ours, or another program's while that has
// it; then we hear from that what is registered, and the place becomes ours once the other ends.
class Watcher {
public:
    // What is registered, and the unique name of the program that did so; empty when another
    // watcher was told.
    using Registered = std::function<void(const ItemAddress& item, const std::string& registrant)>;

    // Calls `registered` with every item that a program registers, here or at the other watcher.
    // The bus must answer and outlive this.
    Watcher(sd_bus& bus, Registered registered);
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    ~Watcher() = default;

    // What programs that ask are told to be registered. Those that listen hear of what has changed.
    void publish(std::vector<std::string> items);

private:
    struct Methods;

    void nameAnswered(sd_bus_message& message);
    void ownerChanged(const std::string& owner);
    void joinOther();
    void announce(const char* signal, const std::string& item);

    sd_bus* bus_;
    Registered registered_;
    std::vector<std::string> items_;
    bool isOurs_ = false;

    SlotPtr object_;
    BusListener ownerChanges_;
    BusListener nameRequest_;
    BusListener hostRequest_;
    BusListener otherItems_;
    BusListener otherList_;
};

} // namespace pelistra::menubar

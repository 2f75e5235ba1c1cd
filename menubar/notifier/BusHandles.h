#pragma once

#include <memory>

#include <systemd/sd-bus.h>

namespace pelistra::menubar {

struct BusDeleter {
    // Not flushed: that would wait for a bus that may have stopped reading.
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};

using BusPtr = std::unique_ptr<sd_bus, BusDeleter>;
using SlotPtr = std::unique_ptr<sd_bus_slot, BusDeleter>;
using MessagePtr = std::unique_ptr<sd_bus_message, BusDeleter>;

} // namespace pelistra::menubar

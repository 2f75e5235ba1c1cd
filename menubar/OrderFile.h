#pragma once

#include "menubar/OrderMemory.h"

#include <filesystem>
#include <string>

namespace pelistra::menubar {

// Where the order of the items outlives the bar: $XDG_STATE_HOME/pelistra/menubar-order.
class OrderFile {
public:
    // The path that the environment asks for; empty when it names no home.
    [[nodiscard]] static std::filesystem::path defaultPath();

    explicit OrderFile(std::filesystem::path path) : path_(std::move(path)) {}

    // What is remembered; nothing when there is no file. A damaged one is read as far as it makes
    // sense, with one line in the log.
    [[nodiscard]] OrderMemory read();
    // Writes it, if it differs from what the file holds. A failure is logged once until one
    // succeeds again.
    void write(const OrderMemory& memory);

private:
    std::filesystem::path path_;
    std::string written_;
    bool failing_ = false;
};

} // namespace pelistra::menubar

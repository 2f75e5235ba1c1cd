#pragma once

#include "menubar/notifier/ItemAddress.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::menubar {

// Which items were in the bar, outside the process: most programs register once in their life.
// Whoever comes back to such an address asks what is there before showing anything.
class RememberedItems {
public:
    // $XDG_STATE_HOME/pelistra/menubar-notifiers; empty when the environment names no home.
    [[nodiscard]] static std::filesystem::path defaultPath();

    explicit RememberedItems(std::filesystem::path path) : path_(std::move(path)) {}

    // Those that were written for that bus; on any other one the same names are somebody else's.
    [[nodiscard]] std::vector<ItemAddress> read(const std::string& bus);
    // Writes them, if they differ from what the file holds. A failure is logged once until one
    // succeeds again.
    void write(const std::string& bus, const std::vector<ItemAddress>& items);

    // What the file holds: a line that names its form and the bus, then a line per item.
    [[nodiscard]] static std::string text(const std::string& bus,
                                          const std::vector<ItemAddress>& items);
    // Lines that make no sense are left out.
    [[nodiscard]] static std::vector<ItemAddress> parse(std::string_view text,
                                                        const std::string& bus);

private:
    std::filesystem::path path_;
    std::string written_;
    bool failing_ = false;
};

} // namespace pelistra::menubar

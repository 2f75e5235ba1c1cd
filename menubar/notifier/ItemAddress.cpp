#include "menubar/notifier/ItemAddress.h"

#include <algorithm>

#include <systemd/sd-bus.h>

namespace pelistra::menubar {

namespace {

constexpr std::string_view usualPath = "/StatusNotifierItem";
// The bus allows any length; nobody's is longer.
constexpr std::size_t longestPath = 1024;

} // namespace

std::optional<ItemAddress> addressIn(std::string_view text, std::string_view sender) {
    const std::size_t slash = std::min(text.find('/'), text.size());
    ItemAddress address{.service = std::string(slash == 0 ? sender : text.substr(0, slash)),
                        .path = std::string(slash == text.size() ? usualPath : text.substr(slash))};
    if (sd_bus_service_name_is_valid(address.service.c_str()) <= 0 ||
        sd_bus_object_path_is_valid(address.path.c_str()) <= 0 ||
        address.path.size() > longestPath) {
        return std::nullopt;
    }
    return address;
}

} // namespace pelistra::menubar

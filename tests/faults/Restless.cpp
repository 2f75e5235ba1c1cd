#include "tests/desktop/harness/NotifierClient.h"
#include "tests/desktop/harness/TrayClient.h"
#include "tests/desktop/harness/WaitFor.h"
#include "tests/faults/Day.h"

#include <array>
#include <cstdlib>
#include <thread>

namespace pelistra::testing {

namespace {

constexpr std::chrono::milliseconds changeInterval{150};
constexpr std::uint32_t opaque = 0xff000000;
constexpr std::array<std::uint32_t, 3> colours{0xc03030, 0x30a030, 0x3060c0};
constexpr std::array<std::uint32_t, 3> widths{24, 32, 60};
constexpr int side = 22;

NotifierClient::Options onTheBus(const std::string& name) {
    NotifierClient::Options options;
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    options.address = address == nullptr ? "" : address;
    options.id = name + "Bus";
    options.title = name;
    options.menu = "/menu";
    options.entries = {{.id = 1, .label = "Open"},
                       {.id = 2, .label = "Checked", .toggle = "checkmark", .on = true},
                       {.id = 3, .label = "More"},
                       {.id = 4, .label = "Below", .depth = 1}};
    options.pixmaps = {NotifierClient::plainPixmap(side, opaque | colours[0])};
    return options;
}

} // namespace

int beRestless(const std::string& name) {
    TrayClient window("", {.name = name});
    NotifierClient onBus(onTheBus(name));
    if (!window.requestDock()) {
        return EXIT_FAILURE;
    }
    auto next = std::chrono::steady_clock::now();
    for (std::size_t change = 0; window.x().connection().isAlive();) {
        window.handleEvents();
        onBus.handleEvents();
        if (std::chrono::steady_clock::now() >= next) {
            next += changeInterval;
            ++change;
            const std::size_t which = change % colours.size();
            const std::string title = name + " " + std::to_string(change);
            window.changeColour(colours.at(which));
            window.askForWidth(widths.at(which));
            window.setTitle(title, "UTF8_STRING");
            onBus.change(
                [&](NotifierClient::Options& options) {
                    options.pixmaps = {
                        NotifierClient::plainPixmap(side, opaque | colours.at(which))};
                },
                "NewIcon");
            onBus.change([&](NotifierClient::Options& options) { options.title = title; },
                         "NewTitle");
        }
        std::this_thread::sleep_for(lookInterval);
    }
    return EXIT_SUCCESS;
}

} // namespace pelistra::testing

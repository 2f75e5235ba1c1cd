#include "tests/desktop/harness/TrayClient.h"
#include "tests/faults/Day.h"
#include "tests/faults/Mounts.h"
#include "tests/faults/Suite.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

constexpr const char* usage =
    R"(Usage: pelistra-faults --short | --soak | --only TEXT | --day MINUTES | --icon NAME | --restless NAME
Let things go wrong on a private X server, on purpose, and check after each that nothing is lost.
Ends with status 1 when something was.

  --short  one of each kind
  --soak   all of them
  --only TEXT
           those whose name contains it
  --day MINUTES
           instead live the same busy day over and over for that long, at least
           twice, and check that bar and organiser hold no more at the end than
           after the first minute
  --icon NAME, --restless NAME
           be one of the tray programs to which it happens
)";
constexpr int wrongUsage = 2;

// All, those of the short form, or those whose name contains `text`.
bool tryAll(bool isShort, std::string_view text) {
    using namespace pelistra::testing;
    Suite suite;
    // What needs a server of its own kind comes last.
    for (auto faults : {killFaults(), clientFaults(), stopFaults(), signalFaults(), clickFaults(),
                        fileFaults(), diskFaults(), clockFaults(), screenFaults()}) {
        std::erase_if(faults, [&](const Fault& fault) {
            return (isShort && !fault.isInShortForm) || fault.name.find(text) == std::string::npos;
        });
        suite.tryOut(faults);
    }
    suite.clear();
    for (const ServerEnd& end : serverEnds()) {
        if ((end.isInShortForm || !isShort) && end.name.find(text) != std::string::npos) {
            suite.tryAlone(end.name, end.happenAndCheck);
        }
    }
    return suite.finish();
}

// A tray program of one icon, until somebody kills it.
int beIcon(const std::string& name) {
    pelistra::testing::TrayClient icon("", {.name = name});
    if (!icon.requestDock()) {
        return EXIT_FAILURE;
    }
    while (icon.x().connection().isAlive()) {
        icon.handleEvents();
        std::this_thread::sleep_for(pelistra::testing::lookInterval);
    }
    return EXIT_SUCCESS;
}

int tryWithMounts(bool isShort, std::string_view text) {
    pelistra::testing::enterPrivateMounts();
    return tryAll(isShort, text) ? EXIT_SUCCESS : EXIT_FAILURE;
}

int live(const std::string& minutes) {
    return pelistra::testing::liveDays(std::chrono::minutes(std::stoi(minutes))) ? EXIT_SUCCESS
                                                                                 : EXIT_FAILURE;
}

int help() {
    std::cout << usage;
    return EXIT_SUCCESS;
}

using Order = std::function<int(const std::string& value)>;

// What the arguments ask for; empty when they are wrong.
Order orderIn(const std::vector<std::string>& arguments) {
    using namespace pelistra::testing;
    const std::map<std::string_view, Order> plain{
        {"--short", [](const std::string&) { return tryWithMounts(true, ""); }},
        {"--soak", [](const std::string&) { return tryWithMounts(false, ""); }},
        {"--help", [](const std::string&) { return help(); }}};
    const std::map<std::string_view, Order> withValue{
        {"--only", [](const std::string& text) { return tryWithMounts(false, text); }},
        {"--day", live},
        {"--icon", beIcon},
        {"--restless", beRestless}};
    if (arguments.empty() || arguments.size() > 2) {
        return {};
    }
    const auto& orders = arguments.size() == 2 ? withValue : plain;
    const auto found = orders.find(arguments.front());
    return found == orders.end() ? Order() : found->second;
}

} // namespace

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        const Order order = orderIn(arguments);
        if (!order) {
            std::cerr << usage;
            return wrongUsage;
        }
        return order(arguments.back());
    } catch (const std::exception& failure) {
        std::cerr << "pelistra-faults: " << failure.what() << "\n";
        return EXIT_FAILURE;
    }
}

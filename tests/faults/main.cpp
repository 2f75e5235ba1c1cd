#include "tests/desktop/harness/TrayClient.h"
#include "tests/faults/Day.h"
#include "tests/faults/Mounts.h"
#include "tests/faults/Suite.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
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

// What the arguments ask for, or that they are wrong.
int obey(const std::vector<std::string_view>& arguments) {
    using namespace pelistra::testing;
    const std::string_view order = arguments.empty() ? "" : arguments.front();
    if (arguments.size() == 2) {
        const std::string value(arguments[1]);
        if (order == "--icon") {
            return beIcon(value);
        }
        if (order == "--restless") {
            return beRestless(value);
        }
        if (order == "--day" && !value.empty() &&
            value.find_first_not_of("0123456789") == std::string::npos) {
            return liveDays(std::chrono::minutes(std::stoi(value))) ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        if (order == "--only") {
            enterPrivateMounts();
            return tryAll(false, value) ? EXIT_SUCCESS : EXIT_FAILURE;
        }
    } else if (arguments.size() == 1 && (order == "--short" || order == "--soak")) {
        enterPrivateMounts();
        return tryAll(order == "--short", "") ? EXIT_SUCCESS : EXIT_FAILURE;
    } else if (arguments.size() == 1 && order == "--help") {
        std::cout << usage;
        return EXIT_SUCCESS;
    }
    std::cerr << usage;
    return wrongUsage;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return obey({argv + 1, argv + argc}); // NOLINT(*-pointer-arithmetic)
    } catch (const std::exception& failure) {
        std::cerr << "pelistra-faults: " << failure.what() << "\n";
        return EXIT_FAILURE;
    }
}

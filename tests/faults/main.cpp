#include "tests/desktop/harness/TrayClient.h"
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

constexpr const char* usage = R"(Usage: pelistra-faults --short | --soak | --only TEXT | --icon NAME
Let things go wrong on a private X server, on purpose, and check after each that nothing is lost.
Ends with status 1 when something was.

  --short  one of each kind
  --soak   all of them
  --only TEXT
           those whose name contains it
  --icon NAME
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

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1,
                                                  argv + argc); // NOLINT(*-pointer-arithmetic)
    const bool isOnly = arguments.size() == 2 && arguments[0] == "--only";
    if (arguments == std::vector<std::string_view>{"--help"}) {
        std::cout << usage;
        return EXIT_SUCCESS;
    }
    const bool isIcon = arguments.size() == 2 && arguments[0] == "--icon";
    if (!isOnly && !isIcon && arguments != std::vector<std::string_view>{"--short"} &&
        arguments != std::vector<std::string_view>{"--soak"}) {
        std::cerr << usage;
        return wrongUsage;
    }
    try {
        if (isIcon) {
            return beIcon(std::string(arguments[1]));
        }
        pelistra::testing::enterPrivateMounts();
        const bool survived = tryAll(arguments[0] == "--short", isOnly ? arguments[1] : "");
        return survived ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::cerr << "pelistra-faults: " << failure.what() << "\n";
        return EXIT_FAILURE;
    }
}

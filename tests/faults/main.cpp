#include "tests/faults/Mounts.h"
#include "tests/faults/Suite.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>
#include <vector>

namespace {

constexpr const char* usage = R"(Usage: pelistra-faults --short | --soak | --only TEXT
Let things go wrong on a private X server, on purpose, and check after each that nothing is lost.
Ends with status 1 when something was.

  --short  one of each kind
  --soak   all of them
  --only TEXT
           those whose name contains it
)";
constexpr int wrongUsage = 2;

// All, those of the short form, or those whose name contains `text`.
bool tryAll(bool isShort, std::string_view text) {
    using namespace pelistra::testing;
    Suite suite;
    for (auto faults : {killFaults(), clientFaults(), clickFaults(), screenFaults(), fileFaults(),
                        diskFaults(), clockFaults()}) {
        std::erase_if(faults, [&](const Fault& fault) {
            return (isShort && !fault.isInShortForm) || fault.name.find(text) == std::string::npos;
        });
        suite.tryOut(faults);
    }
    constexpr std::string_view serverEnds = "the X server ends, collapsed";
    if (serverEnds.find(text) != std::string_view::npos) {
        suite.tryAlone(std::string(serverEnds), endServer);
    }
    return suite.finish();
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
    if (!isOnly && arguments != std::vector<std::string_view>{"--short"} &&
        arguments != std::vector<std::string_view>{"--soak"}) {
        std::cerr << usage;
        return wrongUsage;
    }
    try {
        pelistra::testing::enterPrivateMounts();
        const bool survived = tryAll(arguments[0] == "--short", isOnly ? arguments[1] : "");
        return survived ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::cerr << "pelistra-faults: " << failure.what() << "\n";
        return EXIT_FAILURE;
    }
}

#include "tests/desktop/tour/Tour.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

namespace {

constexpr const char* usage = R"(Usage: pelistra-tour FOLDER
Walk the road of one use on a private X server and save a picture of every step in FOLDER.
Ends with status 1 when a step failed.
)";
constexpr int wrongUsage = 2;

int walk(const std::string& folder) {
    using namespace pelistra::testing;
    Tour tour(folder);
    tour.beginDesktop({});
    walkArranging(tour);
    walkDiscovery(tour);
    walkRow(tour);
    walkMenus(tour);
    walkFirstUse(tour);
    walkNotifiers(tour);
    walkLooks(tour);
    walkCompositor(tour);
    return tour.finish() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv) {
    const std::string argument = argc == 2 ? argv[1] : "";
    if (argument == "--help") {
        std::cout << usage;
        return EXIT_SUCCESS;
    }
    if (argument.empty() || argument.starts_with("-")) {
        std::cerr << usage;
        return wrongUsage;
    }
    try {
        return walk(argument);
    } catch (const std::exception& failure) {
        std::cerr << "pelistra-tour: " << failure.what() << "\n";
        return EXIT_FAILURE;
    }
}

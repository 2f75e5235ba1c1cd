#include "tests/faults/Suite.h"

#include <algorithm>
#include <iterator>

namespace pelistra::testing {

namespace {

struct Size {
    int width;
    int height;
};
constexpr Size whole{.width = 1280, .height = 800};
constexpr Size smaller{.width = 1024, .height = 768};
constexpr Size upright{.width = 600, .height = 800};

Fault resized(Situation situation, const char* how, Size size) {
    return {.name = std::string("the screen is ") + how + ", " + nameOf(situation),
            .isInShortForm = situation == Situation::RowOpen && size.width == smaller.width,
            .happen = [situation, size](Bench& bench) {
                bench.bringInto(situation);
                bench.desktop().setScreenSize(size.width, size.height);
                bench.awaitRest(situation);
                bench.desktop().setScreenSize(whole.width, whole.height);
            }};
}

Fault turned(Situation situation) {
    return {.name = std::string("the screen is turned and back, ") + nameOf(situation),
            .isInShortForm = situation == Situation::RowOpen,
            .server = PrivateDisplay::Server::Nested,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                bench.desktop().turnScreen(true);
                bench.awaitRest(situation);
                bench.bringInto(Situation::RowOpen);
                bench.bringInto(situation);
                bench.desktop().turnScreen(false);
                bench.awaitRest(situation);
            }};
}

Fault plugged(Situation situation) {
    return {.name = std::string("a second screen is plugged in and out, ") + nameOf(situation),
            .isInShortForm = situation == Situation::Collapsed,
            .server = PrivateDisplay::Server::Outputs,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                bench.desktop().connectOutput(smaller.width, smaller.height);
                bench.awaitRest(situation);
                bench.bringInto(Situation::RowOpen);
                bench.bringInto(situation);
                bench.desktop().disconnectOutput();
                bench.awaitRest(situation);
            }};
}

Fault divided(Situation situation) {
    return {.name = std::string("the screen is divided and joined again, ") + nameOf(situation),
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                const std::vector<int> widths{whole.width / 2, whole.width / 2};
                bench.desktop().setMonitors(widths);
                bench.awaitRest(situation);
                bench.desktop().clearMonitors(widths.size());
            }};
}

} // namespace

std::vector<Fault> screenFaults() {
    std::vector<Fault> faults;
    const std::vector<Situation> situations{Situation::Expanded, Situation::Collapsed,
                                            Situation::RowOpen, Situation::Revealed,
                                            Situation::SettingsOpen};
    for (const Situation situation : situations) {
        faults.push_back(resized(situation, "made smaller and larger", smaller));
        faults.push_back(resized(situation, "made upright and wide again", upright));
        faults.push_back(divided(situation));
    }
    // Those that share a server stand together.
    std::ranges::transform(situations, std::back_inserter(faults), turned);
    std::ranges::transform(situations, std::back_inserter(faults), plugged);
    return faults;
}

} // namespace pelistra::testing

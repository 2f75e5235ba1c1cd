#include "tests/faults/Suite.h"

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
                bench.desktop().setScreenSize(whole.width, whole.height);
            }};
}

Fault divided(Situation situation) {
    return {.name = std::string("a second screen comes and goes, ") + nameOf(situation),
            .isInShortForm = situation == Situation::Revealed,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                const std::vector<int> widths{whole.width / 2, whole.width / 2};
                bench.desktop().setMonitors(widths);
                bench.desktop().clearMonitors(widths.size());
            }};
}

} // namespace

std::vector<Fault> screenFaults() {
    std::vector<Fault> faults;
    for (const Situation situation :
         {Situation::Collapsed, Situation::RowOpen, Situation::Revealed, Situation::SettingsOpen}) {
        faults.push_back(resized(situation, "made smaller and larger", smaller));
        faults.push_back(resized(situation, "turned upright and back", upright));
        faults.push_back(divided(situation));
    }
    return faults;
}

} // namespace pelistra::testing

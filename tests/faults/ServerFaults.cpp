#include "tests/faults/Check.h"
#include "tests/faults/Suite.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string_view>

namespace pelistra::testing {

namespace {

// Whoever of a program's connections notices first says so in its own words.
constexpr std::array<std::string_view, 3> partingWords{"the X server went away", "display has gone",
                                                       "X11 connection broke"};

void checkEnd(ChildProcess& process, std::vector<std::string>& complaints) {
    const auto end = process.waitForExit();
    const std::string output = process.output();
    if (!end) {
        complaints.push_back(process.name() + " goes on without an X server");
    } else if (end->status != 1) {
        complaints.push_back(process.name() + " crashes, or calls it a success: " + output);
    }
    if (std::ranges::none_of(partingWords, [&](std::string_view words) {
            return output.find(words) != std::string::npos;
        })) {
        complaints.push_back(process.name() + " does not say why it ends: " + output);
    }
    if (const std::string report = reportIn(output); !report.empty()) {
        complaints.push_back(report);
    }
}

// Where Qt is the first to notice, it ends the program with its windows alive, and what fontconfig
// holds for their texts is taken for a leak.
void allowForFonts(Bench& bench) {
    PrivateDisplay& display = bench.desktop().display();
    const auto list = display.folder() / "expected-leaks";
    std::ofstream(list) << "leak:libfontconfig\n";
    display.setEnvironment("LSAN_OPTIONS", "print_suppressions=0:suppressions=" + list.string());
    bench.desktop().organiser().process().terminate();
    bench.restartOrganiser();
}

ServerEnd endIn(Situation situation) {
    return {.name = std::string("the X server ends, ") + nameOf(situation),
            .isInShortForm = situation == Situation::Collapsed,
            .happenAndCheck = [situation] {
                Bench bench;
                allowForFonts(bench);
                bench.bringInto(situation);
                bench.desktop().display().killServer();
                std::vector<std::string> complaints;
                checkEnd(bench.desktop().bar().process(), complaints);
                checkEnd(bench.desktop().organiser().process(), complaints);
                return complaints;
            }};
}

} // namespace

std::vector<ServerEnd> serverEnds() {
    std::vector<ServerEnd> ends;
    std::ranges::transform(allSituations, std::back_inserter(ends), endIn);
    return ends;
}

} // namespace pelistra::testing

#include "tests/faults/Check.h"

#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/MasterPointers.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace pelistra::testing {

namespace {

// The user's own, and one for clicks.
constexpr std::size_t mostPointers = 2;

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : " ") + name;
    }
    return text;
}

class Complaints {
public:
    void unless(bool holds, const std::string& complaint) {
        if (!holds) {
            list_.push_back(complaint);
        }
    }
    [[nodiscard]] bool isEmpty() const { return list_.empty(); }
    [[nodiscard]] std::vector<std::string> take() { return std::move(list_); }

private:
    std::vector<std::string> list_;
};

void checkProcess(Complaints& complaints, ChildProcess& process) {
    const std::string name = std::filesystem::path(process.name()).filename().string();
    complaints.unless(process.isRunning(), name + " has ended: " + process.output());
    const std::string report = reportIn(process.output());
    complaints.unless(report.empty(), name + " reports: " + report);
    complaints.unless(waitFor([&] { return zombiesOf(process.pid()) == 0; }),
                      name + " leaves zombies");
}

void checkIcons(Complaints& complaints, Bench& bench) {
    const bool isComplete = waitFor([&] { return bench.foreignOrder() == bench.firstOrder(); });
    complaints.unless(isComplete, "icons were " + joined(bench.firstOrder()) + ", are " +
                                      joined(bench.foreignOrder()));
}

// Empty when the section is expanded, collapsed with or without its row, or shows an icon for a
// while; else what it is instead.
std::string stateProblem(Bench& bench) {
    constexpr double openLength = 14;
    Desktop& desktop = bench.desktop();
    const auto divider = desktop.organiser().dividerFrame();
    if (!divider) {
        return "no divider";
    }
    const int screen = desktop.x().rootFrame().width;
    const auto hidden = desktop.hiddenSection();
    const bool rowIsOpen = bench.row().isOpen();
    if (divider->width == 2 * screen) {
        return desktop.hiddenSectionIsOffScreen() ? "" : "collapsed, but hidden icons show";
    }
    if (rowIsOpen) {
        return "the row is open, but the section not collapsed";
    }
    if (divider->width == std::lround(openLength * desktop.bar().scale())) {
        return desktop.everythingIsOnScreen() ? "" : "expanded, but icons lie outside";
    }
    const bool showsOne = std::ranges::any_of(hidden, [&](const Desktop::Item& item) {
        return item.frame.x >= 0 && item.frame.right() <= screen;
    });
    return showsOne ? ""
                    : "half revealed: the divider is " + std::to_string(divider->width) +
                          " wide, and no hidden icon shows";
}

void checkState(Complaints& complaints, Bench& bench) {
    std::string problem;
    const bool isOne = waitFor([&] {
        problem = stateProblem(bench);
        return problem.empty();
    });
    complaints.unless(isOne, problem);
}

// A section that is stuck, half revealed or deaf fails here.
void checkUse(Complaints& complaints, Bench& bench) {
    try {
        for (const Situation situation : {Situation::Collapsed, Situation::RowOpen}) {
            bench.bringInto(situation);
        }
    } catch (const std::exception& failure) {
        complaints.unless(false, failure.what());
    }
    complaints.unless(bench.calm(), "the section cannot be expanded");
}

} // namespace

std::string reportIn(const std::string& output) {
    for (const char* sign : {"ERROR: AddressSanitizer", "ERROR: LeakSanitizer",
                             "runtime error:", "terminate called", "Assertion"}) {
        const auto place = output.find(sign);
        if (place != std::string::npos) {
            constexpr std::size_t length = 2000;
            return output.substr(place, length);
        }
    }
    return {};
}

int zombiesOf(pid_t process) {
    int zombies = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        const std::string stat = contentOf(entry.path() / "stat");
        // "pid (name) state parent ...", where the name may hold anything.
        const auto end = stat.rfind(')');
        if (end == std::string::npos || end + 4 > stat.size() || stat[end + 2] != 'Z') {
            continue;
        }
        zombies += std::stoi(stat.substr(end + 4)) == process ? 1 : 0;
    }
    return zombies;
}

std::vector<std::string> complaintsOf(Bench& bench) {
    Complaints complaints;
    checkProcess(complaints, bench.desktop().bar().process());
    checkProcess(complaints, bench.desktop().organiser().process());
    if (complaints.isEmpty()) {
        checkIcons(complaints, bench);
        checkState(complaints, bench);
        checkUse(complaints, bench);
        checkIcons(complaints, bench);
        complaints.unless(
            waitFor([&] { return masterPointers(bench.desktop().x()).size() <= mostPointers; }),
            "pointers are left behind");
        checkProcess(complaints, bench.desktop().bar().process());
        checkProcess(complaints, bench.desktop().organiser().process());
    }
    return complaints.take();
}

} // namespace pelistra::testing

#include "benchmarks/IdleFigures.h"

#include "benchmarks/ManyIcons.h"
#include "tests/desktop/harness/Desktop.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

namespace pelistra::testing {

namespace {

constexpr std::size_t icons = 50;
constexpr double millisecondsOfSecond = 1000;
constexpr double percent = 100;

struct Program {
    std::string name;
    pid_t pid;
};

std::vector<Cost> costsOf(const std::vector<Program>& programs) {
    std::vector<Cost> costs;
    for (const Program& program : programs) {
        costs.push_back(costOfGroup(program.pid));
    }
    return costs;
}

// What follows a start has come to rest when nobody has woken up for three seconds: the organiser
// tidies up two seconds after its start.
void waitForRest(const std::vector<Program>& programs) {
    constexpr std::chrono::seconds rest{3};
    require(waitFor([&] {
                const std::vector<Cost> before = costsOf(programs);
                std::this_thread::sleep_for(rest);
                return std::ranges::equal(before, costsOf(programs), {}, &Cost::wakeUps,
                                          &Cost::wakeUps);
            }),
            "the programs never come to rest");
}

double callsInTable(const std::filesystem::path& table) {
    std::ifstream file(table);
    double calls = 0;
    for (std::string line; std::getline(file, line);) {
        // Columns: share, seconds, microseconds a call, calls, [errors,] name.
        std::istringstream words(line);
        double share = 0;
        double seconds = 0;
        double each = 0;
        double count = 0;
        std::string name;
        if (!(words >> share >> seconds >> each >> count)) {
            continue;
        }
        while (words >> name) {
        }
        // The call that was interrupted to attach is begun again, and no work of the program's.
        if (name != "total" && name != "restart_syscall") {
            calls += count;
        }
    }
    return calls;
}

// How many system calls each of the processes makes; throws when strace cannot attach.
std::vector<double> systemCallsWhile(PrivateDisplay& display, const std::vector<pid_t>& processes,
                                     std::chrono::milliseconds time) {
    struct Trace {
        std::filesystem::path table;
        std::unique_ptr<ChildProcess> strace;
    };
    std::vector<Trace> traces;
    for (const pid_t pid : processes) {
        const auto table = display.folder() / ("strace." + std::to_string(pid));
        traces.push_back({.table = table,
                          .strace = display.start({"strace", "-f", "-c", "-o", table.string(), "-p",
                                                   std::to_string(pid)})});
    }
    for (const Trace& trace : traces) {
        require(trace.strace->waitForOutput("attached"),
                "strace cannot attach: " + trace.strace->output());
    }
    std::this_thread::sleep_for(time);
    std::vector<double> calls;
    for (const Trace& trace : traces) {
        trace.strace->signal(SIGINT);
        require(trace.strace->waitForExit().has_value(), "strace does not end");
        calls.push_back(callsInTable(trace.table));
    }
    return calls;
}

// A count of nothing proves something only where a count of something is seen.
void requireWorkingCounters(PrivateDisplay& display) {
    const auto busy = display.start({"sh", "-c", "while :; do sleep 0.05; done"});
    const double before = costOfGroup(busy->pid()).wakeUps;
    require(systemCallsWhile(display, {busy->pid()}, std::chrono::seconds(1)).front() > 0 &&
                costOfGroup(busy->pid()).wakeUps > before,
            "system calls or wake-ups are not counted here");
}

void watchExpanded(Desktop& desktop, const std::vector<Program>& programs, const Effort& effort,
                   Section& section) {
    waitForRest(programs);
    // A minute at most: the aim speaks of half of one.
    const auto time = std::min<std::chrono::seconds>(effort.idleTime, std::chrono::seconds(30));
    const std::string during = " in " + std::to_string(time.count()) + " s, expanded and idle";
    const std::vector<Cost> before = costsOf(programs);
    std::this_thread::sleep_for(time);
    const std::vector<Cost> after = costsOf(programs);
    const std::vector<double> calls =
        systemCallsWhile(desktop.display(), {programs[0].pid, programs[1].pid}, time);
    Memory both;
    for (std::size_t index = 0; index < programs.size(); ++index) {
        const Program& program = programs[index];
        section.figures.push_back(
            {.what = "wake-ups of the " + program.name + during,
             .spread = spreadOf({after[index].wakeUps - before[index].wakeUps}),
             .unit = "",
             .limit = atMost(0)});
        section.figures.push_back({.what = "system calls of the " + program.name + during,
                                   .spread = spreadOf({calls[index]}),
                                   .unit = "",
                                   .limit = atMost(0)});
        const Memory memory = memoryOf(program.pid);
        both.proportional += memory.proportional;
        both.own += memory.own;
        section.figures.push_back({.what = "proportional memory of the " + program.name,
                                   .spread = spreadOf({memory.proportional}),
                                   .unit = "MiB"});
    }
    constexpr double mostProportional = 6.5;
    constexpr double mostOwn = 2.2;
    section.figures.push_back({.what = "proportional memory of both, before any window",
                               .spread = spreadOf({both.proportional}),
                               .unit = "MiB",
                               .limit = atMost(mostProportional)});
    section.figures.push_back({.what = "own memory of both, before any window",
                               .spread = spreadOf({both.own}),
                               .unit = "MiB",
                               .limit = atMost(mostOwn)});
}

void watchCollapsed(Desktop& desktop, const std::vector<Program>& programs, const Effort& effort,
                    Section& section) {
    require(desktop.clickControl() && desktop.waitUntilCollapsed(), "not collapsed");
    std::this_thread::sleep_for(std::chrono::seconds(3));
    const std::vector<Cost> before = costsOf(programs);
    const auto begin = Clock::now();
    std::this_thread::sleep_for(effort.idleTime);
    const std::vector<Cost> after = costsOf(programs);
    const double milliseconds = Milliseconds(Clock::now() - begin).count();
    constexpr double mostPercent = 0.1;
    for (std::size_t index = 0; index < programs.size(); ++index) {
        const double wakeUps = after[index].wakeUps - before[index].wakeUps;
        const double spent =
            after[index].processorMilliseconds - before[index].processorMilliseconds;
        section.figures.push_back(
            {.what = "wake-ups of the " + programs[index].name + " a second, collapsed and idle",
             .spread = spreadOf({wakeUps / milliseconds * millisecondsOfSecond}),
             .unit = "",
             .limit = atMost(1)});
        section.figures.push_back(
            {.what = "share of a core of the " + programs[index].name + ", collapsed and idle",
             .spread = spreadOf({spent / milliseconds * percent}),
             .unit = "%",
             .limit = below(mostPercent)});
    }
}

} // namespace

Section idleFigures(const Effort& effort) {
    Section section{.title = "Doing nothing, with 50 icons", .figures = {}};
    Desktop desktop;
    requireWorkingCounters(desktop.display());
    desktop.startBar();
    const ManyIcons quietIcons(desktop.display().name(), icons);
    desktop.startOrganiser();
    require(waitFor([&] { return desktop.hiddenSection().size() == icons; }),
            "not every icon is docked");
    const std::vector<Program> programs{
        {.name = "bar", .pid = desktop.bar().process().pid()},
        {.name = "organiser", .pid = desktop.organiser().process().pid()}};
    watchExpanded(desktop, programs, effort, section);
    watchCollapsed(desktop, programs, effort, section);
    return section;
}

} // namespace pelistra::testing

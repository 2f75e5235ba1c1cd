// The figures of the whole, on a private X server: how fast the section collapses, what the bar
// does for 500 icons, and what both programs cost while nothing happens.

#include "benchmarks/ManyIcons.h"
#include "tests/desktop/harness/Desktop.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace pelistra::testing {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::size_t fewIcons = 30;
constexpr std::size_t manyIcons = 500;
constexpr int rounds = 21;
// Items left of the bar's edge stand there in whole slots, so a small change may move none of them.
constexpr std::uint32_t widerThanSixIcons = 200;
constexpr std::chrono::seconds idleTime{30};
constexpr std::chrono::milliseconds longerThanLatch{350};
constexpr double kibibytesOfMebibyte = 1024;

struct Figure {
    std::string what;
    double value = 0;
    // Empty where the number only explains another one.
    std::optional<double> target;
    std::string unit;
};

void print(const std::vector<Figure>& figures) {
    constexpr int whatWidth = 66;
    constexpr int numberWidth = 10;
    std::cout << std::left << std::setw(whatWidth) << "what" << std::right << std::setw(numberWidth)
              << "target" << std::setw(numberWidth) << "figure" << "\n";
    for (const Figure& figure : figures) {
        std::cout << std::left << std::setw(whatWidth) << figure.what << std::right << std::fixed
                  << std::setprecision(2) << std::setw(numberWidth);
        if (figure.target) {
            std::cout << *figure.target;
        } else {
            std::cout << "-";
        }
        const bool missed = figure.target && figure.value > *figure.target;
        std::cout << std::setw(numberWidth) << figure.value << " " << figure.unit
                  << (missed ? "   MISSED" : "") << "\n";
    }
}

double medianOf(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

// The time that the first thread of a process has spent on a processor.
std::chrono::nanoseconds processorTime(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/schedstat");
    long long nanoseconds = 0;
    file >> nanoseconds;
    return std::chrono::nanoseconds(nanoseconds);
}

void require(bool condition, const std::string& otherwise) {
    if (!condition) {
        throw std::runtime_error(otherwise);
    }
}

// One icon after another: once off, an icon stays off, so the last look is the one that counts.
void waitUntilOffScreen(Desktop& desktop, const std::vector<Desktop::Item>& items) {
    const auto end = Clock::now() + patience;
    for (const Desktop::Item& item : items) {
        while (desktop.x().frame(item.window).value_or(WindowFrame{}).right() > 0) {
            require(Clock::now() < end, item.className + " stays on the screen");
        }
    }
}

double timeOfOneCollapse(Desktop& desktop) {
    const std::vector<Desktop::Item> hidden = desktop.hiddenSection();
    require(hidden.size() == fewIcons, "not every icon is left of the divider");
    desktop.input().moveTo(centre(desktop.organiser().controlFrame().value()));
    desktop.input().press();
    const auto begin = Clock::now();
    desktop.input().release();
    waitUntilOffScreen(desktop, hidden);
    const Milliseconds time = Clock::now() - begin;
    require(desktop.waitUntilCollapsed(), "not collapsed");
    std::this_thread::sleep_for(longerThanLatch);
    require(desktop.clickControl(UserInput::Button::Left, {keys::alt}) &&
                desktop.waitUntilExpanded(),
            "not expanded");
    return time.count();
}

Figure collapseTime() {
    Desktop desktop({.width = 1920, .height = 1080});
    desktop.startBar();
    const auto& programs = realTrayPrograms();
    for (const RealTrayProgram& program : programs) {
        desktop.startProgram(program.program);
    }
    const ManyIcons icons(desktop.display().name(), fewIcons - programs.size());
    desktop.startOrganiser();
    require(waitFor([&] { return desktop.hiddenSection().size() == fewIcons; }),
            "not every icon is docked");
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        times.push_back(timeOfOneCollapse(desktop));
    }
    return {.what = "button release to 30 icons off the screen, median of 21",
            .value = medianOf(times),
            .target = 16,
            .unit = "ms"};
}

std::vector<Figure> layoutTimes() {
    Desktop desktop({.width = 1920, .height = 1080});
    desktop.startBar();
    ManyIcons icons(desktop.display().name(), manyIcons);
    require(waitFor([&] { return desktop.x().barItems().size() == manyIcons; }),
            "not every icon is docked");
    const std::vector<xcb_window_t> order = desktop.x().barItems();
    const pid_t bar = desktop.bar().process().pid();
    std::vector<double> times;
    std::vector<double> processor;
    std::vector<double> serverProcessor;
    const pid_t server = desktop.display().serverPid();
    for (int round = 0; round < rounds; ++round) {
        const int before = desktop.x().frame(order.front()).value().x;
        const auto processorBefore = processorTime(bar);
        const auto serverBefore = processorTime(server);
        const auto begin = Clock::now();
        icons.askForWidth(order.back(), round % 2 == 0 ? widerThanSixIcons : 28);
        while (desktop.x().frame(order.front()).value().x == before) {
            require(Clock::now() < begin + patience, "the bar does not lay out");
        }
        times.push_back(Milliseconds(Clock::now() - begin).count());
        serverProcessor.push_back(Milliseconds(processorTime(server) - serverBefore).count());
        std::this_thread::sleep_for(longerThanLatch);
        processor.push_back(Milliseconds(processorTime(bar) - processorBefore).count());
    }
    return {{.what = "500 icons laid out anew: the bar's processor time, median of 21",
             .value = medianOf(processor),
             .target = 5,
             .unit = "ms"},
            {.what = "  resize request to the furthest icon moved",
             .value = medianOf(times),
             .target = {},
             .unit = "ms"},
            {.what = "  of it the X server's processor time",
             .value = medianOf(serverProcessor),
             .target = {},
             .unit = "ms"}};
}

// The sum of the calls column of strace's table; throws when strace cannot attach.
double systemCallsWhile(PrivateDisplay& display, pid_t pid, std::chrono::seconds time) {
    const std::filesystem::path table = display.folder() / "strace.table";
    const auto strace =
        display.start({"strace", "-f", "-c", "-o", table.string(), "-p", std::to_string(pid)});
    require(strace->waitForOutput("attached"), "strace cannot attach: " + strace->output());
    std::this_thread::sleep_for(time);
    strace->signal(SIGINT);
    require(strace->waitForExit().has_value(), "strace does not end");
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
        std::string last;
        if (words >> share >> seconds >> each >> count >> name) {
            last = name;
            while (words >> name) {
                last = name;
            }
            // The call that was interrupted to attach is begun again, and no work of the program's.
            if (last != "total" && last != "restart_syscall") {
                calls += count;
            }
        }
    }
    return calls;
}

// A count of nothing proves something only where a count of something is seen.
void requireWorkingCounters(PrivateDisplay& display) {
    const auto busy = display.start({"sh", "-c", "while :; do sleep 0.05; done"});
    const long before = wakeUps(busy->pid()).value_or(0);
    require(systemCallsWhile(display, busy->pid(), std::chrono::seconds(1)) > 0 &&
                wakeUps(busy->pid()).value_or(0) > before,
            "system calls or wake-ups are not counted here");
}

std::vector<Figure> idleCosts() {
    Desktop desktop;
    requireWorkingCounters(desktop.display());
    desktop.startBar();
    const ManyIcons icons(desktop.display().name(), fewIcons);
    desktop.startOrganiser();
    require(waitFor([&] { return desktop.hiddenSection().size() == fewIcons; }),
            "not every icon is docked");
    struct Program {
        std::string name;
        pid_t pid;
        double memoryTarget;
    };
    const std::vector<Program> programs{{"bar", desktop.bar().process().pid(), 10},
                                        {"organiser", desktop.organiser().process().pid(), 32}};
    // What follows a start has come to rest when nobody has woken up for a second.
    std::vector<long> before(programs.size());
    require(waitFor([&] {
                for (std::size_t index = 0; index < programs.size(); ++index) {
                    before[index] = wakeUps(programs[index].pid).value_or(0);
                }
                std::this_thread::sleep_for(std::chrono::seconds(1));
                return std::ranges::equal(programs, before, {}, [](const Program& program) {
                    return wakeUps(program.pid).value_or(-1);
                });
            }),
            "the programs never come to rest");
    std::this_thread::sleep_for(idleTime);
    std::vector<Figure> figures;
    for (std::size_t index = 0; index < programs.size(); ++index) {
        const Program& program = programs[index];
        figures.push_back(
            {.what = "wake-ups of the " + program.name + " in 30 s, expanded and idle",
             .value = static_cast<double>(wakeUps(program.pid).value() - before[index]),
             .target = 0,
             .unit = ""});
        figures.push_back({.what = "proportional memory of the " + program.name,
                           .value = static_cast<double>(proportionalMemory(program.pid).value()) /
                                    kibibytesOfMebibyte,
                           .target = program.memoryTarget,
                           .unit = "MiB"});
    }
    for (const Program& program : programs) {
        figures.push_back(
            {.what = "system calls of the " + program.name + " in 30 s, expanded and idle",
             .value = systemCallsWhile(desktop.display(), program.pid, idleTime),
             .target = 0,
             .unit = ""});
    }
    return figures;
}

} // namespace
} // namespace pelistra::testing

int main() {
    using namespace pelistra::testing;
    try {
        std::vector<Figure> figures{collapseTime()};
        for (const auto& measure : {layoutTimes, idleCosts}) {
            const std::vector<Figure> more = measure();
            figures.insert(figures.end(), more.begin(), more.end());
        }
        print(figures);
    } catch (const std::exception& failure) {
        std::cerr << "pelistra-desktop-figures: " << failure.what() << "\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

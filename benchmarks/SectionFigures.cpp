#include "benchmarks/SectionFigures.h"

#include "benchmarks/ManyIcons.h"
#include "tests/desktop/harness/Desktop.h"

#include <algorithm>
#include <thread>

namespace pelistra::testing {

namespace {

constexpr std::size_t fewIcons = 30;
constexpr std::size_t manyIcons = 500;
// Items left of the bar's edge stand there in whole slots, so a small change may move none of them.
constexpr std::uint32_t widerThanSixIcons = 200;
constexpr std::uint32_t iconWidth = 28;
constexpr double oneFrame = 16;

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
    std::this_thread::sleep_for(longerThanLatch);
    return time.count();
}

void collapse(const Effort& effort, Section& section) {
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
    for (int round = 0; round < effort.rounds; ++round) {
        times.push_back(timeOfOneCollapse(desktop));
    }
    section.figures.push_back({.what = "button release to 30 icons off the screen",
                               .spread = spreadOf(times),
                               .unit = "ms",
                               .limit = atMost(oneFrame)});
}

void layOutAnew(const Effort& effort, Section& section) {
    Desktop desktop({.width = 1920, .height = 1080});
    desktop.startBar();
    ManyIcons icons(desktop.display().name(), manyIcons);
    require(waitFor([&] { return desktop.x().barItems().size() == manyIcons; }),
            "not every icon is docked");
    const std::vector<xcb_window_t> order = desktop.x().barItems();
    const pid_t bar = desktop.bar().process().pid();
    const pid_t server = desktop.display().serverPid();
    std::vector<double> times;
    std::vector<double> processor;
    std::vector<double> serverProcessor;
    for (int round = 0; round < effort.rounds; ++round) {
        const int before = desktop.x().frame(order.front()).value().x;
        const double barBefore = costOfGroup(bar).processorMilliseconds;
        const double serverBefore = costOfGroup(server).processorMilliseconds;
        const auto begin = Clock::now();
        icons.askForWidth(order.back(), round % 2 == 0 ? widerThanSixIcons : iconWidth);
        while (desktop.x().frame(order.front()).value().x == before) {
            require(Clock::now() < begin + patience, "the bar does not lay out");
        }
        times.push_back(Milliseconds(Clock::now() - begin).count());
        serverProcessor.push_back(costOfGroup(server).processorMilliseconds - serverBefore);
        std::this_thread::sleep_for(longerThanLatch);
        processor.push_back(costOfGroup(bar).processorMilliseconds - barBefore);
    }
    constexpr double milliseconds = 5;
    section.figures.push_back({.what = "500 icons laid out anew: the bar's processor time",
                               .spread = spreadOf(processor),
                               .unit = "ms",
                               .limit = below(milliseconds)});
    section.figures.push_back(
        {.what = "500 icons laid out anew: resize request to the furthest icon moved",
         .spread = spreadOf(times),
         .unit = "ms"});
    section.figures.push_back({.what = "500 icons laid out anew: the X server's processor time",
                               .spread = spreadOf(serverProcessor),
                               .unit = "ms"});
}

} // namespace

Section sectionFigures(const Effort& effort) {
    Section section{.title = "Hiding", .figures = {}};
    collapse(effort, section);
    layOutAnew(effort, section);
    return section;
}

} // namespace pelistra::testing

#include "benchmarks/RowFigures.h"

#include "benchmarks/ManyIcons.h"
#include "benchmarks/OpenRow.h"

#include <thread>

namespace pelistra::testing {

namespace {

constexpr std::size_t fewIcons = 50;
constexpr std::size_t manyIcons = 400;
constexpr PrivateDisplay::Options screen{.width = 1920, .height = 1080};

void waitForIcons(Desktop& desktop, std::size_t count) {
    require(waitFor([&] { return desktop.hiddenSection().size() == count; }),
            "not every icon is docked");
}

void timeOpenings(const Effort& effort, Section& section) {
    Desktop desktop(screen);
    desktop.startBar();
    const ManyIcons icons(desktop.display().name(), fewIcons);
    std::vector<double> first;
    std::vector<double> later;
    std::optional<Picture> picture;
    WindowFrame frame;
    for (int start = 0; start <= effort.starts; ++start) {
        desktop.startOrganiser();
        waitForIcons(desktop, fewIcons);
        OpenRow row(desktop);
        row.collapse();
        // The first start only shows what to wait for.
        if (!picture) {
            row.open();
            picture = row.settledPicture();
            frame = row.frame();
            continue;
        }
        first.push_back(row.timeToShow(frame, *picture));
        while (static_cast<int>(later.size()) * effort.starts < effort.rounds * start) {
            row.close();
            std::this_thread::sleep_for(longerThanLatch);
            later.push_back(row.timeToShow(frame, *picture));
        }
        row.close();
    }
    constexpr double firstLimit = 50;
    constexpr double laterLimit = 16;
    section.figures.push_back({.what = "arrow click to the whole row of 50 on the screen, first",
                               .spread = spreadOf(first),
                               .unit = "ms",
                               .limit = atMost(firstLimit)});
    section.figures.push_back({.what = "arrow click to the whole row of 50 on the screen, later",
                               .spread = spreadOf(later),
                               .unit = "ms",
                               .limit = atMost(laterLimit)});
}

// Turns the wheel as often as a good mouse reports, for that time.
void turnWheel(Desktop& desktop, const WindowFrame& frame, std::chrono::milliseconds time) {
    XClient client(desktop.display().name());
    UserInput input(client);
    constexpr std::chrono::milliseconds report{8};
    constexpr int turnBackAfter = 60;
    auto next = Clock::now();
    const auto end = next + time;
    for (int notch = 0; next < end; ++notch) {
        const bool back = notch / turnBackAfter % 2 == 1;
        input.turnWheel(centre(frame), back ? UserInput::Wheel::Up : UserInput::Wheel::Down, 1);
        next += report;
        std::this_thread::sleep_until(next);
    }
}

void scroll(const Effort& effort, Section& section) {
    Desktop desktop(screen);
    desktop.startBar();
    const ManyIcons icons(desktop.display().name(), manyIcons);
    desktop.startOrganiser();
    waitForIcons(desktop, manyIcons);
    OpenRow row(desktop);
    row.collapse();
    row.open();
    static_cast<void>(row.settledPicture());
    const WindowFrame frame = row.frame();
    const pid_t organiser = desktop.organiser().process().pid();
    constexpr std::chrono::milliseconds time{1000};
    constexpr int fewerRounds = 3;
    std::vector<double> frames;
    std::vector<double> processor;
    for (int round = 0; round < effort.rounds / fewerRounds; ++round) {
        row.watch().forget();
        const double spentBefore = costOfGroup(organiser).processorMilliseconds;
        std::thread wheel([&] { turnWheel(desktop, frame, time); });
        frames.push_back(static_cast<double>(row.watch().framesWithin(frame, time)));
        wheel.join();
        const double spent = costOfGroup(organiser).processorMilliseconds - spentBefore;
        processor.push_back(spent / frames.back());
    }
    constexpr double fluent = 60;
    section.figures.push_back({.what = "frames a second while a row of 400 scrolls",
                               .spread = spreadOf(frames),
                               .unit = "",
                               .limit = atLeast(fluent)});
    section.figures.push_back({.what = "the organiser's processor time for one of these frames",
                               .spread = spreadOf(processor),
                               .unit = "ms"});
    static_cast<void>(row.settledPicture());
    row.watch().forget();
    // The list is refreshed every two seconds.
    constexpr std::chrono::milliseconds threeRefreshes{6'500};
    const auto repaints = static_cast<double>(row.watch().framesWithin(frame, threeRefreshes));
    section.figures.push_back({.what = "repaints of that row in three refreshes without a change",
                               .spread = spreadOf({repaints}),
                               .unit = "",
                               .limit = atMost(0)});
}

} // namespace

Section rowFigures(const Effort& effort) {
    Section section{.title = "The second row", .figures = {}};
    timeOpenings(effort, section);
    scroll(effort, section);
    return section;
}

Section rowMemoryFigures(const Effort& effort) {
    Desktop desktop(screen);
    desktop.startBar();
    const ManyIcons icons(desktop.display().name(), fewIcons);
    desktop.startOrganiser();
    waitForIcons(desktop, fewIcons);
    OpenRow row(desktop);
    row.collapse();
    const auto openAndClose = [&](int times) {
        for (int opening = 0; opening < times; ++opening) {
            const auto begin = Clock::now();
            row.open();
            row.close();
            // Two clicks that follow one another faster are a double click.
            constexpr std::chrono::milliseconds longerThanDoubleClick{450};
            std::this_thread::sleep_until(begin + longerThanDoubleClick);
        }
    };
    // What a first use loads is no growth.
    constexpr int firstUse = 20;
    openAndClose(firstUse);
    const pid_t organiser = desktop.organiser().process().pid();
    const Memory before = settledMemoryOf(organiser);
    openAndClose(effort.openings);
    const Memory after = settledMemoryOf(organiser);
    constexpr double noise = 0.5;
    return {.title = "The second row's memory",
            .figures = {{.what = "own memory of the organiser after 20 openings",
                         .spread = spreadOf({before.own}),
                         .unit = "MiB"},
                        {.what = "growth by " + std::to_string(effort.openings) + " more",
                         .spread = spreadOf({after.own - before.own}),
                         .unit = "MiB",
                         .limit = atMost(noise)}}};
}

} // namespace pelistra::testing

#include "benchmarks/TrayReaderFigures.h"

#include "benchmarks/ManyIcons.h"
#include "platform/linux/icons/TrayReader.h"
#include "platform/linux/icons/X11ScreenCapture.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/Desktop.h"

#include <chrono>
#include <memory>
#include <thread>
#include <variant>

namespace pelistra::testing {

namespace {

constexpr std::size_t manyIcons = 1000;
constexpr std::size_t fewIcons = 50;

void lookAtMany(const Effort& effort, Section& section) {
    Desktop desktop({.width = 1920, .height = 1080});
    desktop.startBar();
    const ManyIcons icons(desktop.display().name(), manyIcons);
    require(waitFor([&] { return desktop.x().barItems().size() == manyIcons; }),
            "not every icon is docked");
    const auto connection = connect(desktop.display());
    std::vector<double> again;
    std::vector<double> processor;
    std::vector<double> wall;
    std::vector<double> roundTrips;
    for (int round = 0; round < effort.rounds; ++round) {
        // A new one has nothing to remember.
        linux::TrayReader reader(*connection);
        const auto spentBefore = ownProcessorTime();
        const auto begin = Clock::now();
        const auto view = reader.read();
        wall.push_back(Milliseconds(Clock::now() - begin).count());
        processor.push_back((ownProcessorTime() - spentBefore).count());
        require(view && view->icons.size() == manyIcons, "the look misses icons");
        roundTrips.push_back(view->roundTrips);
        constexpr std::chrono::milliseconds nextTime{5};
        std::this_thread::sleep_for(nextTime);
        const auto unchanged = reader.read();
        require(unchanged.has_value(), "the second look sees nothing");
        again.push_back(unchanged->roundTrips);
    }
    constexpr double milliseconds = 5;
    section.figures.push_back({.what = "one look at 1,000 icons: round trips",
                               .spread = spreadOf(roundTrips),
                               .unit = "",
                               .limit = atMost(linux::TrayReader::mostRoundTrips)});
    section.figures.push_back({.what = "another look at the same icons: round trips",
                               .spread = spreadOf(again),
                               .unit = ""});
    section.figures.push_back({.what = "one look at 1,000 icons: own processor time",
                               .spread = spreadOf(processor),
                               .unit = "ms",
                               .limit = below(milliseconds)});
    section.figures.push_back({.what = "one look at 1,000 icons: from begin to end",
                               .spread = spreadOf(wall),
                               .unit = "ms"});
}

void takePictures(const Effort& effort, Section& section) {
    Desktop desktop({.width = 1920, .height = 1080});
    desktop.startBar();
    const ManyIcons icons(desktop.display().name(), fewIcons);
    require(waitFor([&] { return desktop.x().barItems().size() == fewIcons; }),
            "not every icon is docked");
    const auto connection = connect(desktop.display());
    linux::X11ScreenCapture capture(*connection);
    const auto take = [&](xcb_window_t window) {
        return std::holds_alternative<std::unique_ptr<Bitmap>>(capture.captureWindow(
            window, windowImageBoundsIgnoreFraming | windowImageBestResolution));
    };
    std::vector<double> times;
    for (int round = 0; round < effort.rounds; ++round) {
        const auto begin = Clock::now();
        for (const xcb_window_t window : icons.windows()) {
            require(take(window), "no picture of an icon");
        }
        times.push_back(Milliseconds(Clock::now() - begin).count());
    }
    constexpr double milliseconds = 50;
    section.figures.push_back({.what = "pictures of 50 icons",
                               .spread = spreadOf(times),
                               .unit = "ms",
                               .limit = below(milliseconds)});
}

} // namespace

Section trayReaderFigures(const Effort& effort) {
    Section section{.title = "Looking at the tray", .figures = {}};
    lookAtMany(effort, section);
    takePictures(effort, section);
    return section;
}

} // namespace pelistra::testing

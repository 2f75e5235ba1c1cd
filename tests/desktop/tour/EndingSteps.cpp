#include "tests/desktop/tour/Tour.h"

#include <chrono>
#include <csignal>

namespace pelistra::testing {

namespace {

Seen killWhileCollapsed(Desktop& desktop) {
    const bool collapsed = desktop.clickControl() && desktop.waitUntilCollapsed();
    const std::size_t icons = desktop.items().size() - 2;
    desktop.organiser().process().signal(SIGKILL);
    const auto begin = std::chrono::steady_clock::now();
    const bool back =
        waitFor([&] { return desktop.items().size() == icons && desktop.everythingIsOnScreen(); });
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begin);
    return {.ok = collapsed && back,
            .text = describe(desktop.items()) + " on the screen " + std::to_string(time.count()) +
                    " ms later"};
}

Seen startCollapsed(Desktop& desktop) {
    desktop.startOrganiser({"--start-collapsed"});
    const bool ok = desktop.waitUntilCollapsed();
    return {.ok = ok,
            .text = "hidden: " + names(desktop.hiddenSection()) +
                    "; shown: " + names(desktop.visibleSection())};
}

Seen endOrganiser(Desktop& desktop) {
    const std::size_t icons = desktop.items().size() - 2;
    const ExitStatus status = desktop.organiser().process().terminate();
    const bool back =
        waitFor([&] { return desktop.items().size() == icons && desktop.everythingIsOnScreen(); });
    return {.ok = status == ExitStatus{.status = 0} && back,
            .text = describe(desktop.items()) + " on the screen"};
}

Seen restartEverything(Desktop& desktop, const std::vector<std::string>& order) {
    desktop.endPrograms();
    desktop.bar().process().terminate();
    desktop.startBar();
    desktop.startOrganiser();
    for (const RealTrayProgram& program : realTrayPrograms()) {
        desktop.startProgram(program.program);
    }
    const bool ok = waitFor([&] { return desktop.order() == order; });
    return {.ok = ok, .text = names(desktop.items())};
}

} // namespace

void walkEndings(Tour& tour) {
    Desktop& desktop = tour.desktop();
    const std::vector<std::string> order = desktop.order();
    tour.step("Collapse, then kill the organiser (SIGKILL)",
              [&] { return killWhileCollapsed(desktop); });
    tour.step("Start the organiser with --start-collapsed",
              [&] { return startCollapsed(desktop); });
    tour.step("End the organiser (SIGTERM)", [&] { return endOrganiser(desktop); });
    tour.step("End and start everything again", [&] { return restartEverything(desktop, order); });
}

} // namespace pelistra::testing

#include "tests/desktop/tour/Tour.h"

#include <algorithm>

namespace pelistra::testing {

namespace {

constexpr int barHeight = 28;
constexpr std::size_t leastIconPixels = 40;

Seen startTheBar(Desktop& desktop) {
    desktop.startBar();
    XClient& x = desktop.x();
    const WindowFrame top{.width = x.rootFrame().width, .height = barHeight};
    const bool ok = waitFor([&] {
        return x.frame(x.barWindow()) == top && x.isViewable(x.barWindow()) &&
               x.words(x.root(), "_NET_WORKAREA").at(1) == barHeight;
    });
    const auto frame = x.frame(x.barWindow());
    return {.ok = ok,
            .text = "bar " + (frame ? describe(*frame) : "absent") + ", work area begins at y " +
                    std::to_string(x.words(x.root(), "_NET_WORKAREA").at(1))};
}

// How many pixels of an item differ from the bare bar.
std::size_t paintedPixels(Desktop& desktop, const Desktop::Item& item) {
    const WindowFrame bare{
        .x = 0, .y = item.frame.y, .width = item.frame.width, .height = item.frame.height};
    return desktop.x().capture(item.frame).differingPixels(desktop.x().capture(bare));
}

Seen startAProgram(Desktop& desktop, const RealTrayProgram& program) {
    desktop.startProgram(program.program);
    Desktop::Item item;
    const bool ok = waitFor([&] {
        item = desktop.item(program.className).value_or(Desktop::Item{});
        return item.frame.width == barHeight && item.frame.height == barHeight &&
               desktop.x().isViewable(item.window) &&
               paintedPixels(desktop, item) > leastIconPixels;
    });
    return {.ok = ok,
            .text = describe(item.frame) + ", " + std::to_string(paintedPixels(desktop, item)) +
                    " of its pixels painted"};
}

Seen startTheOrganiser(Desktop& desktop) {
    desktop.startOrganiser();
    const bool ok = waitFor([&] {
        const auto control = desktop.organiser().controlFrame();
        const auto divider = desktop.organiser().dividerFrame();
        return control && divider && divider->right() == control->x && divider->width == 14 &&
               control->width == barHeight && desktop.everythingIsOnScreen();
    });
    return {.ok = ok, .text = names(desktop.items())};
}

Seen dragIntoVisible(Desktop& desktop, const std::string& className) {
    const bool ok = desktop.dragIntoVisibleSection(className);
    return {.ok = ok,
            .text = "left of the divider: " + names(desktop.hiddenSection()) +
                    "; right of it: " + names(desktop.visibleSection())};
}

} // namespace

void walkArranging(Tour& tour) {
    Desktop& desktop = tour.desktop();
    tour.step("Start the menu bar", [&] { return startTheBar(desktop); });
    for (const RealTrayProgram& program : realTrayPrograms()) {
        tour.step("Start " + program.program + " (" + program.toolkit + ")",
                  [&] { return startAProgram(desktop, program); });
    }
    tour.step("Start the organiser", [&] { return startTheOrganiser(desktop); });
    for (const std::string className : {"Pnmixer", "Volumeicon"}) {
        tour.step("Super-drag " + className + " across the divider",
                  [&] { return dragIntoVisible(desktop, className); });
    }
}

} // namespace pelistra::testing

#include "platform/linux/icons/X11ScreenCapture.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/tour/ItemList.h"
#include "tests/desktop/tour/Tour.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <stdexcept>

namespace pelistra::testing {

namespace {

// Two refreshes of the list while collapsed, and a little for a busy machine.
constexpr std::chrono::milliseconds twoRefreshes{4'000 + 500};

Seen collapse(Desktop& desktop) {
    const auto shownBefore = placesOf(desktop.visibleSection());
    const bool clicked = desktop.clickControl();
    const PointerState pointer = desktop.x().pointer();
    const bool hidden = clicked && desktop.waitUntilCollapsed();
    const PointerState after = desktop.x().pointer();
    // Its place only: the button's release may still be on its way.
    const bool pointerStayed = after.x == pointer.x && after.y == pointer.y;
    const bool sameShown =
        waitFor([&] { return placesOf(desktop.visibleSection()) == shownBefore; });
    return {.ok = hidden && pointerStayed && sameShown,
            .text = "hidden: " + describe(desktop.hiddenSection()) +
                    (hidden ? ", all still mapped; shown " : ", not all hidden; shown ") +
                    (sameShown ? "as before: " : "otherwise than before: ") +
                    names(desktop.visibleSection()) + "; pointer at " +
                    describe(desktop.x().pointer()) + (pointerStayed ? "" : ", moved")};
}

// What the program lists against what the X server and the kernel say.
Seen compareList(Desktop& desktop) {
    const std::vector<ListedIcon> listed = listItems(desktop);
    const std::vector<Desktop::Item> seen = desktop.items();
    const bool same =
        std::ranges::equal(listed, seen, [](const ListedIcon& icon, const Desktop::Item& item) {
            return icon.id == item.window && icon.frame == item.frame &&
                   icon.isHidden == (item.frame.right() <= 0);
        });
    std::size_t processes = 0;
    for (const RealTrayProgram& program : realTrayPrograms()) {
        const Desktop::Item item = desktop.item(program.className).value_or(Desktop::Item{});
        const auto entry = std::ranges::find(listed, item.window, &ListedIcon::id);
        const pid_t process = desktop.program(program.program).pid();
        processes += entry != listed.end() && entry->process == process ? 1U : 0U;
    }
    const auto hidden = std::ranges::count_if(listed, &ListedIcon::isHidden);
    return {.ok = same && processes == realTrayPrograms().size() &&
                  static_cast<std::size_t>(hidden) == desktop.hiddenSection().size() && hidden > 0,
            .text = std::to_string(listed.size()) + " items listed, " + std::to_string(hidden) +
                    " of them hidden; windows, frames and order " +
                    (same ? "as on the X server" : "differ from the X server") + ", " +
                    std::to_string(processes) + " of " + std::to_string(realTrayPrograms().size()) +
                    " processes as started"};
}

std::size_t coloursOf(const linux::Pixels& picture) {
    constexpr std::uint32_t alpha = 0xff000000;
    std::set<std::uint32_t> colours;
    std::ranges::copy_if(picture.values, std::inserter(colours, colours.end()),
                         [](std::uint32_t value) { return (value & alpha) != 0; });
    return colours.size();
}

// Pictures of icons that lie off the screen, by the code that the organiser takes them with.
Seen savePictures(Tour& tour) {
    Desktop& desktop = tour.desktop();
    const auto connection = connect(desktop.display());
    linux::X11ScreenCapture capture(*connection);
    const std::filesystem::path folder = tour.folder("icons");
    constexpr std::size_t leastColours = 4;
    bool ok = !desktop.hiddenSection().empty();
    std::string text;
    for (const Desktop::Item& item : desktop.hiddenSection()) {
        const linux::Pixels picture = capture.pixelsOf(item.window);
        const std::size_t colours = coloursOf(picture);
        ok = ok && item.frame.right() <= 0 && colours >= leastColours &&
             picture.width == item.frame.width && picture.height == item.frame.height;
        Picture(picture.width, picture.height, picture.values)
            .savePng(folder / (item.className + ".png"));
        text += (text.empty() ? "" : ", ") + item.className + " " + std::to_string(picture.width) +
                "x" + std::to_string(picture.height) + " with " + std::to_string(colours) +
                " colours";
    }
    return {.ok = ok, .text = text + "; in " + folder.string()};
}

// The organiser's own list, as the open row says it, follows a program that comes or goes.
Seen followProgram(Tour& tour, std::size_t expected, const std::string& name, bool isThere) {
    const auto begin = std::chrono::steady_clock::now();
    SecondRowUnderTest& row = tour.row();
    const bool followed = waitFor(
        [&] { return row.icons().size() == expected && row.icon(name).has_value() == isThere; },
        twoRefreshes);
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begin);
    return {.ok = followed && tour.desktop().organiser().isCollapsed(),
            .text =
                "after " + std::to_string(time.count()) + " ms the row says " + row.heardNames()};
}

Seen endProgram(Tour& tour, const RealTrayProgram& program, const std::string& name) {
    Desktop& desktop = tour.desktop();
    const std::size_t before = desktop.hiddenSection().size();
    if (!tour.row().open()) {
        return {.ok = false, .text = "the row does not open"};
    }
    const bool wasThere = tour.row().icon(name).has_value();
    desktop.endProgram(program.program);
    Seen seen = followProgram(tour, before - 1, name, false);
    seen.ok = seen.ok && wasThere;
    return seen;
}

Seen startProgram(Tour& tour, const RealTrayProgram& program, const std::string& name) {
    Desktop& desktop = tour.desktop();
    const std::size_t before = desktop.hiddenSection().size();
    desktop.startProgram(program.program);
    Seen seen = followProgram(tour, before + 1, name, true);
    SecondRowUnderTest::letTheArrowRest();
    const bool closed = desktop.clickControl() && waitFor([&] { return !tour.row().isOpen(); });
    seen.ok = seen.ok && closed;
    seen.text += closed ? "; a click on the arrow closes it" : "; it stays open";
    return seen;
}

} // namespace

void walkDiscovery(Tour& tour) {
    Desktop& desktop = tour.desktop();
    const RealTrayProgram& program = realTrayProgram("qlipper");
    const std::string name = "Qlipper";
    tour.step("Left-click the arrow", [&] { return collapse(desktop); });
    tour.step("List the items (pelistra --list-items --json)",
              [&] { return compareList(desktop); });
    tour.step("Save a picture of every hidden icon", [&] { return savePictures(tour); });
    tour.step("Open the row and end qlipper", [&] { return endProgram(tour, program, name); });
    tour.step("Start qlipper again", [&] { return startProgram(tour, program, name); });
}

} // namespace pelistra::testing

#include "tests/desktop/tour/Tour.h"

#include <array>

namespace pelistra::testing {

namespace {

struct HiddenProgram {
    const char* className;
    // As the row names it.
    const char* name;
    const char* toolkit;
};

// A click of the primary button would do something else in all but the second.
constexpr std::array<HiddenProgram, 4> programs{{
    {.className = "Nabi", .name = "nabi", .toolkit = "GTK 2"},
    {.className = "Xfce4-clipman", .name = "Clipboard Manager", .toolkit = "GTK 3"},
    {.className = "copyq", .name = "CopyQ", .toolkit = "Qt"},
    {.className = "QmidiNet", .name = "QmidiNet", .toolkit = "Qt 6"},
}};

Seen collapseAndOpen(Tour& tour) {
    SecondRowUnderTest::letTheArrowRest();
    const bool collapsed = tour.desktop().clickControl() && tour.desktop().waitUntilCollapsed();
    const bool opened = collapsed && tour.row().open();
    return {.ok = opened,
            .text = opened ? "the row is " + describe(*tour.row().frame()) : "no row"};
}

// Its own menu under its icon on the real bar.
Seen openMenu(Tour& tour, const HiddenProgram& program) {
    Desktop& desktop = tour.desktop();
    XClient& x = desktop.x();
    const auto icon =
        tour.row().isOpen() || tour.row().open() ? tour.row().icon(program.name) : std::nullopt;
    if (!icon) {
        return {.ok = false, .text = "no such icon in the row"};
    }
    desktop.input().click(centre(icon->frame), UserInput::Button::Right);
    const PointerState pointer = x.pointer();
    const bool revealed = waitFor([&] {
        const auto item = desktop.item(program.className);
        return item && item->frame.x >= 0 && item->frame.right() <= x.rootFrame().width;
    });
    const bool opened = waitFor([&] { return !x.shownMenus().empty(); });
    const bool stayed = x.pointer() == pointer;
    const bool closed = !tour.row().isOpen();
    const auto item = desktop.item(program.className);
    const auto menus = x.shownMenus();
    const auto menu = menus.empty() ? std::nullopt : x.frame(menus.front());
    return {.ok = revealed && opened && stayed && closed,
            .text = "icon " + (item ? describe(item->frame) : "absent") + ", its menu " +
                    (menu ? describe(*menu) : "absent") + ", pointer at " + describe(pointer) +
                    (stayed ? " as before" : " has moved") +
                    (closed ? ", the row is closed" : ", the row is open")};
}

Seen putBack(Tour& tour) {
    Desktop& desktop = tour.desktop();
    // A click outside closes the menu; the next one on the arrow ends the reveal.
    constexpr RootPoint outside{.x = 300, .y = 700};
    desktop.input().click(outside);
    const bool menuClosed = waitFor([&] { return desktop.x().shownMenus().empty(); });
    SecondRowUnderTest::letTheArrowRest();
    const bool clicked = desktop.clickControl();
    const bool collapsed = clicked && desktop.waitUntilCollapsed();
    return {.ok = menuClosed && collapsed && !tour.row().isOpen(),
            .text = std::string(menuClosed ? "the menu is closed" : "the menu stays") +
                    ", hidden again: " + names(desktop.hiddenSection())};
}

Seen expand(Tour& tour, const std::vector<PlacedProgram>& before) {
    SecondRowUnderTest::letTheArrowRest();
    Desktop& desktop = tour.desktop();
    const bool shown =
        desktop.clickControl(UserInput::Button::Left, {keys::alt}) && desktop.waitUntilExpanded();
    const bool same = waitFor([&] { return placesOf(desktop.items()) == before; });
    return {.ok = shown && same,
            .text = describe(desktop.items()) +
                    (same ? ", each where it was" : ", not where they were")};
}

} // namespace

void walkMenus(Tour& tour) {
    const auto arranged = placesOf(tour.desktop().items());
    tour.step("Collapse and open the row", [&] { return collapseAndOpen(tour); });
    for (const HiddenProgram& program : programs) {
        const std::string name = program.name;
        tour.step("Right-click " + name + " (" + program.toolkit + ") in the row",
                  [&] { return openMenu(tour, program); });
        tour.step("Close the menu of " + name + " and click the arrow",
                  [&] { return putBack(tour); });
    }
    tour.step("Alt-click the arrow", [&] { return expand(tour, arranged); });
}

} // namespace pelistra::testing

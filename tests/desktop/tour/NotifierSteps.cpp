// An icon on the session bus: the same road as that of a window.

#include "tests/desktop/harness/NotifierClient.h"
#include "tests/desktop/tour/Tour.h"

namespace pelistra::testing {

namespace {

constexpr const char* program = "copyq";
constexpr const char* nameInRow = "CopyQ";

Seen start(Tour& tour) {
    Desktop& desktop = tour.desktop();
    desktop.startBar({}, Desktop::Icons::All);
    const bool watched =
        waitForWatcher(desktop.display().environment().at("DBUS_SESSION_BUS_ADDRESS"));
    desktop.startProgram(program);
    OrganiserUnderTest::completeOnboarding(desktop.display());
    desktop.startOrganiser();
    const auto item = desktop.item(program);
    // The window is the bar's own: its program has none in the tray.
    const bool own =
        item && desktop.x().parent(desktop.x().parent(item->window)) == desktop.x().barWindow();
    return {.ok = watched && own && desktop.x().isViewable(item->window),
            .text = item ? "its icon is " + describe(item->frame) : "no icon"};
}

Seen rest(Tour& tour) {
    Desktop& desktop = tour.desktop();
    desktop.input().moveTo(centre(desktop.item(program).value().frame));
    std::string said;
    const bool shown = waitFor([&] {
        for (const xcb_window_t window : desktop.x().shownTopLevels()) {
            if (desktop.x().hasAtom(window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_TOOLTIP")) {
                said = desktop.x().title(window);
            }
        }
        return !said.empty();
    });
    return {.ok = shown, .text = shown ? "its tool tip says " + said : "no tool tip"};
}

Seen lookAtMenu(Tour& tour) {
    XClient& x = tour.desktop().x();
    const bool opened = waitFor([&] { return !x.shownMenus().empty(); });
    const auto menus = x.shownMenus();
    const auto frame = menus.empty() ? std::nullopt : x.frame(menus.front());
    const int barHeight = x.frame(x.barWindow()).value_or(WindowFrame{}).height;
    return {.ok = opened && frame && frame->y == barHeight,
            .text = frame ? "its menu is " + describe(*frame) : "no menu"};
}

Seen openMenu(Tour& tour) {
    tour.desktop().input().click(centre(tour.desktop().item(program).value().frame),
                                 UserInput::Button::Right);
    return lookAtMenu(tour);
}

Seen closeMenu(Tour& tour) {
    tour.desktop().input().tapKey(keys::escape);
    const bool closed = waitFor([&] { return tour.desktop().x().shownMenus().empty(); });
    return {.ok = closed, .text = closed ? "the menu is closed" : "the menu stays"};
}

Seen hide(Tour& tour) {
    SecondRowUnderTest::letTheArrowRest();
    const bool hidden =
        tour.desktop().clickControl() && tour.desktop().waitUntilCollapsed() && tour.row().open();
    return {.ok = hidden && tour.row().icon(nameInRow),
            .text = hidden ? "the row has " + tour.row().heardNames() : "no row"};
}

Seen openMenuInRow(Tour& tour) {
    tour.desktop().input().click(centre(tour.row().icon(nameInRow).value().frame),
                                 UserInput::Button::Right);
    return lookAtMenu(tour);
}

} // namespace

void walkNotifiers(Tour& tour) {
    tour.beginDesktop({});
    tour.step("Start CopyQ, whose icon comes over the session bus", [&] { return start(tour); });
    tour.step("Rest on that icon", [&] { return rest(tour); });
    tour.step("Right-click that icon", [&] { return openMenu(tour); });
    tour.step("Press Escape in its menu", [&] { return closeMenu(tour); });
    tour.step("Hide that icon and open the row", [&] { return hide(tour); });
    tour.step("Right-click that icon in the row", [&] { return openMenuInRow(tour); });
    tour.step("Press Escape in that menu", [&] { return closeMenu(tour); });
}

} // namespace pelistra::testing

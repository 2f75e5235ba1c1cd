#include "tests/desktop/tour/ItemList.h"
#include "tests/desktop/tour/Tour.h"

#include <algorithm>

namespace pelistra::testing {

namespace {

constexpr int distanceBelowArrow = 6;
constexpr int sideDistance = 8;
constexpr RootPoint elsewhere{.x = 300, .y = 500};

bool isNotBlank(const Picture& picture) {
    constexpr std::size_t leastColours = 3;
    return picture.colours() >= leastColours;
}

// The row's names are those of the hidden items, in the order of the bar.
bool saysTheHiddenItems(Tour& tour) {
    std::vector<ListedIcon> hidden = listItems(tour.desktop());
    std::erase_if(hidden, [](const ListedIcon& icon) { return !icon.isHidden; });
    return std::ranges::equal(tour.row().icons(), hidden,
                              [](const SecondRowUnderTest::Icon& icon, const ListedIcon& item) {
                                  return icon.name.find(item.displayName) != std::string::npos;
                              });
}

Seen openRow(Tour& tour) {
    Desktop& desktop = tour.desktop();
    SecondRowUnderTest& row = tour.row();
    const xcb_window_t focus = desktop.x().focus();
    const auto control = desktop.organiser().controlFrame();
    if (!control) {
        return {.ok = false, .text = "no arrow"};
    }
    const Picture arrow = desktop.x().capture(*control);
    const bool opened = row.open();
    const PointerState pointer = desktop.x().pointer();
    const auto frame = row.frame();
    if (!opened || !frame) {
        return {.ok = false, .text = "no row"};
    }
    const int screenRight = desktop.x().rootFrame().right();
    const int place =
        std::min(control->midX() - (frame->width / 2), screenRight - sideDistance - frame->width);
    const bool isUnderTheArrow =
        frame->x == place && frame->y == control->y + control->height + distanceBelowArrow;
    const bool isOnTop = desktop.x().shownTopLevels().back() == *row.window();
    const bool pointsUp = waitFor([&] { return desktop.x().capture(*control) != arrow; });
    const bool everyIcon = std::ranges::all_of(row.icons(), [&](const auto& icon) {
        return waitFor([&] { return isNotBlank(desktop.x().capture(icon.frame)); });
    });
    const bool sameNames = saysTheHiddenItems(tour);
    const bool stayed = desktop.x().pointer() == pointer && desktop.x().focus() == focus;
    return {.ok = isUnderTheArrow && isOnTop && pointsUp && everyIcon && sameNames && stayed,
            .text = describe(*frame) + (isUnderTheArrow ? ", under the arrow" : ", out of place") +
                    (isOnTop ? ", on top" : ", covered") +
                    (pointsUp ? ", the arrow has changed" : ", the same arrow") +
                    (everyIcon ? ", no picture blank" : ", blank pictures") +
                    (sameNames ? "" : ", other names than the list") +
                    (stayed ? ", focus and pointer as before" : ", focus or pointer moved") + ": " +
                    row.heardNames()};
}

Seen showHelp(Tour& tour) {
    Desktop& desktop = tour.desktop();
    const auto icons = tour.row().icons();
    if (icons.empty()) {
        return {.ok = false, .text = "no icons"};
    }
    desktop.input().moveTo(centre(icons.front().frame));
    desktop.input().moveTo(
        {.x = icons.front().frame.midX() + 2, .y = icons.front().frame.midY() + 1});
    const auto helps = [&] {
        std::vector<xcb_window_t> windows = desktop.x().shownTopLevels();
        std::erase_if(windows, [&](xcb_window_t window) {
            return !desktop.x().hasAtom(window, "_NET_WM_WINDOW_TYPE",
                                        "_NET_WM_WINDOW_TYPE_TOOLTIP");
        });
        return windows;
    };
    const bool shown = waitFor([&] { return !helps().empty(); });
    const auto frame = shown ? desktop.x().frame(helps().front()) : std::nullopt;
    return {.ok = shown && tour.row().isOpen(),
            .text = frame ? "help text " + describe(*frame) : "no help text"};
}

Seen clickElsewhere(Tour& tour) {
    tour.desktop().input().click(elsewhere);
    const bool closed = waitFor([&] { return !tour.row().isOpen(); });
    return {.ok = closed && tour.desktop().organiser().isCollapsed(),
            .text =
                closed ? "the row is closed, the section still collapsed" : "the row stays open"};
}

Seen openApplication(Tour& tour) {
    Desktop& desktop = tour.desktop();
    const auto before = desktop.x().managedWindows();
    const auto icon = tour.row().open() ? tour.row().icon("CopyQ") : std::nullopt;
    if (!icon) {
        return {.ok = false, .text = "no such icon in the row"};
    }
    desktop.input().click(centre(icon->frame));
    std::optional<xcb_window_t> opened;
    const bool shown = waitFor([&] {
        const auto now = desktop.x().managedWindows();
        const auto found = std::ranges::find_if(now, [&](xcb_window_t window) {
            return std::ranges::count(before, window) == 0 &&
                   desktop.x().windowClass(window).second == "copyq" &&
                   desktop.x().isViewable(window);
        });
        opened = found == now.end() ? std::nullopt : std::optional(*found);
        return opened.has_value();
    });
    const bool closed = waitFor([&] { return !tour.row().isOpen(); });
    return {.ok = shown && closed && desktop.organiser().isCollapsed(),
            .text = shown ? "\"" + desktop.x().title(*opened) + "\" has opened, the row is closed"
                          : "no window of the program has come"};
}

Seen arrange(Tour& tour) {
    Desktop& desktop = tour.desktop();
    const auto button = tour.row().open() ? tour.row().arrangeButton() : std::nullopt;
    if (!button) {
        return {.ok = false, .text = "no such button"};
    }
    desktop.input().click(centre(*button));
    const bool expanded = desktop.waitUntilExpanded() && !tour.row().isOpen();
    return {.ok = expanded,
            .text = describe(desktop.items()) + " on the screen, the row is closed"};
}

} // namespace

void walkRow(Tour& tour) {
    tour.step("Left-click the arrow of the collapsed section", [&] { return openRow(tour); });
    tour.step("Rest the pointer on the first icon", [&] { return showHelp(tour); });
    tour.step("Click elsewhere", [&] { return clickElsewhere(tour); });
    tour.step("Left-click CopyQ in the row", [&] { return openApplication(tour); });
    tour.step("Open the row and click its arrange button", [&] { return arrange(tour); });
}

} // namespace pelistra::testing

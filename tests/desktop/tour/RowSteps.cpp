#include "tests/desktop/tour/ItemList.h"
#include "tests/desktop/tour/Tour.h"

#include <algorithm>
#include <fstream>

namespace pelistra::testing {

namespace {

constexpr int distanceBelowArrow = 6;
constexpr int sideDistance = 8;
constexpr RootPoint elsewhere{.x = 300, .y = 500};

// One program with many icons: Tk.
constexpr const char* manyIcons = R"(
package require tktray
wm withdraw .
for {set i 0} {$i < 20} {incr i} {
    image create photo face$i -width 22 -height 22
    face$i put [format "#%02x%02x%02x" [expr {40 + 10 * $i}] [expr {220 - 8 * $i}] 160] -to 3 3 19 19
    tktray::icon .tray$i -image face$i -class [format "Many%02d" $i]
}
)";
constexpr std::size_t manyCount = 20;

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

Seen openLongRow(Tour& tour, std::unique_ptr<ChildProcess>& program) {
    Desktop& desktop = tour.desktop();
    const std::size_t before = desktop.hiddenSection().size();
    const std::filesystem::path script = desktop.display().folder() / "many-icons.tcl";
    std::ofstream(script) << manyIcons;
    program = desktop.display().start({"wish", script.string()});
    const bool hidden =
        waitFor([&] { return desktop.hiddenSection().size() == before + manyCount; }) &&
        desktop.waitUntilCollapsed();
    const bool opened = hidden && tour.row().open();
    const auto frame = tour.row().frame();
    constexpr int widest = 920;
    return {.ok = opened && frame && frame->width == widest,
            .text = std::to_string(tour.row().icons().size()) + " icons in the row of " +
                    (frame ? describe(*frame) : "no size")};
}

Seen scroll(Tour& tour) {
    Desktop& desktop = tour.desktop();
    SecondRowUnderTest& row = tour.row();
    const auto frame = row.frame();
    const auto before = row.icons();
    if (!frame || before.empty()) {
        return {.ok = false, .text = "no row"};
    }
    const bool reachesOut = before.back().frame.x > frame->right();
    constexpr int notches = 30;
    desktop.input().turnWheel(centre(*frame), UserInput::Wheel::Down, notches);
    const bool scrolled =
        waitFor([&] { return row.icons().back().frame.right() <= frame->right(); });
    int place = 0;
    // It glides to its place.
    constexpr std::chrono::milliseconds moment{150};
    const bool rests = waitFor([&] {
        place = row.icons().back().frame.x;
        return staysTrue([&] { return row.icons().back().frame.x == place; }, moment);
    });
    const bool shows = isNotBlank(desktop.x().capture(row.icons().back().frame));
    // A refresh of the list comes every two seconds.
    constexpr std::chrono::milliseconds longerThanARefresh{2'200};
    const bool stays =
        staysTrue([&] { return row.icons().back().frame.x == place; }, longerThanARefresh);
    return {.ok = reachesOut && scrolled && rests && shows && stays && row.isOpen(),
            .text = "the last icon has come from x " + std::to_string(before.back().frame.x) +
                    " to " + std::to_string(place) +
                    (stays ? " and stays there" : " and does not stay")};
}

Seen endLongRow(Tour& tour, std::unique_ptr<ChildProcess>& program) {
    const std::size_t before = tour.desktop().hiddenSection().size();
    program.reset();
    const bool gone = waitFor([&] {
        return tour.row().icons().size() == before - manyCount &&
               tour.desktop().hiddenSection().size() == before - manyCount;
    });
    tour.desktop().input().click(elsewhere);
    const bool closed = waitFor([&] { return !tour.row().isOpen(); });
    return {.ok = gone && closed,
            .text = std::to_string(tour.desktop().hiddenSection().size()) + " hidden icons left"};
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

std::optional<xcb_window_t> windowOf(Desktop& desktop, const std::string& className) {
    for (const xcb_window_t window : desktop.x().managedWindows()) {
        if (desktop.x().windowClass(window).second == className) {
            return window;
        }
    }
    return std::nullopt;
}

Seen coverTheScreen(Tour& tour) {
    Desktop& desktop = tour.desktop();
    XClient& x = desktop.x();
    const auto window = windowOf(desktop, "copyq");
    if (!window || !tour.row().open()) {
        return {.ok = false, .text = "no window or no row"};
    }
    const WindowFrame frame = *tour.row().frame();
    x.requestFullScreen(*window, true);
    const bool covered = waitFor(
        [&] { return x.frame(*window) == x.rootFrame() && x.isAbove(*window, x.barWindow()); });
    const bool isAbove = tour.row().isOpen() && x.isAbove(*tour.row().window(), *window);
    const auto icons = tour.row().icons();
    const bool isSeen = std::ranges::all_of(icons, [&](const auto& icon) {
        return waitFor([&] { return isNotBlank(x.capture(icon.frame)); });
    });
    return {.ok = covered && isAbove && isSeen && !icons.empty(),
            .text = (covered ? std::string("the window covers the screen and the bar")
                             : std::string("the window does not cover the screen")) +
                    (isAbove ? ", the row of " + describe(frame) + " lies above it"
                             : ", the row does not lie above it")};
}

Seen uncoverTheScreen(Tour& tour) {
    Desktop& desktop = tour.desktop();
    XClient& x = desktop.x();
    const auto window = windowOf(desktop, "copyq");
    if (!window) {
        return {.ok = false, .text = "no window"};
    }
    x.requestFullScreen(*window, false);
    const bool uncovered = waitFor([&] { return !x.isAbove(*window, x.barWindow()); });
    x.requestClose(*window);
    const bool closed = waitFor([&] { return !windowOf(desktop, "copyq"); });
    desktop.input().click(elsewhere);
    const bool rowClosed = waitFor([&] { return !tour.row().isOpen(); });
    return {.ok = uncovered && closed && rowClosed,
            .text = uncovered ? "the bar lies above it again" : "the bar stays covered"};
}

Seen openOnTheFirstOfTwo(Tour& tour) {
    Desktop& desktop = tour.desktop();
    constexpr int firstWidth = 800;
    desktop.setMonitors({firstWidth, desktop.x().rootFrame().width - firstWidth});
    const bool moved = waitFor([&] {
                           const auto control = desktop.organiser().controlFrame();
                           return control && control->right() <= firstWidth &&
                                  control->right() > firstWidth - (2 * control->width);
                       }) &&
                       desktop.waitUntilCollapsed();
    const bool opened = moved && tour.row().open();
    const auto frame = tour.row().frame();
    const bool inside = frame && frame->right() <= firstWidth && frame->x >= 0;
    return {.ok = opened && inside, .text = frame ? "the row is " + describe(*frame) : "no row"};
}

Seen openOnTheOnlyOne(Tour& tour) {
    Desktop& desktop = tour.desktop();
    desktop.input().click(elsewhere);
    const bool closed = waitFor([&] { return !tour.row().isOpen(); });
    desktop.clearMonitors(2);
    const int right = desktop.x().rootFrame().right();
    const bool back = waitFor([&] {
                          const auto control = desktop.organiser().controlFrame();
                          return control && control->right() > right - (2 * control->width);
                      }) &&
                      desktop.waitUntilCollapsed();
    const bool opened = back && tour.row().open();
    return {.ok = closed && opened && tour.row().frame()->right() > right - (2 * sideDistance),
            .text = opened ? "the row is " + describe(*tour.row().frame()) : "no row"};
}

Seen arrange(Tour& tour) {
    Desktop& desktop = tour.desktop();
    const auto button = tour.row().arrangeButton();
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
    std::unique_ptr<ChildProcess> manyIconsProgram;
    tour.step("Left-click the arrow of the collapsed section", [&] { return openRow(tour); });
    tour.step("Rest the pointer on the first icon", [&] { return showHelp(tour); });
    tour.step("Click elsewhere", [&] { return clickElsewhere(tour); });
    tour.step("Start a program of 20 icons (Tk) and open the row",
              [&] { return openLongRow(tour, manyIconsProgram); });
    tour.step("Turn the wheel over the row", [&] { return scroll(tour); });
    tour.step("End that program", [&] { return endLongRow(tour, manyIconsProgram); });
    tour.step("Left-click CopyQ in the row", [&] { return openApplication(tour); });
    tour.step("Open the row, make CopyQ's window cover the screen",
              [&] { return coverTheScreen(tour); });
    tour.step("End the full screen, close the window", [&] { return uncoverTheScreen(tour); });
    tour.step("Divide the screen into two monitors and open the row",
              [&] { return openOnTheFirstOfTwo(tour); });
    tour.step("Take the second monitor away and open the row",
              [&] { return openOnTheOnlyOne(tour); });
    tour.step("Click the row's arrange button", [&] { return arrange(tour); });
}

} // namespace pelistra::testing

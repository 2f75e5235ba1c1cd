#include "tests/desktop/tour/Tour.h"

#include <algorithm>
#include <csignal>

namespace pelistra::testing {

namespace {

// The same programs at the same places; some make a new window while they start or when the bar is
// started again.
bool sameLayout(const std::vector<Desktop::Item>& one, const std::vector<Desktop::Item>& other) {
    return std::ranges::equal(
        one, other, [](const Desktop::Item& left, const Desktop::Item& right) {
            return left.className == right.className && left.frame == right.frame;
        });
}

Seen collapse(Desktop& desktop) {
    const auto shownBefore = desktop.visibleSection();
    const bool clicked = desktop.clickControl();
    const PointerState pointer = desktop.x().pointer();
    const bool hidden = clicked && desktop.waitUntilCollapsed();
    const PointerState after = desktop.x().pointer();
    // Its place only: the button's release may still be on its way.
    const bool pointerStayed = after.x == pointer.x && after.y == pointer.y;
    const bool sameShown =
        waitFor([&] { return sameLayout(desktop.visibleSection(), shownBefore); });
    return {.ok = hidden && pointerStayed && sameShown,
            .text = "hidden: " + describe(desktop.hiddenSection()) +
                    (hidden ? ", all still mapped; shown " : ", not all hidden; shown ") +
                    (sameShown ? "as before: " : "otherwise than before: ") +
                    names(desktop.visibleSection()) + "; pointer at " +
                    describe(desktop.x().pointer()) + (pointerStayed ? "" : ", moved")};
}

Seen expand(Desktop& desktop, const std::vector<Desktop::Item>& before) {
    const bool clicked = desktop.clickControl(UserInput::Button::Left, {keys::alt});
    const bool shown = clicked && desktop.waitUntilExpanded();
    const bool same = waitFor([&] { return sameLayout(desktop.items(), before); });
    return {.ok = shown && same,
            .text = describe(desktop.items()) +
                    (same ? ", each where it was" : ", not where they were")};
}

Seen restartBar(Desktop& desktop, int signal) {
    const std::size_t count = desktop.items().size();
    desktop.bar().process().signal(signal);
    const bool ended = desktop.bar().process().waitForExit().has_value();
    desktop.startBar();
    const bool back = waitFor([&] { return desktop.items().size() == count; });
    const bool collapsed = desktop.waitUntilCollapsed();
    return {.ok = ended && back && collapsed,
            .text = std::to_string(desktop.items().size()) + " of " + std::to_string(count) +
                    " items are back, hidden: " + describe(desktop.hiddenSection())};
}

Seen refuseWrongOrder(Desktop& desktop) {
    const auto control = desktop.organiser().controlFrame();
    const std::string& divider = OrganiserUnderTest::dividerName;
    const bool moved = control && desktop.dragItem(divider, control->right() - 2) &&
                       waitFor([&] { return desktop.items().back().className == divider; });
    const bool clicked = desktop.clickControl();
    const std::string refusal = "Refusing to collapse because divider is not left of control";
    const bool refused = clicked && desktop.organiser().process().waitForOutput(refusal);
    return {.ok = moved && refused && !desktop.organiser().isCollapsed() &&
                  desktop.everythingIsOnScreen(),
            .text = refused ? "log: " + refusal : "no refusal in the log"};
}

Seen restoreOrder(Desktop& desktop, const std::string& firstShown) {
    const auto first = desktop.item(firstShown);
    const bool ok = first &&
                    desktop.dragItem(OrganiserUnderTest::dividerName, first->frame.x + 2) &&
                    waitFor([&] {
                        return desktop.visibleSection().size() == 2 &&
                               desktop.visibleSection().front().className == firstShown;
                    });
    return {.ok = ok, .text = names(desktop.items())};
}

} // namespace

void walkSection(Tour& tour) {
    Desktop& desktop = tour.desktop();
    const std::vector<Desktop::Item> arranged = desktop.items();
    tour.step("Left-click the arrow", [&] { return collapse(desktop); });
    tour.step("Kill the bar (SIGKILL) and start it again",
              [&] { return restartBar(desktop, SIGKILL); });
    tour.step("End the bar (SIGTERM) and start it again",
              [&] { return restartBar(desktop, SIGTERM); });
    tour.step("Alt-click the arrow", [&] { return expand(desktop, arranged); });
    tour.step("Drag the divider right of the arrow and click the arrow",
              [&] { return refuseWrongOrder(desktop); });
    tour.step("Drag the divider back to the left of Pnmixer",
              [&] { return restoreOrder(desktop, "Pnmixer"); });
}

} // namespace pelistra::testing

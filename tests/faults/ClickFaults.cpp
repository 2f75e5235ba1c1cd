#include "tests/faults/Suite.h"

#include <stdexcept>

namespace pelistra::testing {

namespace {

constexpr int manyClicks = 10'000;
constexpr int someClicks = 200;
constexpr int manyTimes = 20;
constexpr int fewTimes = 3;

std::string counted(int clicks, const char* where) {
    return std::to_string(clicks) + " clicks on " + where;
}

// The arrow moves with the bar's layout, so each click looks where it is.
Fault onArrow(int clicks) {
    return {.name = counted(clicks, "the arrow, as fast as they can be made"),
            .isInShortForm = clicks == someClicks,
            .happen = [clicks](Bench& bench) {
                bench.bringInto(Situation::Expanded);
                for (int click = 0; click < clicks; ++click) {
                    constexpr int everySo = 7;
                    static_cast<void>(bench.desktop().clickControl(
                        UserInput::Button::Left, click % everySo == 0
                                                     ? UserInput::Modifiers{keys::alt}
                                                     : UserInput::Modifiers{}));
                }
            }};
}

Fault onRow(int clicks) {
    return {.name = counted(clicks, "the row, middle and right, everywhere"),
            .isInShortForm = clicks == someClicks,
            .happen = [clicks](Bench& bench) {
                for (int click = 0; click < clicks; ++click) {
                    auto frame = bench.row().frame();
                    if (!frame) {
                        bench.bringInto(Situation::RowOpen);
                        frame = bench.row().frame();
                    }
                    if (!frame) {
                        throw std::runtime_error("no row");
                    }
                    constexpr int step = 37;
                    // Each one ends the row, which has to be opened anew.
                    const int everySo = clicks > someClicks ? 500 : 50;
                    // The last quarter holds the button that ends the row.
                    const int width = frame->width * 3 / 4;
                    bench.desktop().input().click(
                        {.x = frame->x + (click * step % width), .y = frame->midY()},
                        click % everySo == everySo - 1 ? UserInput::Button::Right
                                                       : UserInput::Button::Middle);
                }
            }};
}

Fault onItems(int clicks) {
    return {.name = counted(clicks, "the items of the bar, with the middle button"),
            .isInShortForm = false,
            .happen = [clicks](Bench& bench) {
                bench.bringInto(Situation::Expanded);
                for (int click = 0; click < clicks; ++click) {
                    const auto items = bench.desktop().items();
                    if (items.empty()) {
                        throw std::runtime_error("the bar is empty");
                    }
                    const auto& item = items[static_cast<std::size_t>(click) % items.size()];
                    bench.desktop().input().click(centre(item.frame), UserInput::Button::Middle);
                }
            }};
}

// Menus open and close, popups and windows come and go; the arrow and the divider are among them.
Fault onItemsForReal() {
    return {.name = counted(someClicks, "the items of the bar, left and right"),
            .happen = [](Bench& bench) {
                bench.bringInto(Situation::Expanded);
                for (int click = 0; click < someClicks; ++click) {
                    const auto items = bench.desktop().items();
                    if (items.empty()) {
                        throw std::runtime_error("the bar is empty");
                    }
                    const auto& item = items[static_cast<std::size_t>(click) % items.size()];
                    bench.desktop().input().click(centre(item.frame),
                                                  click % 2 == 0 ? UserInput::Button::Left
                                                                 : UserInput::Button::Right);
                    bench.desktop().input().tapKey(keys::escape);
                }
            }};
}

// An arrow click right after a right click in the row: the reveal is under way then.
Fault revealOvertaken(int times) {
    return {.name = "the arrow is clicked while an icon is being revealed, times: " +
                    std::to_string(times),
            .isInShortForm = times == fewTimes,
            .happen = [times](Bench& bench) {
                for (int time = 0; time < times; ++time) {
                    bench.bringInto(Situation::RowOpen);
                    const auto icon = bench.row().icon("nabi");
                    if (!icon) {
                        throw std::runtime_error("the row lacks an icon");
                    }
                    bench.desktop().input().click(centre(icon->frame), UserInput::Button::Right);
                    static_cast<void>(bench.desktop().clickControl());
                }
            }};
}

} // namespace

std::vector<Fault> clickFaults() {
    return {onArrow(someClicks),        onRow(someClicks),   revealOvertaken(fewTimes),
            revealOvertaken(manyTimes), onArrow(manyClicks), onRow(manyClicks),
            onItems(manyClicks),        onItemsForReal()};
}

} // namespace pelistra::testing

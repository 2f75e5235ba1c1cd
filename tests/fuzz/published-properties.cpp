// What the tray and the window manager publish on windows that every client may write to: scale,
// strut, areas beside the camera housing, work area, resource database, details of the items.
// Input: words, then the text of the database and of the details.

#include "menubar/Metrics.h"
#include "menubar/Options.h"
#include "platform/linux/screens/ScreenLayout.h"
#include "platform/x11/PublishedItems.h"
#include "tests/fuzz/Check.h"

#include <cmath>

namespace pelistra::fuzz {
namespace {

std::vector<std::uint32_t> takeWords(Input& input, std::size_t count) {
    std::vector<std::uint32_t> words(count);
    for (std::uint32_t& word : words) {
        word = input.word();
    }
    return words;
}

bool lies(const ScreenRect& part, const ScreenRect& whole) {
    constexpr double tolerance = 1e-6;
    return part.width() >= 0 && part.height() >= 0 && part.minX() >= whole.minX() - tolerance &&
           part.minY() >= whole.minY() - tolerance && part.maxX() <= whole.maxX() + tolerance &&
           part.maxY() <= whole.maxY() + tolerance;
}

// RandR's own numbers have 16 bits; what is on top of them comes from properties.
linux::ScreenFacts takeFacts(Input& input) {
    const auto coordinate = [&] { return static_cast<std::int16_t>(input.word()); };
    const auto size = [&] { return static_cast<std::uint16_t>(input.word()); };
    linux::ScreenFacts facts;
    facts.root = {.x = 0, .y = 0, .width = size(), .height = size()};
    const std::size_t monitors = input.byte() % 4;
    for (std::size_t i = 0; i < monitors; ++i) {
        const int x = coordinate();
        const int y = coordinate();
        facts.monitors.push_back(
            {.frame = {.x = x, .y = y, .width = size(), .height = size()}, .isPrimary = i == 1});
    }
    facts.scale = linux::scaleIn(takeWords(input, 1)).value_or(1);
    check(facts.scale >= 0.5 && facts.scale <= 8);
    if (input.byte() % 2 == 0) {
        linux::Strut& strut = facts.barStrut.emplace();
        for (std::uint32_t& word : strut) {
            word = input.word();
        }
    }
    facts.workArea = linux::rootRectIn(takeWords(input, 4));
    const auto left = linux::rootRectIn(takeWords(input, 4));
    const auto right = linux::rootRectIn(takeWords(input, 4));
    if (left && right) {
        facts.auxiliaryAreas = {*left, *right};
    }
    return facts;
}

void checkScreens(const linux::ScreenFacts& facts) {
    for (const Screen& screen : linux::screensFrom(facts)) {
        check(screen.frame.width() > 0 && screen.frame.height() > 0);
        check(lies(screen.visibleFrame, screen.frame));
        check(screen.visibleFrame.width() > 0 && screen.visibleFrame.height() > 0);
        for (const auto& area : {screen.auxiliaryTopLeftArea, screen.auxiliaryTopRightArea}) {
            check(!area || lies(*area, screen.frame));
        }
        check(screen.auxiliaryTopLeftArea.has_value() == screen.auxiliaryTopRightArea.has_value());
    }
}

void checkResources(const std::string& text) {
    const auto organiser = linux::resourceScaleIn(text);
    check(!organiser || (*organiser >= 0.25 && *organiser <= 10));
    const double bar = menubar::scaleFromResources(text);
    check(bar >= menubar::leastScale && bar <= menubar::greatestScale);
    // Where both believe the number, they understand the same.
    check(!organiser || *organiser < menubar::leastScale || *organiser > menubar::greatestScale ||
          std::abs(*organiser - bar) < 1e-9);
}

void checkDetails(const std::string& text) {
    const auto items = x11::publishedItemsIn(
        {.type = XCB_ATOM_STRING, .format = x11::bitsOfByte, .bytes = {text.begin(), text.end()}});
    if (!items) {
        return;
    }
    for (const x11::PublishedItem& item : *items) {
        check(item.window != XCB_WINDOW_NONE && item.width >= 0 && item.height >= 0);
    }
    const auto again = x11::publishedText(*items);
    check(again.has_value());
    check(x11::publishedItemsIn({.type = XCB_ATOM_STRING,
                                 .format = x11::bitsOfByte,
                                 .bytes = {again->begin(), again->end()}}) == items);
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    checkScreens(takeFacts(input));
    const std::string text = input.restAsText();
    checkResources(text);
    checkDetails(text);
}

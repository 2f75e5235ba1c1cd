#include "tests/desktop/harness/SecondRowUnderTest.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string_view>

namespace pelistra::testing {

namespace {

constexpr std::string_view title = "Pelistra 第二行";
constexpr std::string_view aboutTheClick = "，点击打开应用";
constexpr const char* arrange = "展开原菜单栏图标并重新整理";

} // namespace

std::optional<xcb_window_t> SecondRowUnderTest::window() {
    XClient& x = desktop_.x();
    for (const xcb_window_t window : x.shownTopLevels()) {
        if (x.title(window) == title) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<WindowFrame> SecondRowUnderTest::frame() {
    const auto shown = window();
    return shown ? desktop_.x().frame(*shown) : std::nullopt;
}

std::vector<SecondRowUnderTest::Icon> SecondRowUnderTest::icons() {
    std::vector<Icon> result;
    if (!isOpen()) {
        return result;
    }
    for (const auto& element : tree_.elements(desktop_.organiser().process().pid())) {
        if (element.name.ends_with(aboutTheClick)) {
            result.push_back(
                {.name = element.name.substr(0, element.name.size() - aboutTheClick.size()),
                 .frame = pixels(element.frame)});
        }
    }
    std::ranges::sort(result, {}, [](const Icon& icon) { return icon.frame.x; });
    return result;
}

std::string SecondRowUnderTest::heardNames() {
    std::string text;
    for (const Icon& icon : icons()) {
        text += (text.empty() ? "" : " | ") + icon.name;
    }
    return text;
}

std::optional<SecondRowUnderTest::Icon> SecondRowUnderTest::icon(const std::string& name) {
    const auto all = icons();
    const auto found =
        std::ranges::find_if(all, [&](const Icon& icon) { return icon.name.starts_with(name); });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

std::optional<WindowFrame> SecondRowUnderTest::arrangeButton() {
    const auto button = tree_.find(desktop_.organiser().process().pid(), arrange);
    return button ? std::optional(pixels(button->frame)) : std::nullopt;
}

bool SecondRowUnderTest::open() {
    letTheArrowRest();
    return desktop_.clickControl() && waitFor([this] {
               return isOpen() && icons().size() == desktop_.hiddenSection().size();
           });
}

bool SecondRowUnderTest::endAnyReveal(const RootPoint& emptyPlace) {
    constexpr std::chrono::milliseconds longerThanItsChecks{700};
    const bool rests = waitFor([&] {
        const auto items = desktop_.items();
        const bool wasOpen = isOpen();
        return staysTrue([&] { return desktop_.items() == items && isOpen() == wasOpen; },
                         longerThanItsChecks);
    });
    desktop_.input().click(emptyPlace);
    letTheArrowRest();
    if (!desktop_.hiddenSectionIsOffScreen() && !desktop_.clickControl()) {
        return false;
    }
    return rests && desktop_.waitUntilCollapsed();
}

void SecondRowUnderTest::letTheArrowRest() {
    constexpr std::chrono::milliseconds rest{450};
    static_cast<void>(staysTrue([] { return true; }, rest));
}

WindowFrame SecondRowUnderTest::pixels(const WindowFrame& points) {
    const double scale = desktop_.bar().scale();
    const auto scaled = [scale](int value) { return static_cast<int>(std::lround(value * scale)); };
    return {.x = scaled(points.x),
            .y = scaled(points.y),
            .width = scaled(points.width),
            .height = scaled(points.height)};
}

} // namespace pelistra::testing

#include "tests/desktop/harness/WindowsUnderTest.h"
#include "tests/desktop/tour/Tour.h"

#include <algorithm>
#include <filesystem>

namespace pelistra::testing {

namespace {

constexpr std::uint32_t paper = 0xf4f1ea;
constexpr std::uint32_t ink = 0xb03a2e;

// What a compositor adds: shadows, and what lies behind shining through.
class UnderACompositor {
public:
    UnderACompositor(Tour& tour, int scale)
        : tour_(tour), desktop_(tour.desktop()), windows_(tour.desktop(), tour.tree()),
          scale_(scale) {}

    Seen start();
    Seen lookAtGuide();
    Seen openRow();

private:
    [[nodiscard]] Picture at(int x, int y) {
        return desktop_.x().capture({.x = x, .y = y, .width = 1, .height = 1});
    }
    // A sheet with a coloured left half, where the row will be.
    void putASheetBehindTheRow();

    Tour& tour_;
    Desktop& desktop_;
    WindowsUnderTest windows_;
    int scale_;
};

Seen UnderACompositor::start() {
    std::filesystem::remove(desktop_.display().configFolder() / "pelistra" / "defaults");
    desktop_.startBar();
    for (const RealTrayProgram& program : realTrayPrograms()) {
        desktop_.startProgram(program.program);
    }
    desktop_.startOrganiser();
    const auto isPainted = [&](const Desktop::Item& item) {
        return desktop_.x().capture(item.frame).colours() >= 2;
    };
    const std::vector<Desktop::Item> items = desktop_.items();
    const bool ok = waitFor([&] { return std::ranges::all_of(desktop_.items(), isPainted); });
    return {.ok = ok && items.size() == realTrayPrograms().size() + 2,
            .text = describe(items) + (ok ? ", all painted" : ", not all painted")};
}

Seen UnderACompositor::lookAtGuide() {
    const Seen seen = lookAtWindow(desktop_, onboardingTitle, onboardingWidth, onboardingHeight);
    const auto window = desktop_.x().managedWindow(onboardingTitle);
    const auto frame = window ? desktop_.x().frame(*window) : std::nullopt;
    if (!frame) {
        return {.ok = false, .text = "no guide"};
    }
    constexpr int beside = 3;
    const Picture desktopColour = at(beside, desktop_.x().rootFrame().height - beside);
    const bool shaded =
        waitFor([&] { return at(frame->x - beside, frame->midY()) != desktopColour; });
    return {.ok = seen.ok && shaded,
            .text = seen.text + (shaded ? ", with a shadow" : ", without a shadow")};
}

void UnderACompositor::putASheetBehindTheRow() {
    XClient& x = desktop_.x();
    const WindowFrame root = x.rootFrame();
    const WindowFrame sheet{.x = root.right() - 640 * scale_,
                            .y = 50 * scale_,
                            .width = 600 * scale_,
                            .height = 120 * scale_};
    for (const bool isLeft : {false, true}) {
        const std::array<std::uint32_t, 2> values{isLeft ? ink : paper, 1};
        const xcb_window_t window = x.connection().newId();
        xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, x.root(),
                          static_cast<std::int16_t>(sheet.x), static_cast<std::int16_t>(sheet.y),
                          static_cast<std::uint16_t>(isLeft ? sheet.width / 2 : sheet.width),
                          static_cast<std::uint16_t>(sheet.height), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
        xcb_map_window(x.get(), window);
    }
    x.sync();
}

Seen UnderACompositor::openRow() {
    for (const xcb_window_t window : desktop_.organiserWindows()) {
        desktop_.x().requestClose(window);
    }
    const bool closed = waitFor([&] { return desktop_.organiserWindows().empty(); });
    putASheetBehindTheRow();
    SecondRowUnderTest::letTheArrowRest();
    const bool opened =
        closed && desktop_.clickControl() && desktop_.waitUntilCollapsed() && tour_.row().open();
    if (!opened) {
        return {.ok = false, .text = "no row"};
    }
    desktop_.input().moveTo(centre(desktop_.x().rootFrame()));
    const WindowFrame frame = *tour_.row().frame();
    const Picture row = tour_.settledPicture(frame);
    const auto icons = tour_.row().icons();
    const bool everyIcon = std::ranges::all_of(icons, [&](const auto& icon) {
        constexpr std::size_t leastColours = 3;
        return desktop_.x().capture(icon.frame).colours() >= leastColours;
    });
    // Above the icons, left and right of the middle of the sheet.
    const WindowFrame& first = icons.front().frame;
    const int y = first.y - 2 * scale_;
    const bool shinesThrough = at(desktop_.x().rootFrame().right() - 350 * scale_, y) !=
                               at(desktop_.x().rootFrame().right() - 330 * scale_, y);
    row.savePng(tour_.folder("looks") /
                ("second-row-composited-" + std::to_string(scale_) + "x.png"));
    return {.ok = everyIcon && shinesThrough,
            .text = describe(frame) + (everyIcon ? ", no picture blank" : ", blank pictures") +
                    (shinesThrough ? ", what lies behind shines through" : ", opaque")};
}

} // namespace

void walkCompositor(Tour& tour) {
    for (const int scale : {1, 2}) {
        tour.beginDesktop({.scale = scale, .compositor = Compositor::Picom});
        UnderACompositor steps(tour, scale);
        const std::string where = " under picom (" + std::to_string(scale) + "x)";
        tour.step("Begin a desktop" + where, [&] { return steps.start(); });
        tour.step("See the guide" + where, [&] { return steps.lookAtGuide(); });
        tour.step("Open the row" + where, [&] { return steps.openRow(); });
    }
}

} // namespace pelistra::testing

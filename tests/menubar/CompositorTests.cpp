// The bar and a compositor on one screen, whichever of them comes, goes or dies first.

#include "tests/menubar/BarFixture.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <tuple>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

constexpr std::uint32_t red = 0xff0000;
constexpr std::uint32_t green = 0x00c000;
constexpr std::uint32_t blue = 0x0000ff;

enum class Step : std::uint8_t { Bar, Compositor, Icons };

class CompositorTests : public BarFixture,
                        public ::testing::WithParamInterface<std::tuple<Compositor, int>> {
protected:
    CompositorTests() : BarFixture({.sessionBus = true}) {}

    [[nodiscard]] Compositor compositor() const { return std::get<0>(GetParam()); }
    [[nodiscard]] int scale() const { return std::get<1>(GetParam()); }

    void begin(Step step) {
        if (step == Step::Compositor) {
            display_.changeCompositor(compositor());
        } else if (step == Step::Bar) {
            startBar({"--scale", std::to_string(scale())});
        } else {
            for (const bool hasAlpha : {false, true}) {
                icons_.push_back(std::make_unique<TrayClient>(
                    display_.name(), TrayClient::Options{.name = hasAlpha ? "alpha" : "plain",
                                                         .colour = hasAlpha ? green : red,
                                                         .hasAlpha = hasAlpha}));
            }
        }
        // Nothing happens without a bar, nor to icons that are docked.
        for (const auto& icon : icons_) {
            static_cast<void>(icon->requestDock());
        }
    }
    void beginAll() {
        begin(Step::Compositor);
        begin(Step::Icons);
        begin(Step::Bar);
        expectLivingIcons();
    }
    // Whether the screen shows that colour all over the icon's place in the bar.
    [[nodiscard]] bool shows(TrayClient& icon, std::uint32_t colour) {
        const WindowFrame place = frameOf(icon);
        const int side = barHeight * scale();
        icon.handleEvents();
        return x_.topLevel(icon.window()) == x_.topLevel(x_.barWindow()) && place.width == side &&
               place.height == side && place.x >= 0 && place.right() <= screenWidth &&
               x_.capture(place).pixelsOf(colour) == static_cast<std::size_t>(side) * side;
    }
    // Both icons are there, paint themselves, go and come back.
    void expectLivingIcons() {
        for (const auto& icon : icons_) {
            const std::uint32_t own = icon == icons_.front() ? red : green;
            ASSERT_TRUE(waitFor([&] { return shows(*icon, own); }));
            icon->changeColour(blue);
            ASSERT_TRUE(waitFor([&] { return shows(*icon, blue); }));
            const RootPoint before = centre(frameOf(*icon));
            icon->setMappedFlag(false);
            ASSERT_TRUE(waitFor([&] { return pixel(before.x, before.y) != blue; }));
            icon->changeColour(own);
            icon->setMappedFlag(true);
            ASSERT_TRUE(waitFor([&] { return shows(*icon, own); }));
        }
    }
    // As a window of its own the icon is on the screen like any other.
    void expectShownOutside(TrayClient& icon, std::uint32_t colour) {
        ASSERT_TRUE(waitFor([&] { return x_.parent(icon.window()) == x_.root(); }));
        const std::array<std::uint32_t, 4> place{300, 300, 40, 40};
        const std::uint32_t unmanaged = 1;
        XClient& x = icon.x();
        xcb_change_window_attributes(x.get(), icon.window(), XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
        xcb_configure_window(x.get(), icon.window(),
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             place.data());
        xcb_map_window(x.get(), icon.window());
        x.sync();
        ASSERT_TRUE(waitFor([&] {
            icon.handleEvents();
            return pixel(320, 320) == colour;
        }));
        xcb_unmap_window(x.get(), icon.window());
        x.sync();
        EXPECT_TRUE(waitFor([&] { return pixel(320, 320) != colour; }));
    }

    std::vector<std::unique_ptr<TrayClient>> icons_;
};

INSTANTIATE_TEST_SUITE_P(Under, CompositorTests,
                         ::testing::Combine(::testing::Values(Compositor::Picom,
                                                              Compositor::Xcompmgr,
                                                              Compositor::Xfwm4),
                                            ::testing::Values(1, 2)),
                         [](const auto& chosen) {
                             return nameOf(std::get<0>(chosen.param)) + "At" +
                                    std::to_string(std::get<1>(chosen.param)) + "x";
                         });

TEST_P(CompositorTests, IconsLiveWhoeverIsThereFirst) {
    std::array order{Step::Bar, Step::Compositor, Step::Icons};
    do {
        for (const Step step : order) {
            begin(step);
        }
        ASSERT_NO_FATAL_FAILURE(expectLivingIcons());
        stopBar(SIGTERM);
        forgetBar();
        icons_.clear();
        display_.changeCompositor(Compositor::None);
    } while (std::ranges::next_permutation(order).found);
}

TEST_P(CompositorTests, IconsLiveWhateverBecomesOfTheCompositor) {
    ASSERT_NO_FATAL_FAILURE(beginAll());
    for (const Compositor next : {Compositor::None, Compositor::Picom, compositor(),
                                  Compositor::Xcompmgr, compositor(), Compositor::None}) {
        display_.changeCompositor(next);
        ASSERT_NO_FATAL_FAILURE(expectLivingIcons());
    }
}

// A redirection that is left behind would keep the compositor from them.
TEST_P(CompositorTests, IconsAreGivenBackAsWindowsThatTheCompositorShows) {
    ASSERT_NO_FATAL_FAILURE(beginAll());
    for (const int signal : {SIGKILL, SIGTERM}) {
        stopBar(signal);
        forgetBar();
        ASSERT_NO_FATAL_FAILURE(expectShownOutside(*icons_.front(), red));
        ASSERT_NO_FATAL_FAILURE(expectShownOutside(*icons_.back(), green));
        begin(Step::Bar);
        ASSERT_NO_FATAL_FAILURE(expectLivingIcons());
    }
}

} // namespace
} // namespace pelistra::testing

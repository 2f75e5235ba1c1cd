#include "tests/menubar/BarFixture.h"

#include <array>
#include <csignal>
#include <fstream>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;

constexpr std::uint32_t lightness(std::uint32_t colour) {
    return ((colour >> 16U) & 0xFFU) + ((colour >> 8U) & 0xFFU) + (colour & 0xFFU);
}
constexpr std::uint32_t middleGrey = 3 * 0x80;

class BarLookTests : public BarFixture {
protected:
    using BarFixture::BarFixture;

    [[nodiscard]] bool isLight() { return lightness(pixel(640, 10)) > middleGrey; }
    [[nodiscard]] std::uint32_t foregroundPart() {
        const auto colours = x_.words(x_.trayOwner(), "_NET_SYSTEM_TRAY_COLORS");
        return colours.size() == 12 ? colours.front() : 0xFFFFFFFF;
    }
    void setResources(const std::string& text, const std::string& type = "STRING") {
        x11::setText(x_.connection(), x_.root(), XCB_ATOM_RESOURCE_MANAGER, x_.atom(type), text);
        x_.sync();
    }
    void writeTheme(const std::string& name) {
        std::ofstream(display_.folder() / "xsettingsd") << "Net/ThemeName \"" << name << "\"\n";
    }
    [[nodiscard]] Picture titlePicture() {
        return x_.capture({.x = 0, .y = 0, .width = 600, .height = barHeight - 2});
    }
    void activate(xcb_window_t window) {
        x11::setWords(x_.connection(), x_.root(), x_.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW,
                      std::array{window});
        x_.sync();
    }
};

using BarColourTests = UnderCompositor<BarLookTests>;
INSTANTIATE_TEST_SUITE_P(Under, BarColourTests, ::testing::ValuesIn(everyCompositor),
                         compositorTestName);

// These play a window manager.
using BarTitleTests = UnderCompositor<BarLookTests>;
INSTANTIATE_TEST_SUITE_P(Under, BarTitleTests,
                         ::testing::Values(Compositor::None, Compositor::Picom,
                                           Compositor::Xcompmgr),
                         compositorTestName);

TEST_P(BarColourTests, TheHousingIsDrawn) {
    startBar({"--camera-housing", "1100,100"});
    EXPECT_TRUE(waitFor([&] { return pixel(1150, 10) == 0U; }));
    EXPECT_TRUE(waitFor([&] { return pixel(1090, 10) != 0U; }));
}

TEST_P(BarColourTests, LightAndDarkAreWhatTheySay) {
    startBar({"--theme", "light"});
    EXPECT_TRUE(waitFor([&] { return isLight(); }));
    EXPECT_LT(foregroundPart(), 0x8000U);
    stopBar(SIGTERM);
    startBar({"--theme=dark"});
    EXPECT_TRUE(waitFor([&] { return !isLight() && pixel(640, 10) != 0; }));
    EXPECT_GT(foregroundPart(), 0x8000U);
}

TEST_P(BarColourTests, AutoFollowsTheSettingsManagerAsItComesChangesAndGoes) {
    startBar();
    EXPECT_TRUE(waitFor([&] { return isLight(); }));
    writeTheme("Adwaita-dark");
    const auto manager =
        display_.start({"xsettingsd", "-c", (display_.folder() / "xsettingsd").string()});
    EXPECT_TRUE(waitFor([&] { return !isLight(); }));
    EXPECT_TRUE(waitFor([&] { return foregroundPart() > 0x8000U; }));
    // Sent again and again: one that comes while it is not waiting is lost to it.
    const auto becomesLight = [&](bool light) {
        return waitFor([&] {
            manager->signal(SIGHUP);
            return isLight() == light;
        });
    };
    writeTheme("Adwaita");
    EXPECT_TRUE(becomesLight(true));
    EXPECT_TRUE(waitFor([&] { return foregroundPart() < 0x8000U; }));
    writeTheme("Other-Dark");
    EXPECT_TRUE(becomesLight(false));
    manager->kill();
    EXPECT_TRUE(waitFor([&] { return isLight(); }));
}

TEST_F(BarLookTests, TheScaleFollowsTheResources) {
    setResources("Xft.dpi:\t144\n");
    startBar();
    TrayClient& icon = dockNamed("icon");
    EXPECT_TRUE(eventually([&] { return frameOf(icon).height == 42; }));
    EXPECT_EQ(x_.frame(x_.barWindow())->height, 42);
    setResources("Xft.dpi:\t192\n");
    EXPECT_TRUE(eventually([&] {
        return frameOf(icon) == WindowFrame{.x = screenWidth - 56, .width = 56, .height = 56};
    }));
    EXPECT_TRUE(waitFor([&] {
        return x_.words(x_.trayOwner(), "_PELISTRA_MENUBAR_SCALE") ==
               std::vector<std::uint32_t>{200};
    }));
}

TEST_F(BarLookTests, ResourcesCountWhateverTypeTheTextSaysItIs) {
    setResources("Xft.dpi: 192\n", "UTF8_STRING");
    startBar();
    EXPECT_TRUE(waitFor([&] { return x_.frame(x_.barWindow())->height == 2 * barHeight; }));
    setResources("Xft.dpi: 144\n");
    EXPECT_TRUE(waitFor([&] { return x_.frame(x_.barWindow())->height == 42; }));
}

// Others take their own height from the bar's.
TEST_F(BarLookTests, WhoFindsTheBarFindsItWithItsHeight) {
    for (int round = 0; round < 5; ++round) {
        startBar({"--scale=2"});
        EXPECT_EQ(x_.frame(x_.barWindow())->height, 2 * barHeight);
        EXPECT_THAT(x_.words(x_.trayOwner(), "_PELISTRA_MENUBAR_SCALE"),
                    ::testing::ElementsAre(200));
        stopBar(SIGTERM);
    }
    startBar();
}

TEST_F(BarLookTests, WhatOnlyTheStartNeededIsGivenBack) {
    startBar();
    constexpr long someCode = 1024;
    EXPECT_TRUE(waitFor([&] { return memoryGivenBack(bar().process().pid()) >= someCode; }));
}

TEST_F(BarLookTests, AGivenScaleWins) {
    setResources("Xft.dpi:\t192\n");
    startBar({"--scale=1"});
    EXPECT_TRUE(waitFor([&] { return x_.frame(x_.barWindow())->height == barHeight; }));
}

TEST_P(BarTitleTests, TheTitleOfTheActiveWindowIsShownAndFollowed) {
    startBar();
    EXPECT_TRUE(waitFor([&] { return isLight(); }));
    const Picture empty = titlePicture();
    TrayClient window(display_.name(), {.name = "Editor"});
    activate(window.window());
    EXPECT_TRUE(waitFor([&] { return titlePicture() != empty; }));
    const Picture first = titlePicture();
    window.setTitle("Another title", "UTF8_STRING");
    EXPECT_TRUE(waitFor([&] { return titlePicture() != first; }));
    activate(XCB_WINDOW_NONE);
    EXPECT_TRUE(waitFor([&] { return titlePicture() == empty; }));
}

TEST_P(BarTitleTests, AnActiveWindowThatIsManagedNoMoreHasNoTitle) {
    startBar();
    EXPECT_TRUE(waitFor([&] { return isLight(); }));
    const Picture empty = titlePicture();
    const TrayClient window(display_.name(), {.name = "Editor"});
    const auto manage = [&](xcb_window_t managed) {
        x11::setWords(x_.connection(), x_.root(), x_.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW,
                      std::array{x_.barWindow(), managed});
        x_.sync();
    };
    manage(window.window());
    activate(window.window());
    EXPECT_TRUE(waitFor([&] { return titlePicture() != empty; }));
    manage(x_.barWindow());
    EXPECT_TRUE(waitFor([&] { return titlePicture() == empty; }));
}

TEST_F(BarLookTests, AnActiveWindowThatVanishesOrHasNoProperTitleDoesNoHarm) {
    startBar();
    TrayClient window(display_.name(), {.name = "Editor"});
    activate(window.window());
    window.setTitle(std::string(200'000, 'x'), "UTF8_STRING");
    window.setTitle("\xff\xfe\x1b]0;x\x07", "STRING");
    window.destroyWindow();
    activate(0x7fffffff);
    activate(x_.root());
    dockNamed("icon");
    activate(x_.barItems().front());
    activate(x_.barWindow());
    dockNamed("other");
    EXPECT_EQ(x_.barItems().size(), 2U);
}

TEST_P(BarTitleTests, TheTitleEndsBeforeTheItems) {
    startBar();
    TrayClient& wide = dock({.name = "wide", .preferredPosition = 0});
    TrayClient window(display_.name(), {.name = "Editor"});
    window.setTitle(std::string(200, 'w'), "UTF8_STRING");
    activate(window.window());
    wide.askForWidth(1000);
    EXPECT_TRUE(eventually([&] { return frameOf(wide).x == 280; }));
    const auto gap = [&] {
        return x_.capture({.x = 270, .y = 0, .width = 10, .height = barHeight - 2});
    };
    // The strip right before the item shows nothing but the background's shades.
    EXPECT_TRUE(eventually([&] {
        const Picture strip = gap();
        for (int y = 0; y < strip.height(); ++y) {
            if (strip.part(0, y, strip.width(), 1).colours() != 1) {
                return false;
            }
        }
        return titlePicture().part(0, 0, 270, barHeight - 2).colours() > 20;
    }));
}

} // namespace
} // namespace pelistra::testing

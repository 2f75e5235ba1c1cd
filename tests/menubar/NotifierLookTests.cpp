// What icons of the session bus look like: their pictures, labels and tool tips.

#include "tests/menubar/NotifierFixture.h"

#include <fstream>

namespace pelistra::testing {
namespace {

constexpr std::uint32_t yellow = 0xFFFFFF00;

constexpr std::uint32_t lightness(std::uint32_t color) {
    return ((color >> 16U) & 0xFFU) + ((color >> 8U) & 0xFFU) + (color & 0xFFU);
}

class NotifierLookTests : public NotifierFixture {
protected:
    // The tool tip that is shown; empty while there is none.
    [[nodiscard]] std::optional<xcb_window_t> toolTip() {
        for (const xcb_window_t window : x_.shownTopLevels()) {
            if (x_.hasAtom(window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_TOOLTIP")) {
                return window;
            }
        }
        return std::nullopt;
    }
    [[nodiscard]] bool tells(const std::string& text) {
        return eventually([&] {
            const auto window = toolTip();
            return window && x_.title(*window) == text;
        });
    }
    [[nodiscard]] std::uint32_t pixelIn(const std::string& id, double right, double down) {
        const WindowFrame frame = frameOf(id);
        return pixel(frame.midX() + static_cast<int>(right * iconSide),
                     frame.midY() + static_cast<int>(down * iconSide)) &
               colorBits;
    }
    // A folder with one drawing in it, black all over.
    [[nodiscard]] std::string themeWith(const std::string& name) {
        const auto folder = display_.folder() / "icons";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / (name + ".svg"))
            << R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16">)"
            << R"(<rect width="16" height="16" fill="#000000"/></svg>)";
        return folder;
    }
    void keepPicture(const char* name, int height = 160) {
        if (const char* const folder = std::getenv("PELISTRA_TEST_PICTURES")) {
            x_.capture({.x = screenWidth - 700, .y = 0, .width = 700, .height = height})
                .savePng(std::string(folder) + "/" + name + ".png");
        }
    }
};

TEST_F(NotifierLookTests, TheToolTipComesBelowTheIconAndFollowsWhatTheProgramSays) {
    startBar();
    auto options = plain("tip");
    options.toolTipTitle = "Volume";
    options.toolTipText = "<b>50&nbsp;%</b><br/>Built-in &amp; <i>loud</i>";
    NotifierClient& client = add(options);
    ASSERT_TRUE(shows({"tip"}));
    user_.moveTo(centre(frameOf("tip")));
    ASSERT_TRUE(tells("Volume\n50 %\nBuilt-in & loud"));
    const WindowFrame frame = x_.frame(*toolTip()).value_or(WindowFrame{});
    EXPECT_GT(frame.y, barHeight);
    EXPECT_LE(frame.right(), screenWidth);
    keepPicture("tip-light");
    client.change([](auto& changed) { changed.toolTipText = "60 %"; }, "NewToolTip");
    EXPECT_TRUE(tells("Volume\n60 %"));
    user_.turnWheel(centre(frameOf("tip")), UserInput::Wheel::Up, 1);
    EXPECT_TRUE(tells("Volume\n60 %"));
    user_.moveTo({.x = 300, .y = 400});
    EXPECT_TRUE(eventually([&] { return !toolTip(); }));
}

TEST_F(NotifierLookTests, AnIconWithoutAToolTipTellsItsTitleAndAClickEndsIt) {
    startBar({"--theme=dark"});
    auto options = plain("titled");
    options.title = "The title";
    add(options);
    ASSERT_TRUE(shows({"titled"}));
    user_.moveTo(centre(frameOf("titled")));
    ASSERT_TRUE(tells("The title"));
    keepPicture("tip-dark");
    user_.click(centre(frameOf("titled")));
    EXPECT_TRUE(eventually([&] { return !toolTip(); }));
}

TEST_F(NotifierLookTests, AToolTipOfAMegabyteStaysOnTheScreen) {
    startBar();
    auto options = plain("long");
    options.toolTipTitle = std::string(1'000'000, 'W');
    for (int line = 0; line < 10'000; ++line) {
        options.toolTipText += "<p>\xE2\x80\xAE" + std::string(90, 'w') + "<unclosed ";
    }
    add(options);
    ASSERT_TRUE(eventually([&] { return x_.barItem("long").has_value(); }));
    user_.moveTo(centre(frameOf("long")));
    ASSERT_TRUE(eventually([&] { return toolTip().has_value(); }));
    const WindowFrame frame = x_.frame(*toolTip()).value_or(WindowFrame{});
    EXPECT_GE(frame.x, 0);
    EXPECT_LE(frame.right(), screenWidth);
    EXPECT_LT(frame.height, x_.rootFrame().height / 2);
}

TEST_F(NotifierLookTests, SymbolicIconsHaveTheBarsColour) {
    for (const bool dark : {false, true}) {
        startBar({dark ? "--theme=dark" : "--theme=light"});
        auto options = plain("symbolic" + std::to_string(static_cast<int>(dark)));
        options.iconName = "shape-symbolic";
        options.iconThemePath = themeWith(options.iconName);
        add(options);
        constexpr std::uint32_t middleGrey = 3 * 0x80;
        EXPECT_TRUE(eventually([&] {
            const std::uint32_t color = pixelIn(options.id, 0.25, 0.25);
            return x_.barItem(options.id) && color != (red & colorBits) &&
                   (lightness(color) > middleGrey) == dark;
        }));
    }
}

TEST_F(NotifierLookTests, AnOverlayLiesInTheCornerAndAttentionReplacesTheIcon) {
    startBar();
    auto options = plain("parts");
    options.overlayPixmaps = {NotifierClient::plainPixmap(iconSide / 2, yellow)};
    options.attentionPixmaps = {NotifierClient::plainPixmap(iconSide, blue)};
    NotifierClient& client = add(options);
    ASSERT_TRUE(shows({"parts"}));
    const auto has = [&](std::uint32_t whole) {
        return eventually([&] {
            return pixelIn("parts", -0.25, -0.25) == (whole & colorBits) &&
                   pixelIn("parts", -0.25, 0.25) == (whole & colorBits) &&
                   pixelIn("parts", 0.25, 0.25) == (yellow & colorBits);
        });
    };
    EXPECT_TRUE(has(red));
    client.change([](auto& changed) { changed.status = "NeedsAttention"; }, "NewStatus");
    EXPECT_TRUE(has(blue));
    client.change([](auto& changed) { changed.status = "Active"; }, "NewStatus");
    EXPECT_TRUE(has(red));
}

TEST_F(NotifierLookTests, AtTwiceTheScaleTheSharperPictureIsTaken) {
    startBar({"--scale=2"});
    auto options = plain("sharp");
    options.pixmaps.push_back(NotifierClient::plainPixmap(2 * iconSide, blue));
    options.label = "23 °C";
    add(options);
    ASSERT_TRUE(shows({"sharp"}));
    const WindowFrame frame = frameOf("sharp");
    EXPECT_EQ(frame.height, 2 * barHeight);
    // The label is right of the icon.
    EXPECT_TRUE(eventually([&] {
        const Picture icon =
            x_.capture({.x = frame.x, .y = 0, .width = 2 * barHeight, .height = 2 * barHeight});
        const Picture label = x_.capture({.x = frame.x + 2 * barHeight,
                                          .y = 0,
                                          .width = frame.width - 2 * barHeight,
                                          .height = 2 * barHeight - 4});
        constexpr std::size_t side = 2 * iconSide;
        return icon.pixelsOf(blue & colorBits) == side * side &&
               label.pixelsOf(blue & colorBits) == 0 && label.colours() > 4;
    }));
    keepPicture("label-2x");
}

// For the eye: what programs use, side by side.
TEST_F(NotifierLookTests, IconsOfThemesAndFilesAreShownInEveryLook) {
    for (const auto& [theme, scale] :
         {std::pair("light", 1), {"dark", 1}, {"light", 2}, {"dark", 2}}) {
        startBar({std::string("--theme=") + theme, "--scale=" + std::to_string(scale)});
        std::vector<std::string> ids;
        for (const char* const name :
             {"network-wireless-symbolic", "dialog-warning", "audio-volume-high-symbolic",
              "battery-good-symbolic", "/usr/share/icons/hicolor/index.theme", "no-such-icon"}) {
            auto options = plain(std::string(theme) + std::to_string(scale) + name);
            options.title = std::string(1, static_cast<char>('A' + ids.size()));
            options.iconName = name;
            options.pixmaps.clear();
            options.overlayName =
                std::string_view(name) == "dialog-warning" ? "emblem-default" : "";
            ids.insert(ids.begin(), options.id);
            add(options);
            ASSERT_TRUE(eventually([&] { return x_.barItem(options.id).has_value(); }));
        }
        for (const std::string& id : ids) {
            EXPECT_TRUE(eventually([&] {
                const WindowFrame frame = frameOf(id);
                return x_.capture({.x = frame.x,
                                   .y = 2,
                                   .width = frame.width,
                                   .height = frame.height - 6})
                           .colours() > 3;
            })) << id;
        }
        keepPicture((std::string("icons-") + theme + std::to_string(scale)).c_str(), 80);
        endAll();
    }
}

} // namespace
} // namespace pelistra::testing

#include "platform/linux/images/CairoImages.h"
#include "platform/linux/images/LinuxImage.h"
#include "platform/linux/images/PixelBitmap.h"
#include "platform/linux/images/Symbols.h"
#include "platform/linux/statusitem/StatusItemPicture.h"
#include "tests/contract/ImagesContract.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <variant>

#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using linux::CairoImages;
using linux::Pixels;
using linux::StatusItemLook;

struct CairoBackend {
    [[nodiscard]] Images& images() { return own; }
    [[nodiscard]] static std::unique_ptr<Bitmap> bitmap(int width, int height) {
        return std::make_unique<linux::PixelBitmap>(
            Pixels{.width = width, .height = height, .values = {}});
    }

    CairoImages own;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Cairo, ImagesContract, CairoBackend);

constexpr std::array symbolNames{"battery.75percent",
                                 "camera.badge.ellipsis",
                                 "checkmark",
                                 "checkmark.shield.fill",
                                 "chevron.down",
                                 "chevron.right",
                                 "chevron.up",
                                 "circle.grid.2x2",
                                 "clock",
                                 "command",
                                 "keyboard",
                                 "play.circle",
                                 "slider.horizontal.3",
                                 "speaker.wave.2",
                                 "wifi"};
constexpr std::array scales{1.0, 1.25, 1.5, 2.0, 3.0};
constexpr ui::Rgb black{};
constexpr ui::Rgb red{.red = 255};
constexpr std::uint32_t opaqueRed = 0xffff0000;
constexpr std::uint32_t opaqueBlack = 0xff000000;

unsigned alphaAt(const Pixels& pixels, int x, int y) {
    constexpr unsigned alphaShift = 24;
    return pixels.at(x, y) >> alphaShift;
}

Pixels rendered(const Image& image, double scale, const ui::Rgb& label = black) {
    return dynamic_cast<const linux::LinuxImage&>(image).rendered(scale, label);
}

int inkedPixels(const Pixels& pixels) {
    return static_cast<int>(
        std::ranges::count_if(pixels.values, [](std::uint32_t value) { return value != 0; }));
}

// The bounds of everything that is not transparent; left and top inside, right and bottom outside.
struct Area {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool operator==(const Area&) const = default;
};

Area inkedArea(const Pixels& pixels) {
    Area area{.left = pixels.width, .top = pixels.height};
    for (int y = 0; y < pixels.height; ++y) {
        for (int x = 0; x < pixels.width; ++x) {
            if (alphaAt(pixels, x, y) != 0) {
                area = {.left = std::min(area.left, x),
                        .top = std::min(area.top, y),
                        .right = std::max(area.right, x + 1),
                        .bottom = std::max(area.bottom, y + 1)};
            }
        }
    }
    return area;
}

// A divider as the core draws it: a bar in the middle of its picture.
std::shared_ptr<Image> bar() {
    CairoImages images;
    auto image =
        images.drawn({.width = 12, .height = 18}, [](Canvas& canvas, const Canvas::DrawRect& r) {
            canvas.setFillColor(ColorRole::Label);
            canvas.fillRoundedRect(makeRect<ScreenSpace>(r.midX() - 1, 1, 2, r.height() - 2), 1, 1);
            return true;
        });
    image->isTemplate = true;
    return image;
}

TEST(Symbols, EverySymbolLiesInsideItsSize) {
    for (const char* name : symbolNames) {
        const auto symbol = linux::symbolNamed(name);
        ASSERT_TRUE(symbol) << name;
        const double reach = symbol->strokeWidth / 2;
        const auto isInside = [&](double x, double y, double air) {
            return x >= air && y >= air && x <= symbol->width - air && y <= symbol->height - air;
        };
        struct Ends {
            double x = 0;
            double y = 0;

            void operator()(const linux::MoveTo& to) { *this = {.x = to.x, .y = to.y}; }
            void operator()(const linux::LineTo& to) { *this = {.x = to.x, .y = to.y}; }
            void operator()(const linux::CurveTo& to) { *this = {.x = to.x, .y = to.y}; }
            void operator()(const linux::ClosePath& /*close*/) {}
        };
        for (const auto& [outline, air] :
             {std::pair(symbol->strokes, reach), std::pair(symbol->filled, 0.0)}) {
            Ends end{.x = symbol->width / 2, .y = symbol->height / 2};
            for (const auto& step : outline) {
                std::visit(end, step);
                EXPECT_TRUE(isInside(end.x, end.y, air)) << name << ' ' << end.x << ' ' << end.y;
            }
        }
    }
}

TEST(Symbols, TheArrowsHaveOneStrokeWidth) {
    for (const char* name : {"chevron.up", "chevron.down", "checkmark"}) {
        EXPECT_EQ(linux::symbolNamed(name)->strokeWidth,
                  linux::symbolNamed("chevron.right")->strokeWidth);
    }
}

TEST(Symbols, WhatIsCutOutIsEmpty) {
    CairoImages images;
    const auto shield = images.systemSymbol("checkmark.shield.fill", "");
    const Pixels pixels = rendered(*shield, 4);
    EXPECT_EQ(alphaAt(pixels, 25, 40), 0U) << "on the check";
    EXPECT_EQ(alphaAt(pixels, 28, 16), 255U) << "above it";
    const Pixels badge = rendered(*images.systemSymbol("camera.badge.ellipsis", ""), 4);
    EXPECT_EQ(alphaAt(badge, 56, 45), 0U) << "in a dot";
    EXPECT_EQ(alphaAt(badge, 52, 45), 255U) << "between two dots";
}

TEST(Symbols, AnUnknownNameIsNoSymbol) {
    CairoImages images;
    EXPECT_FALSE(linux::symbolNamed("chevron"));
    EXPECT_EQ(images.systemSymbol("no.such.symbol", "x"), nullptr);
    EXPECT_EQ(images.systemSymbol("", "x"), nullptr);
}

TEST(CairoImages, ASymbolCarriesItsDescription) {
    CairoImages images;
    const auto image = images.systemSymbol("chevron.up", "关闭第二行溢出栏");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->accessibilityDescription, "关闭第二行溢出栏");
    EXPECT_FALSE(image->isTemplate);
    EXPECT_GT(image->size().width, 0);
}

TEST(CairoImages, SymbolsAreDrawnAtEveryScale) {
    CairoImages images;
    for (const char* name : symbolNames) {
        for (const double scale : scales) {
            const auto image = images.systemSymbol(name, "");
            const Pixels pixels = rendered(*image, scale);
            EXPECT_EQ(pixels.width, std::ceil(image->size().width * scale));
            EXPECT_GT(inkedPixels(pixels), 10 * scale * scale) << name << " at " << scale;
        }
    }
}

TEST(CairoImages, ATemplateTakesTheColourOfItsSurroundings) {
    CairoImages images;
    const auto image =
        images.drawn({.width = 4, .height = 4}, [](Canvas& canvas, const Canvas::DrawRect& rect) {
            canvas.fillRoundedRect(rect, 0, 0);
            return true;
        });
    EXPECT_EQ(rendered(*image, 1, red).at(2, 2), opaqueBlack);
    image->isTemplate = true;
    EXPECT_EQ(rendered(*image, 1, red).at(2, 2), opaqueRed);
}

TEST(CairoImages, TheLabelColourIsThatOfTheSurroundings) {
    CairoImages images;
    const auto image =
        images.drawn({.width = 4, .height = 4}, [](Canvas& canvas, const Canvas::DrawRect& rect) {
            canvas.setFillColor(ColorRole::Label);
            canvas.fillRoundedRect(rect, 0, 0);
            return true;
        });
    EXPECT_EQ(rendered(*image, 1, red).at(2, 2), opaqueRed);
}

TEST(CairoImages, TheCanvasGrowsUpwards) {
    CairoImages images;
    const auto image =
        images.drawn({.width = 4, .height = 10}, [](Canvas& canvas, const Canvas::DrawRect&) {
            canvas.fillRoundedRect(makeRect<ScreenSpace>(0, 1, 4, 2), 0, 0);
            return true;
        });
    EXPECT_EQ(inkedArea(rendered(*image, 1)), (Area{.left = 0, .top = 7, .right = 4, .bottom = 9}));
}

TEST(CairoImages, AHandlerThatFailsGivesNoPicture) {
    CairoImages images;
    const auto image = images.drawn({.width = 4, .height = 4},
                                    [](Canvas&, const Canvas::DrawRect&) { return false; });
    EXPECT_TRUE(rendered(*image, 1).isEmpty());
}

// A thin bar has straight, fully covered sides at every scale.
TEST(CairoImages, AThinBarIsCrispAtEveryScale) {
    for (const double scale : scales) {
        const Pixels pixels = rendered(*bar(), scale);
        const int middle = pixels.height / 2;
        int covered = 0;
        for (int x = 0; x < pixels.width; ++x) {
            const unsigned alpha = alphaAt(pixels, x, middle);
            EXPECT_TRUE(alpha == 0 || alpha == 255) << alpha << " at " << x << ", scale " << scale;
            covered += alpha == 255 ? 1 : 0;
        }
        EXPECT_EQ(covered, std::lround(2 * scale)) << scale;
    }
}

TEST(PixelBitmap, APictureAtItsOwnScaleIsThePixelsThemselves) {
    const Pixels pixels{.width = 2, .height = 2, .values = {0xff102030, 0x80400000, 0, 0xffffffff}};
    const auto image = linux::PixelBitmap(pixels).image({.width = 1, .height = 1});
    EXPECT_EQ(rendered(*image, 2), pixels);
    const Pixels larger = rendered(*image, 4);
    EXPECT_EQ(larger.width, 4);
    EXPECT_EQ(larger.at(0, 0), pixels.at(0, 0));
}

TEST(StatusItemPicture, NothingToSeeIsNoPicture) {
    EXPECT_TRUE(linux::pictureOf({.width = 3024, .height = 28}).pixels.isEmpty());
    EXPECT_TRUE(linux::pictureOf({.width = 1, .height = 1}).pixels.isEmpty());
}

TEST(StatusItemPicture, TheImageStandsInTheMiddle) {
    for (const double scale : scales) {
        const auto width = static_cast<int>(std::lround(14 * scale));
        const auto height = static_cast<int>(std::lround(28 * scale));
        const auto picture =
            linux::pictureOf({.width = width, .height = height, .scale = scale, .image = bar()});
        const Area inked = inkedArea(picture.pixels);
        const int left = inked.left + picture.x;
        const int top = inked.top + picture.y;
        EXPECT_LE(std::abs(left - (width - inked.right - picture.x)), 1) << scale;
        EXPECT_LE(std::abs(top - (height - inked.bottom - picture.y)), 1) << scale;
    }
}

TEST(StatusItemPicture, AnImageLargerThanItsItemIsCut) {
    const auto picture = linux::pictureOf({.width = 5, .height = 7, .image = bar()});
    EXPECT_EQ(picture.pixels.width, 5);
    EXPECT_EQ(picture.pixels.height, 7);
    EXPECT_EQ(picture.x, 0);
    EXPECT_EQ(picture.y, 0);
}

TEST(StatusItemPicture, FeedbackLiesBehindTheImageAndGrowsWithPressing) {
    StatusItemLook look{.width = 28, .height = 28, .scale = 1, .image = bar()};
    look.feedback = StatusItemLook::Feedback::Hovered;
    const auto hovered = linux::pictureOf(look);
    look.feedback = StatusItemLook::Feedback::Pressed;
    const auto pressed = linux::pictureOf(look);
    EXPECT_EQ(hovered.pixels.width, 28);
    EXPECT_EQ(hovered.pixels.height, 28);
    EXPECT_GT(alphaAt(hovered.pixels, 6, 14), 0U);
    EXPECT_GT(alphaAt(pressed.pixels, 6, 14), alphaAt(hovered.pixels, 6, 14));
    EXPECT_LT(alphaAt(pressed.pixels, 6, 14), 128U);
    EXPECT_EQ(alphaAt(pressed.pixels, 14, 14), 255U);
    EXPECT_EQ(alphaAt(pressed.pixels, 0, 0), 0U);
}

TEST(StatusItemPicture, AVeryLongItemCostsNoMorePixelsThanAButton) {
    const auto picture = linux::pictureOf({.width = 20000,
                                           .height = 56,
                                           .scale = 2,
                                           .image = bar(),
                                           .feedback = StatusItemLook::Feedback::Pressed});
    EXPECT_LE(picture.pixels.width, 4 * 56);
}

} // namespace

} // namespace pelistra::testing

#include "platform/linux/QtImages.h"
#include "platform/linux/StatusItemPicture.h"
#include "platform/linux/Symbols.h"

#include <array>

#include <QPainterPathStroker>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using desktop::QtImages;
using desktop::StatusItemLook;

constexpr std::array symbolNames{"chevron.right", "chevron.up", "chevron.down"};
constexpr std::array scales{1.0, 1.25, 1.5, 2.0, 3.0};
constexpr QRgb opaqueRed = qRgba(255, 0, 0, 255);

int inkedPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += qAlpha(image.pixel(x, y)) != 0 ? 1 : 0;
        }
    }
    return count;
}

// The smallest rectangle around everything that is not transparent.
QRect inkedArea(const QImage& image) {
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0) {
                area = area.united(QRect(x, y, 1, 1));
            }
        }
    }
    return area;
}

// A divider as the core draws it: a bar in the middle of its picture.
std::shared_ptr<Image> bar() {
    QtImages images;
    auto image =
        images.drawn({.width = 12, .height = 18}, [](Canvas& canvas, const Canvas::DrawRect& r) {
            canvas.setFillColor(ColorRole::Label);
            canvas.fillRoundedRect(makeRect<ScreenSpace>(r.midX() - 1, 1, 2, r.height() - 2), 1, 1);
            return true;
        });
    image->isTemplate = true;
    return image;
}

TEST(Symbols, EverySymbolsStrokesLieInsideItsSize) {
    for (const char* name : symbolNames) {
        const auto symbol = desktop::symbolNamed(name);
        ASSERT_TRUE(symbol) << name;
        QPainterPathStroker stroker;
        stroker.setWidth(symbol->strokeWidth);
        stroker.setCapStyle(Qt::RoundCap);
        stroker.setJoinStyle(Qt::RoundJoin);
        const QRectF inked = stroker.createStroke(symbol->strokes).boundingRect();
        EXPECT_FALSE(inked.isEmpty()) << name;
        EXPECT_TRUE(QRectF(0, 0, symbol->width, symbol->height).contains(inked)) << name;
    }
}

TEST(Symbols, AllHaveOneStrokeWidth) {
    for (const char* name : symbolNames) {
        EXPECT_EQ(desktop::symbolNamed(name)->strokeWidth,
                  desktop::symbolNamed("chevron.right")->strokeWidth);
    }
}

TEST(Symbols, AnUnknownNameIsNoSymbol) {
    QtImages images;
    EXPECT_EQ(desktop::symbolNamed("chevron"), std::nullopt);
    EXPECT_EQ(images.systemSymbol("no.such.symbol", "x"), nullptr);
    EXPECT_EQ(images.systemSymbol("", "x"), nullptr);
}

TEST(QtImages, ASymbolCarriesItsDescription) {
    QtImages images;
    const auto image = images.systemSymbol("chevron.up", "关闭第二行溢出栏");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->accessibilityDescription, "关闭第二行溢出栏");
    EXPECT_FALSE(image->isTemplate);
    EXPECT_GT(image->size().width, 0);
}

TEST(QtImages, SymbolsAreDrawnAtEveryScale) {
    QtImages images;
    for (const char* name : symbolNames) {
        for (const double scale : scales) {
            const auto image = images.systemSymbol(name, "");
            const QImage pixels = desktop::rendered(*image, scale, Qt::black);
            EXPECT_EQ(pixels.width(), std::ceil(image->size().width * scale));
            EXPECT_GT(inkedPixels(pixels), 10 * scale * scale) << name << " at " << scale;
        }
    }
}

TEST(QtImages, ATemplateTakesTheColourOfItsSurroundings) {
    QtImages images;
    const auto image =
        images.drawn({.width = 4, .height = 4}, [](Canvas& canvas, const Canvas::DrawRect& rect) {
            canvas.fillRoundedRect(rect, 0, 0);
            return true;
        });
    EXPECT_EQ(desktop::rendered(*image, 1, Qt::red).pixel(2, 2), qRgba(0, 0, 0, 255));
    image->isTemplate = true;
    EXPECT_EQ(desktop::rendered(*image, 1, Qt::red).pixel(2, 2), opaqueRed);
}

TEST(QtImages, TheLabelColourIsThatOfTheSurroundings) {
    QtImages images;
    const auto image =
        images.drawn({.width = 4, .height = 4}, [](Canvas& canvas, const Canvas::DrawRect& rect) {
            canvas.setFillColor(ColorRole::Label);
            canvas.fillRoundedRect(rect, 0, 0);
            return true;
        });
    EXPECT_EQ(desktop::rendered(*image, 1, Qt::red).pixel(2, 2), opaqueRed);
}

TEST(QtImages, TheCanvasGrowsUpwards) {
    QtImages images;
    const auto image =
        images.drawn({.width = 4, .height = 10}, [](Canvas& canvas, const Canvas::DrawRect&) {
            canvas.fillRoundedRect(makeRect<ScreenSpace>(0, 1, 4, 2), 0, 0);
            return true;
        });
    EXPECT_EQ(inkedArea(desktop::rendered(*image, 1, Qt::black)), QRect(0, 7, 4, 2));
}

TEST(QtImages, AHandlerThatFailsGivesNoPicture) {
    QtImages images;
    const auto image = images.drawn({.width = 4, .height = 4},
                                    [](Canvas&, const Canvas::DrawRect&) { return false; });
    EXPECT_TRUE(desktop::rendered(*image, 1, Qt::black).isNull());
}

// A thin bar has straight, fully covered sides at every scale.
TEST(QtImages, AThinBarIsCrispAtEveryScale) {
    for (const double scale : scales) {
        const QImage pixels = desktop::rendered(*bar(), scale, Qt::black);
        const int middle = pixels.height() / 2;
        int covered = 0;
        for (int x = 0; x < pixels.width(); ++x) {
            const int alpha = qAlpha(pixels.pixel(x, middle));
            EXPECT_TRUE(alpha == 0 || alpha == 255) << alpha << " at " << x << ", scale " << scale;
            covered += alpha == 255 ? 1 : 0;
        }
        EXPECT_EQ(covered, std::lround(2 * scale)) << scale;
    }
}

TEST(StatusItemPicture, NothingToSeeIsNoPicture) {
    EXPECT_TRUE(desktop::pictureOf({.width = 3024, .height = 28}).pixels.isNull());
    EXPECT_TRUE(desktop::pictureOf({.width = 1, .height = 1}).pixels.isNull());
}

TEST(StatusItemPicture, TheImageStandsInTheMiddle) {
    for (const double scale : scales) {
        const auto width = static_cast<int>(std::lround(14 * scale));
        const auto height = static_cast<int>(std::lround(28 * scale));
        const auto picture =
            desktop::pictureOf({.width = width, .height = height, .scale = scale, .image = bar()});
        const QRect inked = inkedArea(picture.pixels).translated(picture.x, picture.y);
        EXPECT_LE(std::abs(inked.left() - (width - 1 - inked.right())), 1) << scale;
        EXPECT_LE(std::abs(inked.top() - (height - 1 - inked.bottom())), 1) << scale;
    }
}

TEST(StatusItemPicture, AnImageLargerThanItsItemIsCut) {
    const auto picture = desktop::pictureOf({.width = 5, .height = 7, .image = bar()});
    EXPECT_EQ(picture.pixels.size(), QSize(5, 7));
    EXPECT_EQ(picture.x, 0);
    EXPECT_EQ(picture.y, 0);
}

TEST(StatusItemPicture, FeedbackLiesBehindTheImageAndGrowsWithPressing) {
    StatusItemLook look{.width = 28, .height = 28, .scale = 1, .image = bar()};
    look.feedback = StatusItemLook::Feedback::Hovered;
    const auto hovered = desktop::pictureOf(look);
    look.feedback = StatusItemLook::Feedback::Pressed;
    const auto pressed = desktop::pictureOf(look);
    EXPECT_EQ(hovered.pixels.size(), QSize(28, 28));
    const QPoint beside(6, 14);
    EXPECT_GT(qAlpha(hovered.pixels.pixel(beside)), 0);
    EXPECT_GT(qAlpha(pressed.pixels.pixel(beside)), qAlpha(hovered.pixels.pixel(beside)));
    EXPECT_LT(qAlpha(pressed.pixels.pixel(beside)), 128);
    EXPECT_EQ(qAlpha(pressed.pixels.pixel(14, 14)), 255);
    EXPECT_EQ(qAlpha(pressed.pixels.pixel(0, 0)), 0);
}

TEST(StatusItemPicture, AVeryLongItemCostsNoMorePixelsThanAButton) {
    const auto picture = desktop::pictureOf({.width = 20000,
                                             .height = 56,
                                             .scale = 2,
                                             .image = bar(),
                                             .feedback = StatusItemLook::Feedback::Pressed});
    EXPECT_LE(picture.pixels.width(), 4 * 56);
}

} // namespace

} // namespace pelistra::testing

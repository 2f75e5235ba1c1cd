#include "platform/linux/windows/PanelOutline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QColor>
#include <QPainter>

namespace pelistra::testing {

namespace {

using linux::coverageOf;
using linux::regionOf;
using linux::shadowAround;
using ::testing::ElementsAre;

// A transparent picture with a card of that opacity.
QImage drawn(const QSize& size, const QRect& card, int opacity) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(card, QColor(255, 255, 255, opacity));
    return image;
}

int alphaAt(const QImage& image, int x, int y) {
    return qAlpha(image.pixel(x, y));
}

TEST(PanelOutline, ATranslucentCardCoversItsPlaceWhollyAndNothingElse) {
    const QImage coverage = coverageOf(drawn({40, 30}, {4, 4, 32, 22}, 190));
    EXPECT_EQ(alphaAt(coverage, 20, 15), 255);
    EXPECT_EQ(alphaAt(coverage, 3, 15), 0);
}

TEST(PanelOutline, EqualRowsAreOneRectangle) {
    const QImage coverage = coverageOf(drawn({40, 30}, {4, 5, 32, 22}, 255));
    EXPECT_THAT(regionOf(coverage, 0), ElementsAre(QRect(4, 5, 32, 22)));
    EXPECT_THAT(regionOf(coverage, 1), ElementsAre(QRect(3, 4, 34, 24)));
}

TEST(PanelOutline, GapsAndStepsAreKept) {
    QImage image = drawn({10, 3}, {1, 0, 3, 2}, 255);
    QPainter(&image).fillRect(QRect(6, 0, 2, 3), Qt::black);
    EXPECT_THAT(regionOf(coverageOf(image), 0),
                ElementsAre(QRect(1, 0, 3, 2), QRect(6, 0, 2, 2), QRect(6, 2, 2, 1)));
}

TEST(PanelOutline, NothingDrawnHasNoRegion) {
    EXPECT_TRUE(regionOf(coverageOf(drawn({10, 10}, {}, 0)), 0).empty());
}

TEST(PanelOutline, TheShadowLiesAroundTheCardAndFallsDownwards) {
    const QRect card(40, 40, 120, 60);
    const QImage shadow = shadowAround(coverageOf(drawn({200, 150}, card, 255)), 1);
    EXPECT_EQ(alphaAt(shadow, 100, 70), 0);
    const int above = alphaAt(shadow, 100, 40 - 8);
    const int below = alphaAt(shadow, 100, 100 + 7);
    EXPECT_GT(above, 0);
    EXPECT_GT(below, above);
    EXPECT_EQ(alphaAt(shadow, 100 - 30, 107), below);
}

TEST(PanelOutline, TheShadowEndsWithinItsReach) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const auto pixels = [scale](int points) { return static_cast<int>(points * scale); };
        const QRect card(pixels(linux::shadowReachSide), pixels(linux::shadowReachTop), 200, 100);
        const QSize size(card.right() + 1 + pixels(linux::shadowReachSide),
                         card.bottom() + 1 + pixels(linux::shadowReachBottom));
        const QImage shadow = shadowAround(coverageOf(drawn(size, card, 255)), scale);
        EXPECT_LE(alphaAt(shadow, 0, size.height() / 2), 1) << scale;
        EXPECT_LE(alphaAt(shadow, size.width() - 1, size.height() / 2), 1) << scale;
        EXPECT_LE(alphaAt(shadow, size.width() / 2, 0), 1) << scale;
        EXPECT_LE(alphaAt(shadow, size.width() / 2, size.height() - 1), 1) << scale;
    }
}

} // namespace

} // namespace pelistra::testing

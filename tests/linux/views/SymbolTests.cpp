#include "platform/linux/Symbols.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

namespace pelistra::desktop {
namespace {

class SymbolTest : public ::testing::TestWithParam<const char*> {};

TEST_P(SymbolTest, DrawsInsideItsSize) {
    const auto symbol = symbolNamed(GetParam());
    ASSERT_TRUE(symbol);
    constexpr int scale = 4;
    constexpr int air = 8;
    QImage pixels(static_cast<int>(symbol->width) * scale + 2 * air,
                  static_cast<int>(symbol->height) * scale + 2 * air,
                  QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.translate(air, air);
    painter.scale(scale, scale);
    draw(*symbol, painter, Qt::black);
    painter.end();
    int inside = 0;
    int outside = 0;
    const QRect area = pixels.rect().adjusted(air, air, -air, -air);
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            const bool isDrawn = qAlpha(pixels.pixel(x, y)) > 0;
            (area.contains(x, y) ? inside : outside) += isDrawn ? 1 : 0;
        }
    }
    EXPECT_GT(inside, 100);
    EXPECT_EQ(outside, 0);
}

INSTANTIATE_TEST_SUITE_P(EveryName, SymbolTest,
                         ::testing::Values("battery.75percent", "camera.badge.ellipsis",
                                           "checkmark", "checkmark.shield.fill", "chevron.down",
                                           "chevron.right", "chevron.up", "circle.grid.2x2",
                                           "clock", "command", "keyboard", "play.circle",
                                           "slider.horizontal.3", "speaker.wave.2", "wifi"));

TEST(SymbolNameTest, AnUnknownNameHasNoSymbol) {
    EXPECT_FALSE(symbolNamed("no.such.symbol"));
    EXPECT_FALSE(symbolNamed(""));
}

} // namespace
} // namespace pelistra::desktop

#include "platform/linux/windows/QtPictures.h"

#include "platform/linux/images/CairoImages.h"
#include "platform/linux/images/LinuxImage.h"
#include "tests/desktop/harness/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>
#include <QPainter>

namespace pelistra::linux {
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

// Both ways of drawing give one picture, but for the rounding of partly covered pixels.
TEST_P(SymbolTest, LooksAsInAStatusItem) {
    const auto symbol = symbolNamed(GetParam());
    ASSERT_TRUE(symbol);
    constexpr int scale = 2;
    const auto image = CairoImages().systemSymbol(GetParam(), "");
    const QImage other = rendered(*image, scale, Qt::black);
    QImage pixels(other.size(), QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    draw(*symbol, painter, Qt::black);
    painter.end();
    int ink = 0;
    int difference = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            const int alpha = qAlpha(pixels.pixel(x, y));
            ink += alpha;
            difference += std::abs(alpha - qAlpha(other.pixel(x, y)));
        }
    }
    EXPECT_LT(difference, ink / 10);
}

class ThemeIconTest : public ::testing::Test {
protected:
    ThemeIconTest() {
        QIcon::setThemeSearchPaths({QString::fromStdString(folder_.path() / "icons")});
        QIcon::setThemeName("test");
    }

    static void paint(const std::filesystem::path& path, QRgb colour) {
        std::filesystem::create_directories(path.parent_path());
        QImage picture(32, 32, QImage::Format_ARGB32);
        picture.fill(colour);
        ASSERT_TRUE(picture.save(QString::fromStdString(path)));
    }

    pelistra::testing::TemporaryFolder folder_;
};

TEST_F(ThemeIconTest, IsTheThemesOrTheFile) {
    constexpr QRgb red = qRgb(200, 0, 0);
    constexpr QRgb green = qRgb(0, 200, 0);
    const auto theme = folder_.path() / "icons" / "test";
    paint(theme / "32x32" / "apps" / "known.png", red);
    std::ofstream(theme / "index.theme") << "[Icon Theme]\nName=Test\nDirectories=32x32/apps\n"
                                            "[32x32/apps]\nSize=32\nType=Fixed\n";
    const auto file = folder_.path() / "elsewhere.png";
    paint(file, green);

    const ThemeIcon known("known");
    const QImage fromTheme = rendered(known, 1, Qt::black);
    ASSERT_EQ(fromTheme.size(), QSize(32, 32));
    EXPECT_EQ(fromTheme.pixel(16, 16), red);
    EXPECT_FALSE(known.isMissing);
    const QImage fromFile = rendered(ThemeIcon(file.string()), 1, Qt::black);
    ASSERT_EQ(fromFile.size(), QSize(32, 32));
    EXPECT_EQ(fromFile.pixel(16, 16), green);
}

TEST_F(ThemeIconTest, OneThatIsNotThereSaysSoAndASymbolStandsIn) {
    for (const std::string& none :
         {std::string("unknown"), (folder_.path() / "missing.png").string(),
          std::string("../elsewhere")}) {
        const ThemeIcon icon(none);
        const QImage standIn = rendered(icon, 2, Qt::black);
        EXPECT_TRUE(icon.isMissing) << none;
        EXPECT_EQ(standIn.size(), QSize(64, 64)) << none;
        EXPECT_GT(qAlpha(standIn.pixel(16, 6)), 0) << none;
    }
}

} // namespace
} // namespace pelistra::linux

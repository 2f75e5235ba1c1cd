#include "menubar/Artwork.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::ArgbImage;
using menubar::BarTitle;
using menubar::lightPalette;
using menubar::Metrics;

constexpr std::uint32_t opaque = 0xFF000000;

std::uint32_t at(const ArgbImage& image, int x, int y) {
    return image.pixels[(static_cast<std::size_t>(y) * image.width) + x];
}

bool hasInk(const ArgbImage& image, int begin, int end) {
    for (int y = 0; y < image.height; ++y) {
        for (int x = begin; x < end; ++x) {
            if (at(image, x, y) != 0) {
                return true;
            }
        }
    }
    return false;
}

TEST(ArtworkTests, TheBackgroundIsOpaqueWithALineBelow) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const Metrics metrics(scale);
        const ArgbImage column = backgroundColumn(lightPalette(), metrics);
        ASSERT_EQ(column.width, 1);
        ASSERT_EQ(column.height, metrics.barHeight());
        for (int y = 0; y < column.height; ++y) {
            EXPECT_EQ(at(column, 0, y) & opaque, opaque);
        }
        EXPECT_EQ(at(column, 0, column.height - 1), 0xFFC8C8CCU);
        EXPECT_NE(at(column, 0, column.height - 3), 0xFFC8C8CCU);
    }
}

TEST(ArtworkTests, TheHousingIsBlackWithRoundLowerCorners) {
    const ArgbImage housing = menubar::housingImage(180, Metrics(1));
    ASSERT_EQ(housing.width, 180);
    EXPECT_EQ(at(housing, 0, 0), opaque);
    EXPECT_EQ(at(housing, 179, 0), opaque);
    EXPECT_EQ(at(housing, 90, 27), opaque);
    EXPECT_EQ(at(housing, 0, 27), 0U);
    EXPECT_EQ(at(housing, 179, 27), 0U);
}

TEST(ArtworkTests, ANarrowHousingCanBeDrawn) {
    EXPECT_EQ(menubar::housingImage(1, Metrics(1)).width, 1);
}

TEST(ArtworkTests, TheTitleIsDrawnFromTheLeft) {
    const ArgbImage image =
        titleImage({.application = "Editor", .title = "文本"}, 400, lightPalette(), Metrics(1));
    ASSERT_EQ(image.width, 400);
    EXPECT_TRUE(hasInk(image, 0, 30));
    EXPECT_FALSE(hasInk(image, 300, 400));
}

TEST(ArtworkTests, ALongTitleEndsBeforeItsLimit) {
    const ArgbImage image = titleImage({.application = "Editor", .title = std::string(500, 'w')},
                                       300, lightPalette(), Metrics(1));
    ASSERT_EQ(image.width, 300);
    EXPECT_TRUE(hasInk(image, 200, 300));
}

TEST(ArtworkTests, NoTitleOrNoRoomIsNoPicture) {
    EXPECT_TRUE(titleImage({}, 400, lightPalette(), Metrics(1)).pixels.empty());
    const BarTitle title{.application = "Editor", .title = "x"};
    EXPECT_TRUE(titleImage(title, 10, lightPalette(), Metrics(1)).pixels.empty());
    EXPECT_TRUE(titleImage(title, -5, lightPalette(), Metrics(1)).pixels.empty());
}

TEST(ArtworkTests, ThePlateIsWiderThanItsItemByItsMargin) {
    const Metrics metrics(2);
    const ArgbImage plate = plateImage(56, lightPalette(), metrics);
    const int margin = menubar::plateMargin(metrics);
    ASSERT_EQ(plate.width, 56 + 2 * margin);
    EXPECT_EQ(at(plate, plate.width / 2, plate.height / 2), 0xFFFFFFFFU);
    // Its shadow fades out.
    EXPECT_LT(at(plate, 1, plate.height / 2) & opaque, opaque);
}

} // namespace
} // namespace pelistra::testing

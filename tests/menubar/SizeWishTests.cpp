#include "menubar/SizeWish.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::grantedWidth;
using menubar::Metrics;
using menubar::PixelSize;
using menubar::sizeFromHints;
using menubar::WishSource;

const Metrics single{1};
const Metrics twice{2};

int hinted(int width, int height, const Metrics& metrics = single) {
    return grantedWidth({.source = WishSource::SizeHints, .size = {width, height}}, metrics);
}

int requested(int width, int height, const Metrics& metrics = single) {
    return grantedWidth({.source = WishSource::ResizeRequest, .size = {width, height}}, metrics);
}

int exact(int width, const Metrics& metrics = single) {
    return grantedWidth({.source = WishSource::ResizeRequest, .size = {width, 5}, .exact = true},
                        metrics);
}

std::vector<std::uint32_t> hints(std::uint32_t flags) {
    std::vector<std::uint32_t> words(18);
    words[0] = flags;
    words[5] = 22;
    words[6] = 24;
    words[15] = 40;
    words[16] = 41;
    return words;
}

constexpr std::uint32_t minimum = 1U << 4U;
constexpr std::uint32_t base = 1U << 8U;

TEST(SizeHintsTests, TheMinimumCountsBeforeTheBase) {
    EXPECT_EQ(sizeFromHints(hints(minimum)), (PixelSize{.width = 22, .height = 24}));
    EXPECT_EQ(sizeFromHints(hints(base)), (PixelSize{.width = 40, .height = 41}));
    EXPECT_EQ(sizeFromHints(hints(minimum | base)), (PixelSize{.width = 22, .height = 24}));
}

TEST(SizeHintsTests, HintsWithoutSizesSayNothing) {
    EXPECT_EQ(sizeFromHints(hints(0)), std::nullopt);
    EXPECT_EQ(sizeFromHints({}), std::nullopt);
}

TEST(SizeHintsTests, MalformedHintsSayNothing) {
    std::vector<std::uint32_t> words = hints(base);
    words.resize(16);
    EXPECT_EQ(sizeFromHints(words), std::nullopt);
    words = hints(minimum);
    words.resize(6);
    EXPECT_EQ(sizeFromHints(words), std::nullopt);
}

TEST(SizeHintsTests, ImpossibleSizesAreBounded) {
    std::vector<std::uint32_t> words = hints(minimum);
    words[5] = 0xFFFFFFFF; // -1
    words[6] = 0x7FFFFFFF;
    EXPECT_EQ(sizeFromHints(words), (PixelSize{.width = 0, .height = 65535}));
}

TEST(SizeWishTests, WithoutAWishTheSlotIsSquare) {
    EXPECT_EQ(grantedWidth({}, single), 28);
    EXPECT_EQ(grantedWidth({}, twice), 56);
}

TEST(SizeWishTests, PicturesOfAnySizeGetASquareSlot) {
    for (const int side : {0, 1, 16, 22, 24, 28, 48, 200, 273}) {
        EXPECT_EQ(hinted(side, side), 28) << side;
        EXPECT_EQ(hinted(side, side, twice), 56) << side;
    }
    for (const int side : {1, 16, 22, 28, 200, 273}) {
        EXPECT_EQ(requested(side, side), 28) << side;
    }
}

TEST(SizeWishTests, WhatIsSmallButNotAsHighAsTheBarGetsASquareSlot) {
    EXPECT_EQ(hinted(20, 24), 28);
    EXPECT_EQ(hinted(1, 28), 28);
}

TEST(SizeWishTests, WideItemsGetTheirWidth) {
    EXPECT_EQ(hinted(120, 20), 120);
    EXPECT_EQ(hinted(120, 28), 120);
    EXPECT_EQ(requested(120, 20), 120);
    EXPECT_EQ(requested(200, 30), 200);
    EXPECT_EQ(requested(50, 30000), 28);
}

TEST(SizeWishTests, NarrowItemsThatKnowTheBarsHeightGetTheirWidth) {
    EXPECT_EQ(hinted(12, 28), 12);
    EXPECT_EQ(requested(12, 28), 12);
    EXPECT_EQ(requested(12, 20), 12);
}

TEST(SizeWishTests, ATooHighPictureIsAsWideAsItsProportionsSay) {
    EXPECT_EQ(hinted(400, 200), 56);
    EXPECT_EQ(hinted(100, 200), 14);
}

TEST(SizeWishTests, ExactItemsGetWhatTheyAsk) {
    for (const int width : {1, 5, 14, 22, 28, 500, 3024, 10000}) {
        EXPECT_EQ(exact(width), width);
    }
    EXPECT_EQ(
        grantedWidth({.source = WishSource::SizeHints, .size = {14, 14}, .exact = true}, single),
        14);
}

TEST(SizeWishTests, EveryWidthIsFromOneToTenThousandPoints) {
    EXPECT_EQ(exact(0), 1);
    EXPECT_EQ(exact(30000), 10000);
    EXPECT_EQ(exact(30000, twice), 20000);
    EXPECT_EQ(exact(65535, Metrics(4)), 32767);
    EXPECT_EQ(hinted(30000, 28), 10000);
    EXPECT_EQ(requested(30000, 28), 10000);
}

} // namespace
} // namespace pelistra::testing

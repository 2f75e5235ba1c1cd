#include "menubar/XEmbed.h"

#include <array>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::readXEmbedInfo;

TEST(XEmbedTests, ReadsVersionAndMappedFlag) {
    const auto shown = readXEmbedInfo(std::array<std::uint32_t, 2>{1, 1});
    EXPECT_EQ(shown.version, 1U);
    EXPECT_TRUE(shown.mapped);
    const auto hidden = readXEmbedInfo(std::array<std::uint32_t, 2>{0, 0});
    EXPECT_EQ(hidden.version, 0U);
    EXPECT_FALSE(hidden.mapped);
}

TEST(XEmbedTests, OnlyTheFirstFlagMeansMapped) {
    EXPECT_FALSE(readXEmbedInfo(std::array<std::uint32_t, 2>{0, 0xFFFFFFFE}).mapped);
    EXPECT_TRUE(readXEmbedInfo(std::array<std::uint32_t, 3>{0, 0xFFFFFFFF, 7}).mapped);
}

TEST(XEmbedTests, AMissingOrShortPropertyMeansMapped) {
    EXPECT_TRUE(readXEmbedInfo({}).mapped);
    EXPECT_TRUE(readXEmbedInfo(std::array<std::uint32_t, 1>{0}).mapped);
}

} // namespace
} // namespace pelistra::testing

#include "platform/x11/Resources.h"

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::Optional;
using x11::textResolutionIn;

TEST(ResourcesTests, TheResolutionIsFoundInItsLine) {
    EXPECT_THAT(textResolutionIn("Xft.dpi:\t144\nXcursor.size:\t24\n"), Optional(144.0));
    EXPECT_THAT(textResolutionIn("*background: white\nXft.dpi: 120.5"), Optional(120.5));
    EXPECT_THAT(textResolutionIn("Xft.dpitch: 96\n \tXft.dpi \t: 192\n"), Optional(192.0));
}

TEST(ResourcesTests, OtherEntriesAreNotTheResolution) {
    for (const char* resources : {"", "\n\n", "MyXft.dpi: 144", "Xft.dpi", "Xft.dpi\n: 96"}) {
        EXPECT_EQ(textResolutionIn(resources), std::nullopt) << resources;
    }
}

TEST(ResourcesTests, WhatIsNoPositiveNumberIsNoResolution) {
    for (const char* resources : {"Xft.dpi:", "Xft.dpi: much", "Xft.dpi: 0", "Xft.dpi: -96",
                                  "Xft.dpi: nan", "Xft.dpi: inf", "Xft.dpi: much\nXft.dpi: 96"}) {
        EXPECT_EQ(textResolutionIn(resources), std::nullopt) << resources;
    }
}

} // namespace
} // namespace pelistra::testing

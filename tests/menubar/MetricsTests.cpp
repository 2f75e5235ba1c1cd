#include "menubar/Metrics.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::Metrics;
using menubar::scaleFromResources;

TEST(MetricsTests, PointsBecomeWholePixels) {
    EXPECT_EQ(Metrics().barHeight(), 28);
    EXPECT_EQ(Metrics(1.5).barHeight(), 42);
    EXPECT_EQ(Metrics(2).barHeight(), 56);
    EXPECT_EQ(Metrics(1.25).pixels(3), 4);
    EXPECT_EQ(Metrics(1.25).scaleHundredths(), 125);
}

TEST(MetricsTests, TheScaleIsTheFontResolutionOver96) {
    EXPECT_EQ(scaleFromResources("Xft.dpi:\t96\n"), 1);
    EXPECT_EQ(scaleFromResources("*customization:\t-color\nXft.dpi: 192\nXft.hinting: 1\n"), 2);
    EXPECT_EQ(scaleFromResources("Xft.dpi:144"), 1.5);
    EXPECT_EQ(scaleFromResources("Xft.dpitch: 96\n \tXft.dpi \t: 192\n"), 2);
}

TEST(MetricsTests, ResourcesThatMakeNoSenseMeanOne) {
    for (const char* resources :
         {"", "Xft.dpi:", "Xft.dpi:\tmany\n", "Xft.dpi: 0\n", "Xft.dpi: -96\n", "Xft.dpi: nan\n",
          "NotXft.dpi: 192\n", "Xft.dpi"}) {
        EXPECT_EQ(scaleFromResources(resources), 1) << resources;
    }
}

TEST(MetricsTests, TheScaleIsBounded) {
    EXPECT_EQ(scaleFromResources("Xft.dpi: 1\n"), 0.5);
    EXPECT_EQ(scaleFromResources("Xft.dpi: 100000\n"), 8);
}

} // namespace
} // namespace pelistra::testing

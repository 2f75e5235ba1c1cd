#include "menubar/Layout.h"

#include <chrono>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::Gap;
using menubar::layOut;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int barWidth = 1000;

std::vector<int> positions(const std::vector<int>& widths, std::optional<Gap> housing = {}) {
    return layOut(widths, barWidth, housing);
}

TEST(LayoutTests, NothingIsLaidOutAsNothing) {
    EXPECT_THAT(positions({}), IsEmpty());
}

TEST(LayoutTests, ItemsStandSideBySideFromTheRightEdge) {
    EXPECT_THAT(positions({28, 50, 28}), ElementsAre(894, 922, 972));
}

TEST(LayoutTests, AGrownDividerPushesWhatIsLeftOfItOut) {
    EXPECT_THAT(positions({28, 28, 2000, 28}), ElementsAre(-1084, -1056, -1028, 972));
}

TEST(LayoutTests, AnItemThatWouldBeCutStandsWhollyOutside) {
    EXPECT_THAT(positions({30, 40, 980}), ElementsAre(-70, -40, 20));
    EXPECT_THAT(positions({20, 980}), ElementsAre(0, 20));
}

TEST(LayoutTests, AnItemWiderThanTheBarIsNotTakenOut) {
    EXPECT_THAT(positions({1001, 28}), ElementsAre(-29, 972));
    EXPECT_THAT(positions({1000, 28}), ElementsAre(-1000, 972));
}

TEST(LayoutTests, NoItemOverlapsTheHousing) {
    const Gap housing{.begin = 900, .end = 950};
    // One fits right of it; the next two go left of it.
    EXPECT_THAT(positions({28, 28, 28}, housing), ElementsAre(844, 872, 972));
    // Touching the edge is no overlap.
    EXPECT_THAT(positions({10, 50}, housing), ElementsAre(890, 950));
    // A wide one that overlaps it everywhere goes left as a whole.
    EXPECT_THAT(positions({28, 2000, 28}, housing), ElementsAre(-1128, -1100, 972));
}

TEST(LayoutTests, AHousingAtTheRightEdgeMovesEverythingLeftOfIt) {
    EXPECT_THAT(positions({28, 28}, Gap{.begin = 980, .end = 1000}), ElementsAre(924, 952));
}

TEST(LayoutTests, AHousingAtTheLeftEdgeLeavesNoRoomBeforeIt) {
    EXPECT_THAT(positions({28, 980}, Gap{.begin = -4, .end = 10}), ElementsAre(-32, 20));
}

// Whatever the widths: the order holds, nothing overlaps, nothing covers the housing, and no item
// that could be whole is cut.
TEST(LayoutTests, HoldsItsRulesForAnyWidths) {
    std::mt19937 random(20260101);
    std::uniform_int_distribution<int> width(1, 120);
    for (int round = 0; round < 200; ++round) {
        std::vector<int> widths(40);
        std::ranges::generate(widths, [&] { return width(random); });
        const int begin = width(random) * 8;
        const Gap housing{.begin = begin, .end = begin + width(random)};
        const std::vector<int> x = positions(widths, housing);
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const int right = x[i] + widths[i];
            EXPECT_LE(right, i + 1 < widths.size() ? x[i + 1] : barWidth);
            EXPECT_TRUE(right <= housing.begin || x[i] >= housing.end);
            EXPECT_TRUE(x[i] >= 0 || right <= 0);
        }
    }
}

TEST(LayoutTests, ManyItemsKeepTheirOrderFarToTheLeft) {
    const std::vector<int> widths(500, 28);
    const std::vector<int> x = positions(widths);
    EXPECT_EQ(x.back(), 972);
    EXPECT_LT(x.front(), -12000);
    EXPECT_TRUE(std::ranges::is_sorted(x));
}

} // namespace
} // namespace pelistra::testing

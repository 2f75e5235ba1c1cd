#include "overflow/WindowIdMap.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <map>

namespace pelistra::testing {
namespace {

TEST(WindowIdMapTest, EmptyMapKnowsNothing) {
    WindowIdMap<int> map(0);
    EXPECT_EQ(map.find(0), nullptr);
    EXPECT_EQ(map.find(std::numeric_limits<WindowId>::max()), nullptr);
}

TEST(WindowIdMapTest, FirstValueStays) {
    WindowIdMap<int> map(2);
    const auto [first, firstIsNew] = map.emplace(0, 5);
    EXPECT_TRUE(firstIsNew);
    EXPECT_EQ(*first, 5);
    const auto [again, againIsNew] = map.emplace(0, 6);
    EXPECT_FALSE(againIsNew);
    EXPECT_EQ(again, first);
    EXPECT_EQ(*map.find(0), 5);
    *map.find(0) = 7;
    EXPECT_EQ(*map.find(0), 7);
}

TEST(WindowIdMapTest, HoldsAsManyAsItWasMadeFor) {
    // Ids that count up, that are far apart, and that differ in their high bits only.
    for (const WindowId stride : {1U, 7U, 4096U, 0x200000U, 0x9e3779b9U}) {
        for (const std::size_t count : {std::size_t{1}, std::size_t{2}, std::size_t{1000}}) {
            WindowIdMap<std::size_t> map(count);
            std::map<WindowId, std::size_t> expected;
            for (std::size_t index = 0; index < count; ++index) {
                const auto id = static_cast<WindowId>(stride * index);
                EXPECT_EQ(map.emplace(id, index).second, expected.emplace(id, index).second);
            }
            for (const auto& [id, index] : expected) {
                ASSERT_NE(map.find(id), nullptr);
                EXPECT_EQ(*map.find(id), index);
                EXPECT_EQ(map.find(id + 3) != nullptr, expected.contains(id + 3));
            }
        }
    }
}

} // namespace
} // namespace pelistra::testing

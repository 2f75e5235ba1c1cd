#include "menubar/OrderMemory.h"

#include "menubar/Docking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::ItemIdentity;
using menubar::OrderMemory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

ItemIdentity named(const std::string& name, int ordinal = 0) {
    return {.instance = name, .className = name, .ordinal = ordinal};
}

std::vector<std::string> namesOf(const std::vector<ItemIdentity>& items) {
    std::vector<std::string> names;
    for (const ItemIdentity& item : items) {
        names.push_back(item.ordinal == 0 ? item.instance
                                          : item.instance + std::to_string(item.ordinal));
    }
    return names;
}

// A bar without windows: what is docked now, and what is remembered.
class Bar {
public:
    void dock(const ItemIdentity& item, std::optional<std::uint32_t> preferred = {}) {
        const std::size_t index = memory.place(item, present, preferred);
        ASSERT_LE(index, present.size());
        present.insert(present.begin() + static_cast<std::ptrdiff_t>(index), item);
    }
    void dockNamed(const std::string& name, std::optional<std::uint32_t> preferred = {}) {
        dock(named(name), preferred);
    }
    void leave(const std::string& name) { std::erase(present, named(name)); }
    // The user drags the item to an index.
    void drag(const std::string& name, std::size_t index) {
        leave(name);
        present.insert(present.begin() + static_cast<std::ptrdiff_t>(index), named(name));
        memory.move(present, index);
    }
    [[nodiscard]] std::vector<std::string> names() const { return namesOf(present); }
    [[nodiscard]] std::vector<std::string> remembered() const { return namesOf(memory.order()); }

    OrderMemory memory;
    std::vector<ItemIdentity> present;
};

TEST(OrderMemoryTests, NewItemsComeInAtTheLeftEnd) {
    Bar bar;
    bar.dockNamed("a");
    bar.dockNamed("b");
    bar.dockNamed("c");
    EXPECT_THAT(bar.names(), ElementsAre("c", "b", "a"));
}

TEST(OrderMemoryTests, AnItemComesBackToItsPlace) {
    Bar bar;
    for (const char* name : {"a", "b", "c", "d"}) {
        bar.dockNamed(name);
    }
    bar.leave("b");
    bar.dockNamed("e");
    bar.dockNamed("b");
    EXPECT_THAT(bar.names(), ElementsAre("e", "d", "c", "b", "a"));
}

TEST(OrderMemoryTests, TheOrderDoesNotDependOnWhoStartsFirst) {
    Bar before;
    for (const char* name : {"a", "b", "c", "d"}) {
        before.dockNamed(name);
    }
    Bar after;
    after.memory = before.memory;
    for (const char* name : {"c", "a", "d", "b"}) {
        after.dockNamed(name);
    }
    EXPECT_THAT(after.names(), ElementsAre("d", "c", "b", "a"));
    EXPECT_EQ(after.memory, before.memory);
}

TEST(OrderMemoryTests, APreferredPositionCountsTheItemsToTheRight) {
    Bar bar;
    bar.dockNamed("a");
    bar.dockNamed("b");
    bar.dockNamed("control", 0);
    EXPECT_THAT(bar.names(), ElementsAre("b", "a", "control"));
    bar.dockNamed("divider", 1);
    EXPECT_THAT(bar.names(), ElementsAre("b", "a", "divider", "control"));
    bar.dockNamed("far", 99);
    EXPECT_THAT(bar.names(), ElementsAre("far", "b", "a", "divider", "control"));
}

TEST(OrderMemoryTests, APreferredPositionDoesNotMoveWhatIsRemembered) {
    Bar bar;
    bar.dockNamed("control", 0);
    bar.dockNamed("a");
    bar.drag("control", 0);
    bar.leave("control");
    bar.dockNamed("control", 0);
    EXPECT_THAT(bar.names(), ElementsAre("control", "a"));
}

TEST(OrderMemoryTests, PositionZeroIsRightOfThoseThatDoNotRun) {
    Bar bar;
    bar.dockNamed("a");
    bar.leave("a");
    bar.dockNamed("control", 0);
    bar.dockNamed("a");
    EXPECT_THAT(bar.names(), ElementsAre("a", "control"));
}

TEST(OrderMemoryTests, ADragKeepsThePlacesOfThoseThatDoNotRun) {
    Bar bar;
    for (const char* name : {"d", "c", "x", "b", "a"}) {
        bar.dockNamed(name);
    }
    ASSERT_THAT(bar.names(), ElementsAre("a", "b", "x", "c", "d"));
    bar.leave("x");
    bar.drag("a", 2); // b c a d
    EXPECT_THAT(bar.names(), ElementsAre("b", "c", "a", "d"));
    bar.dockNamed("x");
    EXPECT_THAT(bar.names(), ElementsAre("b", "x", "c", "a", "d"));
}

TEST(OrderMemoryTests, ADragToEitherEndIsRemembered) {
    Bar bar;
    for (const char* name : {"c", "b", "a"}) {
        bar.dockNamed(name);
    }
    bar.drag("a", 2);
    EXPECT_THAT(bar.remembered(), ElementsAre("b", "c", "a"));
    bar.drag("c", 0);
    EXPECT_THAT(bar.remembered(), ElementsAre("c", "b", "a"));
}

TEST(OrderMemoryTests, ALoneItemCanBeDragged) {
    Bar bar;
    bar.dockNamed("a");
    bar.drag("a", 0);
    EXPECT_THAT(bar.remembered(), ElementsAre("a"));
}

TEST(OrderMemoryTests, TheIconsOfOneProgramKeepTheirRelativeOrder) {
    Bar bar;
    bar.dock(named("p", 0));
    bar.dockNamed("q");
    bar.dock(named("p", 1));
    ASSERT_THAT(bar.names(), ElementsAre("p1", "q", "p"));
    bar.present.clear();
    bar.dock(named("p", 0));
    bar.dock(named("p", 1));
    bar.dockNamed("q");
    EXPECT_THAT(bar.names(), ElementsAre("p1", "q", "p"));
}

TEST(OrderMemoryTests, MemoryHasALimitAndForgetsWhoDoesNotRun) {
    Bar bar;
    bar.dockNamed("kept");
    for (std::size_t i = 0; i < OrderMemory::capacity + 20; ++i) {
        bar.dockNamed("guest" + std::to_string(i));
        bar.leave("guest" + std::to_string(i));
    }
    EXPECT_EQ(bar.memory.order().size(), OrderMemory::capacity);
    EXPECT_EQ(bar.memory.order().back(), named("kept"));
}

TEST(OrderMemoryTests, TheNewestIsNeverForgottenWhereverItGoes) {
    Bar bar;
    for (std::size_t i = 0; i < OrderMemory::capacity; ++i) {
        bar.dockNamed("guest" + std::to_string(i));
        bar.leave("guest" + std::to_string(i));
    }
    bar.dockNamed("control", 0);
    EXPECT_EQ(bar.memory.order().size(), OrderMemory::capacity);
    EXPECT_EQ(bar.memory.order().back(), named("control"));
}

TEST(OrderMemoryTests, TextCarriesTheWholeOrder) {
    Bar bar;
    bar.dock(named("中文 name", 3));
    bar.dock({.instance = "", .className = "only class"});
    bar.dock({.instance = "", .className = ""});
    const OrderMemory::Parsed parsed = OrderMemory::parse(bar.memory.text());
    EXPECT_EQ(parsed.memory, bar.memory);
    EXPECT_EQ(parsed.damagedLines, 0U);
}

TEST(OrderMemoryTests, DamagedLinesAreLeftOut) {
    const OrderMemory::Parsed parsed = OrderMemory::parse("pelistra-menubar-order 1\n"
                                                          "a\tA\t0\n"
                                                          "no tabs\n"
                                                          "one\ttab\n"
                                                          "b\tB\tx\n"
                                                          "b\tB\t-1\n"
                                                          "b\tB\t99999\n"
                                                          "b\tB\t0\tmore\n"
                                                          "c\x01\tC\t0\n"
                                                          "d\xff\tD\t0\n"
                                                          "a\tA\t0\n"
                                                          "\n"
                                                          "z\tZ\t1");
    EXPECT_THAT(namesOf(parsed.memory.order()), ElementsAre("a", "z1"));
    EXPECT_EQ(parsed.damagedLines, 10U);
}

TEST(OrderMemoryTests, ATextWithoutItsHeadingIsReadAsFarAsItMakesSense) {
    EXPECT_THAT(namesOf(OrderMemory::parse("a\tA\t0\n").memory.order()), ElementsAre("a"));
    EXPECT_THAT(OrderMemory::parse("").memory.order(), IsEmpty());
    EXPECT_EQ(OrderMemory::parse("").damagedLines, 0U);
    EXPECT_EQ(OrderMemory::parse("rubbish").damagedLines, 1U);
}

TEST(OrderMemoryTests, TheOrderOfAFullBarIsKept) {
    OrderMemory memory;
    std::vector<ItemIdentity> present;
    for (std::size_t i = 0; i < menubar::Docking::itemLimit; ++i) {
        const ItemIdentity item{
            .instance = "n" + std::to_string(i), .className = "N", .ordinal = 0};
        memory.place(item, present, 0);
        present.push_back(item);
    }
    const OrderMemory::Parsed parsed = OrderMemory::parse(memory.text());
    EXPECT_EQ(parsed.memory.order(), present);
    EXPECT_EQ(parsed.damagedLines, 0U);
}

TEST(OrderMemoryTests, NoMoreThanTheLimitIsRead) {
    std::string text;
    for (std::size_t i = 0; i < OrderMemory::capacity + 5; ++i) {
        text += "n" + std::to_string(i) + "\tN\t0\n";
    }
    const OrderMemory::Parsed parsed = OrderMemory::parse(text);
    EXPECT_EQ(parsed.memory.order().size(), OrderMemory::capacity);
    EXPECT_EQ(parsed.damagedLines, 5U);
}

} // namespace
} // namespace pelistra::testing

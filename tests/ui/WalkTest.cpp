#include "ui/Walk.h"
#include "tests/ui/ViewQueries.h"
#include "ui/Nodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::ElementsAre;

View text(const char* text) {
    return Text{.text = text};
}

TEST(ChildrenOf, LeavesHaveNone) {
    for (const View& leaf :
         {text("a"), View(Symbol{.name = "a"}), View(Picture{}), View(Toggle{.label = "a"}),
          View(Spacer()), View(Divider()), View(FilledShape{}), View(StrokedShape{})}) {
        EXPECT_TRUE(childrenOf(leaf).empty());
    }
}

TEST(ChildrenOf, StacksGiveTheirChildrenInOrder) {
    const std::vector<View> children = {text("a"), text("b")};
    EXPECT_EQ(childrenOf(HStack{.children = children}), children);
    EXPECT_EQ(childrenOf(VStack{.children = children}), children);
    EXPECT_EQ(childrenOf(ZStack{.children = children}), children);
}

TEST(ChildrenOf, ModifiersGiveTheirContent) {
    const View content = text("a");
    const std::vector<View> alone = {content};
    EXPECT_EQ(childrenOf(content.padding({})), alone);
    EXPECT_EQ(childrenOf(content.frame({})), alone);
    EXPECT_EQ(childrenOf(content.contentShape(Circle())), alone);
    EXPECT_EQ(childrenOf(content.help("")), alone);
    EXPECT_EQ(childrenOf(content.accessibilityLabel("")), alone);
    EXPECT_EQ(childrenOf(content.id("")), alone);
    EXPECT_EQ(childrenOf(content.transition({})), alone);
    EXPECT_EQ(childrenOf(content.animation(EaseOut(), 0)), alone);
    EXPECT_EQ(childrenOf(content.alert({})), alone);
    EXPECT_EQ(childrenOf(HorizontalScroll{.content = content}), alone);
    EXPECT_EQ(childrenOf(Button{.label = content}), alone);
}

TEST(ChildrenOf, WhatLiesBehindComesFirst) {
    EXPECT_EQ(childrenOf(text("front").background(text("behind"))),
              (std::vector<View>{text("behind"), text("front")}));
    EXPECT_EQ(childrenOf(text("below").overlay(text("above"))),
              (std::vector<View>{text("below"), text("above")}));
}

TEST(ChildrenOf, FormsGiveTheRowsOfAllSections) {
    const View form = GroupedForm{.sections = {{.title = "1", .rows = {text("a"), text("b")}},
                                               {.title = "2", .rows = {text("c")}}}};
    EXPECT_THAT(texts(form), ElementsAre("a", "b", "c"));
}

} // namespace
} // namespace pelistra::testing

#include "tests/ui/Arranged.h"

// What is kept from one body to the next.
namespace pelistra::testing {
namespace {

using namespace ui;

constexpr Surface surface = {.size = {.width = 200, .height = 100}};

class ArrangerTest : public ::testing::Test {
protected:
    // A text, a button and a switch, whose actions say their name.
    [[nodiscard]] View body(const std::string& name) {
        const auto say = [this, name] { called_ = name; };
        return View(VStack{.children = {Text{.text = "text"},
                                        Button{.label = Text{.text = "press"}, .action = say},
                                        Toggle{.label = "switch",
                                               .action = [say](bool /*isOn*/) { say(); }}}})
            .alert({.button = {.label = "good", .action = say}});
    }

    InventedMeasures measures_;
    Arranger arranger_{measures_};
    std::string called_;
};

TEST_F(ArrangerTest, AnUnchangedViewIsNotArrangedAgain) {
    const auto first = framesOf(arranger_.arrange(body("old"), surface).elements);
    EXPECT_GT(measures_.asked, 0);
    measures_.asked = 0;
    EXPECT_EQ(framesOf(arranger_.arrange(body("new"), surface).elements), first);
    EXPECT_EQ(measures_.asked, 0);
}

TEST_F(ArrangerTest, TheActionsAreAlwaysTheNewest) {
    static_cast<void>(arranger_.arrange(body("old"), surface));
    const Arrangement& now = arranger_.arrange(body("new"), surface);
    now.elements.at(1).view.as<Button>()->action();
    EXPECT_EQ(std::exchange(called_, ""), "new");
    now.elements.at(2).view.as<Toggle>()->action(true);
    EXPECT_EQ(std::exchange(called_, ""), "new");
    now.alert->button.action();
    EXPECT_EQ(called_, "new");
}

TEST_F(ArrangerTest, WhatDiffersIsArranged) {
    static_cast<void>(arranger_.arrange(body("a"), surface));
    const auto asks = [this](const View& view, const Surface& on) {
        measures_.asked = 0;
        static_cast<void>(arranger_.arrange(view, on));
        return measures_.asked > 0;
    };
    EXPECT_TRUE(asks(body("a").padding(Edges::all(1)), surface));
    Surface other = surface;
    other.size.width = 100;
    EXPECT_TRUE(asks(body("a"), other));
    other.scale = 2;
    EXPECT_TRUE(asks(body("a"), other));
    other.coveredTop = 20;
    EXPECT_TRUE(asks(body("a"), other));
    EXPECT_FALSE(asks(body("a"), other));
    arranger_.forget();
    EXPECT_TRUE(asks(body("a"), other));
}

} // namespace
} // namespace pelistra::testing

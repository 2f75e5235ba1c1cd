#include "secondrow/SecondRowView.h"
#include "tests/secondrow/PanelFixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::IsEmpty;

class SecondRowBadInputTest : public PanelFixture {};

TEST_F(SecondRowBadInputTest, DrawsAnyNumberOfItems) {
    for (const std::size_t count : {0U, 1U, 17U, 400U}) {
        store_->items.set(items(count));
        show();
        EXPECT_EQ(all<Represented>(body()).size(), count);
        EXPECT_EQ(all<HorizontalScroll>(body()).size(), 1);
        EXPECT_EQ(texts(body()).size(), count == 0 ? 1 : 0);
    }
}

TEST_F(SecondRowBadInputTest, KeepsANameOfTenThousandCharactersWholeInItsHelp) {
    std::string name;
    for (int i = 0; i < 10'000; ++i) {
        name += "名";
    }
    store_->items.set({item(1, name)});
    show();
    EXPECT_EQ(all<Help>(body()).front().text, name + "\n左键：打开应用；右键：打开原托盘菜单");
    EXPECT_EQ(only<AccessibilityLabel>(body()).text, name + "，点击打开应用");
    EXPECT_EQ(panel().contentSize.width, 280);
}

TEST_F(SecondRowBadInputTest, AMessageOfTenThousandCharactersStaysOneLine) {
    store_->message.set(std::string(10'000, 'm'));
    show();
    EXPECT_EQ(textNode(body(), std::string(10'000, 'm')).lineLimit, 1);
    EXPECT_EQ(panel().contentSize, (Size{.width = 280, .height = 78}));
}

TEST_F(SecondRowBadInputTest, NamesWithMarkupAndLineBreaksAreHandedOnAsTheyAre) {
    store_->items.set({item(1, "<b>a</b>\n\t&amp;")});
    EXPECT_EQ(all<Help>(body()).front().text,
              "<b>a</b>\n\t&amp;\n左键：打开应用；右键：打开原托盘菜单");
}

TEST_F(SecondRowBadInputTest, AnItemWithoutAnyNameStillSaysWhatAClickDoes) {
    store_->items.set({item(1, "")});
    EXPECT_EQ(all<Help>(body()).front().text, "\n左键：打开应用；右键：打开原托盘菜单");
    EXPECT_EQ(only<AccessibilityLabel>(body()).text, "，点击打开应用");
}

TEST_F(SecondRowBadInputTest, AnItemWhoseProgramDiedBetweenDrawingAndClickLeavesTheRowOpen) {
    fakes_.runningApplications.running[5000] = {};
    store_->items.set(items(1));
    show();
    const auto button = all<Button>(body()).front();
    fakes_.runningApplications.running.clear();
    button.action();
    EXPECT_TRUE(panel().visible);
    EXPECT_EQ(store_->message.get(), "该菜单栏项目已经退出。");
}

TEST_F(SecondRowBadInputTest, AClickOnACellThatHasGoneFromTheListStillNamesItsItem) {
    store_->items.set(items(2));
    const View old = body();
    store_->items.set({});
    WindowId asked = 0;
    controller_->onOriginalMenu = [&asked](const OverflowItem& item) { asked = item.id; };
    all<Represented>(old).back().value->makeView(fakes_.application)->rightMouseDown({});
    EXPECT_EQ(asked, 2);
}

TEST_F(SecondRowBadInputTest, AButtonWithoutANumberForItsSizeIsNotPlaced) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto& frame : {makeRect<ScreenSpace>(744, barBottom, nan, 24),
                              makeRect<ScreenSpace>(744, barBottom, 24, nan)}) {
        button_->frame = frame;
        show();
        EXPECT_FALSE(panel().visible);
    }
}

TEST_F(SecondRowBadInputTest, AScreenNarrowerThanTheMarginsGivesAnEmptyWidthNotANegativeOne) {
    fakes_.screens.list = {plainScreen(0, 12)};
    button_->frame = makeRect<ScreenSpace>(0, barBottom, 12, 24);
    show();
    EXPECT_EQ(panel().contentSize.width, 0);
    // The margins cross, and the right one wins.
    EXPECT_EQ(panel().frame().minX(), 4);
}

TEST_F(SecondRowBadInputTest, AThousandOpeningsLeaveOneMonitorAndOneObserver) {
    store_->items.set(items(50));
    for (int i = 0; i < 1000; ++i) {
        show();
        controller_->close();
    }
    show();
    EXPECT_EQ(fakes_.globalClicks.monitors(), 1);
    EXPECT_EQ(fakes_.screens.observers(), 1);
    EXPECT_EQ(fakes_.panels.made.size(), 1);
}

} // namespace
} // namespace pelistra::testing

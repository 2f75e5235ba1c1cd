#include "tests/platform/FakeLoginItem.h"
#include "tests/ui/ViewQueries.h"
#include "ui/OnboardingView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* welcomeText =
    "Pelistra 用一个分隔线划出隐藏区，折叠后可在菜单栏下方打开第二行溢出栏。";
constexpr const char* dividerText = "不常用图标放在竖线左边；经常使用的图标放在竖线和箭头之间。";
constexpr const char* arrangeText = "先保持箭头为展开状态，然后按住 Command "
                                    "键，把菜单栏图标拖到分隔线左右两侧。这个拖动由你亲自完成"
                                    "，Pelistra 不会代替你操作鼠标。";
constexpr const char* readyText =
    "点击箭头先折叠图标，再次点击打开第二行。左键点击第二行图标可打开应用；右键点击可尝试原托盘菜单"
    "。";

class OnboardingStepsTest : public ::testing::Test {
protected:
    Journal journal_;
    FakeLoginItem loginItem_{journal_};
    OnboardingView view_{loginItem_, [](bool) {}};
};

// The largest width that the text is held to.
std::optional<double> widthLimitOf(const View& in, const std::string& text) {
    for (const auto& frame : all<Frame>(in)) {
        const auto* content = frame.content.as<Text>();
        if (content != nullptr && content->text == text) {
            return frame.limits.maxWidth;
        }
    }
    return std::nullopt;
}

TEST_F(OnboardingStepsTest, SampleIconsAreCirclesOfThePrimaryColour) {
    const auto row = asNode<HStack>(OnboardingView::sampleIcons(3, 0.4));
    ASSERT_EQ(row.children.size(), 3);
    for (const auto& child : row.children) {
        EXPECT_TRUE(child == View(FilledShape{.outline = Circle(),
                                              .fill = Color{.base = Role::Primary, .opacity = 0.4}})
                                 .frame({.width = 12, .height = 12}));
    }
    EXPECT_THAT(asNode<HStack>(OnboardingView::sampleIcons(0, 1)).children, IsEmpty());
}

TEST_F(OnboardingStepsTest, TheLogoIsARoundedSquareWithAGradient) {
    const View logo = OnboardingView::logo();
    const auto backed = only<Background>(logo);
    const auto frame = asNode<Frame>(backed.content);
    EXPECT_EQ(frame.limits, (FrameLimits{.width = 112, .height = 112}));
    const auto shape = asNode<FilledShape>(backed.behind);
    EXPECT_EQ(shape.outline, Outline(RoundedRectangle{.cornerRadius = 28}));
    EXPECT_TRUE(std::holds_alternative<LinearGradient>(shape.fill));
}

TEST_F(OnboardingStepsTest, TheLogoHoldsIconsOnBothSidesOfADivider) {
    const auto row = all<HStack>(OnboardingView::logo()).front();
    ASSERT_EQ(row.children.size(), 3);
    EXPECT_FALSE(all<FilledShape>(row.children[0]).empty());
    EXPECT_EQ(all<FilledShape>(row.children[1]).size(), 1);
    EXPECT_FALSE(all<FilledShape>(row.children[2]).empty());
}

// Everything that is drawn in the logo stays inside of it.
TEST_F(OnboardingStepsTest, TheLogosContentFitsIntoIt) {
    const auto row = all<HStack>(OnboardingView::logo()).front();
    double width = row.spacing * static_cast<double>(row.children.size() - 1);
    for (const auto& child : row.children) {
        if (const auto* icons = child.as<HStack>()) {
            width += icons->spacing * static_cast<double>(icons->children.size() - 1);
        }
        for (const auto& frame : all<Frame>(child)) {
            width += frame.limits.width.value();
        }
    }
    EXPECT_LE(width, 112 - 2 * 12);
}

TEST_F(OnboardingStepsTest, TheBackgroundIsAGradientOverAColour) {
    const auto layers = asNode<ZStack>(OnboardingView::background()).children;
    ASSERT_EQ(layers.size(), 2);
    const auto colour = asNode<FilledShape>(layers[0]);
    EXPECT_EQ(colour.outline, Outline(Rectangle()));
    ASSERT_TRUE(std::holds_alternative<Color>(colour.fill));
    EXPECT_EQ(std::get<Color>(colour.fill).opacity, 1);
    EXPECT_TRUE(std::holds_alternative<LinearGradient>(asNode<FilledShape>(layers[1]).fill));
}

TEST_F(OnboardingStepsTest, TheWelcome) {
    const View step = OnboardingView::welcomeStep();
    EXPECT_THAT(texts(step),
                ElementsAre("给菜单栏留出空间", welcomeText, "无需辅助功能权限，不会移动鼠标"));
    EXPECT_TRUE(asNode<VStack>(step).children.front() == OnboardingView::logo());
    EXPECT_EQ(textNode(step, "给菜单栏留出空间").font,
              (Font{.size = 34.0, .weight = Weight::Semibold}));
    const auto text = textNode(step, welcomeText);
    EXPECT_EQ(text.font, Font{.size = TextStyle::Title3});
    EXPECT_EQ(text.foreground, Color{.base = Role::Secondary});
    EXPECT_EQ(text.multilineAlignment, TextAlignment::Center);
    EXPECT_EQ(text.lineLimit, std::nullopt);
    EXPECT_EQ(widthLimitOf(step, welcomeText), 560);
}

TEST_F(OnboardingStepsTest, TheWelcomeEndsWithAShieldedPromise) {
    const View last = asNode<VStack>(OnboardingView::welcomeStep()).children.back();
    const auto line = asNode<HStack>(last);
    ASSERT_EQ(line.children.size(), 2);
    EXPECT_TRUE(line.children[0] == View(Symbol{.name = "checkmark.shield.fill",
                                                .foreground = Color{.base = Role::Green}}));
    EXPECT_EQ(asNode<Text>(line.children[1]).text, "无需辅助功能权限，不会移动鼠标");
}

TEST_F(OnboardingStepsTest, TheDivider) {
    const View step = OnboardingView::dividerStep();
    EXPECT_THAT(texts(step), ElementsAre("竖线左侧就是隐藏区", dividerText));
    EXPECT_EQ(textNode(step, "竖线左侧就是隐藏区").font.size, Font{.size = 28.0}.size);
    EXPECT_EQ(widthLimitOf(step, dividerText), 520);
    EXPECT_THAT(all<Toggle>(step), IsEmpty());
}

TEST_F(OnboardingStepsTest, TheDividersPictureIsAMenuBar) {
    const View picture = asNode<VStack>(OnboardingView::dividerStep()).children.front();
    const auto bar = all<HStack>(picture).front();
    ASSERT_EQ(bar.children.size(), 4);
    EXPECT_GT(all<FilledShape>(bar.children[0]).size(), 1);
    // The divider is a vertical line.
    const auto line = asNode<Frame>(bar.children[1]).limits;
    EXPECT_LT(line.width.value(), line.height.value());
    EXPECT_GT(all<FilledShape>(bar.children[2]).size(), 1);
    EXPECT_TRUE(bar.children[3] ==
                View(Symbol{.name = "chevron.right", .font = {.size = TextStyle::Headline}}));
}

TEST_F(OnboardingStepsTest, TheArranging) {
    const View step = view_.arrangeStep();
    EXPECT_THAT(texts(step), ElementsAre("按住 ⌘ 拖动图标", arrangeText));
    EXPECT_EQ(textNode(step, "按住 ⌘ 拖动图标").font.size, Font{.size = 28.0}.size);
    EXPECT_EQ(widthLimitOf(step, arrangeText), 570);
    const auto symbol = asNode<Symbol>(asNode<VStack>(step).children.front());
    EXPECT_EQ(symbol.name, "command");
    EXPECT_EQ(symbol.font, Font{.size = 54.0});
}

TEST_F(OnboardingStepsTest, TheArrangingOffersLaunchAtLogin) {
    const View last = asNode<VStack>(view_.arrangeStep()).children.back();
    EXPECT_EQ(asNode<Frame>(last).limits, FrameLimits{.maxWidth = 280});
    EXPECT_TRUE(only<Toggle>(last) == (Toggle{.label = "登录时启动 Pelistra"}));
    only<Toggle>(last).action(true);
    EXPECT_TRUE(only<Toggle>(view_.arrangeStep()).isOn);
    EXPECT_THAT(journal_.entries(), ElementsAre("loginItem.register"));
}

TEST_F(OnboardingStepsTest, TheEnd) {
    const View step = OnboardingView::readyStep();
    EXPECT_THAT(texts(step), ElementsAre("Pelistra 已准备好", readyText));
    EXPECT_EQ(textNode(step, "Pelistra 已准备好").font.size, Font{.size = 32.0}.size);
    EXPECT_EQ(textNode(step, readyText).font, Font{.size = TextStyle::Title3});
    EXPECT_EQ(widthLimitOf(step, readyText), 550);
    const auto picture = asNode<Background>(asNode<VStack>(step).children.front());
    EXPECT_EQ(asNode<Frame>(picture.content).limits, (FrameLimits{.width = 104, .height = 104}));
    EXPECT_EQ(asNode<FilledShape>(picture.behind).outline, Outline(Circle()));
    const auto symbol = only<Symbol>(picture.content);
    EXPECT_EQ(symbol.name, "checkmark");
    EXPECT_EQ(symbol.font, Font{.size = 42.0});
}

TEST_F(OnboardingStepsTest, OnlyTheArrangingHasASwitch) {
    for (const int index : {0, 1, 3}) {
        view_.move(index);
        EXPECT_THAT(all<Toggle>(view_.body()), IsEmpty());
    }
    view_.move(2);
    EXPECT_EQ(all<Toggle>(view_.body()).size(), 1);
}

} // namespace
} // namespace pelistra::testing

#include "ui/SettingsView.h"

#include "tests/platform/FakeApplication.h"
#include "tests/platform/FakeLoginItem.h"
#include "tests/ui/ViewQueries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SettingsViewTest : public ::testing::Test {
protected:
    std::vector<View> generalRows() { return sections().at(1).rows; }
    std::vector<FormSection> sections() { return only<GroupedForm>(view_->body()).sections; }

    Journal journal_;
    FakeApplication application_{journal_};
    FakeLoginItem loginItem_{journal_};
    int guidesAskedFor_ = 0;
    std::unique_ptr<SettingsView> view_ =
        std::make_unique<SettingsView>(application_, loginItem_, [this] { ++guidesAskedFor_; });
};

TEST_F(SettingsViewTest, IsAFormOfAtLeast600By520) {
    const auto frame = asNode<Frame>(view_->body());
    EXPECT_EQ(frame.limits, (FrameLimits{.minWidth = 600, .minHeight = 520}));
    EXPECT_NE(frame.content.as<GroupedForm>(), nullptr);
}

TEST_F(SettingsViewTest, HasTwoSectionsInOrder) {
    const auto all = sections();
    ASSERT_EQ(all.size(), 2);
    EXPECT_EQ(all[0].title, "使用方法");
    EXPECT_EQ(all[0].rows.size(), 4);
    EXPECT_EQ(all[1].title, "通用");
    EXPECT_EQ(all[1].rows.size(), 3);
}

TEST_F(SettingsViewTest, TheInstructionsReadCharacterForCharacter) {
    const auto rows = sections().at(0).rows;
    EXPECT_THAT(
        texts(rows.at(0)),
        ElementsAre("1", "找到分隔线",
                    "菜单栏中竖线左侧是隐藏区，右侧是常用区；最右边的箭头负责展开和折叠。"));
    EXPECT_THAT(texts(rows.at(1)),
                ElementsAre("2", "摆放图标",
                            "按住 Command（⌘）拖动菜单栏图标。把不常用图标放到竖线左侧，把常用图标"
                            "放到竖线与箭头之间。"));
    EXPECT_THAT(texts(rows.at(2)),
                ElementsAre("3", "点击箭头",
                            "第一次点击会折叠竖线左侧图标；再次点击会在菜单栏下方打开可横向滚动的第"
                            "二行。按住 Option 点击箭头可展开原图标重新整理。"));
    EXPECT_THAT(texts(rows.at(3)),
                ElementsAre("4", "使用第二行",
                            "左键点击图标会打开所属应用；右键点击会打开原托盘菜单。右键操作后，点击"
                            "菜单栏箭头即可重新折叠临时显示的图标。"));
}

TEST_F(SettingsViewTest, AnInstructionIsANumberedRow) {
    const View badge =
        View(Text{.text = "7",
                  .font = {.size = TextStyle::Headline},
                  .foreground = Color{.base = Role::White}})
            .frame({.width = 28, .height = 28})
            .background(FilledShape{.outline = Circle(), .fill = Color{.base = Role::Accent}});
    const View words =
        VStack{.alignment = HorizontalAlignment::Leading,
               .spacing = 4,
               .children = {Text{.text = "title", .font = {.size = TextStyle::Headline}},
                            Text{.text = "detail",
                                 .font = {.size = TextStyle::Subheadline},
                                 .foreground = Color{.base = Role::Secondary}}}};
    const View expected =
        View(HStack{.alignment = VerticalAlignment::Top, .spacing = 13, .children = {badge, words}})
            .padding({.top = 4, .bottom = 4});
    EXPECT_TRUE(SettingsView::instruction(7, "title", "detail") == expected);
}

TEST_F(SettingsViewTest, TheDetailWrapsOverAsManyLinesAsItNeeds) {
    const auto row = SettingsView::instruction(1, "title", "detail");
    EXPECT_EQ(textNode(row, "detail").lineLimit, std::nullopt);
}

TEST_F(SettingsViewTest, NumbersAreWrittenWhole) {
    EXPECT_EQ(texts(SettingsView::instruction(-1234567, "", "")).front(), "-1234567");
}

TEST_F(SettingsViewTest, TheGeneralRowsStandInOrder) {
    const auto rows = generalRows();
    EXPECT_EQ(asNode<Toggle>(rows.at(0)).label, "登录时启动 Pelistra");
    EXPECT_TRUE(rows.at(1) == View(Button{.label = Text{.text = "重新查看使用引导"}}));
    EXPECT_TRUE(rows.at(2) == View(Button{.label = Text{.text = "退出 Pelistra"},
                                          .role = ButtonRole::Destructive}));
}

TEST_F(SettingsViewTest, TheToggleShowsAndChangesTheLoginItem) {
    EXPECT_FALSE(only<Toggle>(view_->body()).isOn);
    only<Toggle>(view_->body()).action(true);
    EXPECT_TRUE(only<Toggle>(view_->body()).isOn);
    only<Toggle>(view_->body()).action(false);
    EXPECT_FALSE(only<Toggle>(view_->body()).isOn);
    EXPECT_THAT(journal_.entries(), ElementsAre("loginItem.register", "loginItem.unregister"));
}

TEST_F(SettingsViewTest, TheToggleStartsWithTheSystemsState) {
    loginItem_.current = LoginItemStatus::Enabled;
    SettingsView view(application_, loginItem_, [] {});
    EXPECT_TRUE(only<Toggle>(view.body()).isOn);
}

TEST_F(SettingsViewTest, ARefusedChangeShowsARedLineUntilASuccess) {
    loginItem_.refusal = "Operation not permitted";
    only<Toggle>(view_->body()).action(true);
    const auto rows = generalRows();
    ASSERT_EQ(rows.size(), 4);
    EXPECT_TRUE(rows.at(3) == View(Text{.text = "Operation not permitted",
                                        .font = {.size = TextStyle::Caption},
                                        .foreground = Color{.base = Role::Red}}));
    EXPECT_FALSE(only<Toggle>(view_->body()).isOn);

    loginItem_.refusal.reset();
    only<Toggle>(view_->body()).action(true);
    EXPECT_EQ(generalRows().size(), 3);
}

TEST_F(SettingsViewTest, TheGuideButtonAsksForTheGuide) {
    buttonNamed(view_->body(), "重新查看使用引导").action();
    EXPECT_EQ(guidesAskedFor_, 1);
    EXPECT_THAT(journal_.entries(), IsEmpty());
}

TEST_F(SettingsViewTest, TheQuitButtonTerminatesTheApplication) {
    buttonNamed(view_->body(), "退出 Pelistra").action();
    EXPECT_THAT(journal_.entries(), ElementsAre("terminate"));
}

TEST_F(SettingsViewTest, AnnouncesBothPropertiesOfTheLoginItem) {
    int announcements = 0;
    const auto token = view_->observe([&] { ++announcements; });
    only<Toggle>(view_->body()).action(true);
    EXPECT_EQ(announcements, 2);
}

TEST_F(SettingsViewTest, WhatItGaveAwayDoesNothingOnceItIsGone) {
    const View body = view_->body();
    view_.reset();
    only<Toggle>(body).action(true);
    buttonNamed(body, "退出 Pelistra").action();
    EXPECT_THAT(journal_.entries(), IsEmpty());
}

TEST_F(SettingsViewTest, AnUnchangedStateGivesAnEqualBody) {
    EXPECT_TRUE(view_->body() == view_->body());
}

} // namespace
} // namespace pelistra::testing

#include "secondrow/SecondRowView.h"

#include "secondrow/SecondRowRightClickCapture.h"
#include "tests/secondrow/SecondRowFixture.h"
#include "tests/ui/ViewQueries.h"

#include <gmock/gmock.h>

#include <optional>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SecondRowViewTest : public SecondRowFixture {
protected:
    [[nodiscard]] std::unique_ptr<SecondRowView> makeView() {
        return std::make_unique<SecondRowView>(
            store_, [this](const OverflowItem& item) { activated_.push_back(item.id); },
            [this](const OverflowItem& item) { menus_.push_back(item.id); },
            [this] { ++arrangements_; });
    }

    // The card's stack: the row and, perhaps, the message.
    [[nodiscard]] VStack stack() {
        const auto card = asNode<Padding>(view_->body());
        const auto lined = asNode<Overlay>(card.content);
        const auto filled = asNode<Background>(lined.content);
        return asNode<VStack>(asNode<Frame>(filled.content).content);
    }
    [[nodiscard]] HStack row() {
        return asNode<HStack>(asNode<Identified>(stack().children.at(0)).content);
    }
    [[nodiscard]] View rowPart(std::size_t place) {
        return asNode<Identified>(row().children.at(place)).content;
    }
    [[nodiscard]] HStack strip() {
        const auto padded = asNode<Padding>(asNode<HorizontalScroll>(rowPart(0)).content);
        return asNode<HStack>(padded.content);
    }
    [[nodiscard]] View cell(std::size_t place) {
        return asNode<Identified>(strip().children.at(place)).content;
    }
    [[nodiscard]] std::vector<std::string> rowKeys() {
        std::vector<std::string> keys;
        for (const auto& part : row().children) {
            keys.push_back(std::get<std::string>(asNode<Identified>(part).key));
        }
        return keys;
    }

    std::vector<WindowId> activated_;
    std::vector<WindowId> menus_;
    int arrangements_ = 0;
    std::unique_ptr<SecondRowView> view_ = makeView();
};

TEST_F(SecondRowViewTest, HasItsTwoConstants) {
    EXPECT_EQ(SecondRowView::preferredHeight, 78);
    EXPECT_EQ(SecondRowView::itemWidth, 48);
}

TEST_F(SecondRowViewTest, IsARoundedCardThatFillsThePanelButForFourPoints) {
    const RoundedRectangle outline = {.cornerRadius = 16, .continuous = true};
    const View expected = asNode<Overlay>(asNode<Padding>(view_->body()).content).content;
    EXPECT_TRUE(view_->body() ==
                expected
                    .overlay(StrokedShape{.outline = outline,
                                          .color = {.base = Role::White, .opacity = 0.18},
                                          .lineWidth = 0.5})
                    .padding({.top = 4, .leading = 4, .bottom = 4, .trailing = 4}));
    const auto filled = asNode<Background>(expected);
    EXPECT_TRUE(filled.behind ==
                View(FilledShape{.outline = outline, .fill = Material::UltraThin}));
    EXPECT_EQ(asNode<Frame>(filled.content).limits,
              (FrameLimits{.maxWidth = infinity, .maxHeight = infinity}));
}

TEST_F(SecondRowViewTest, StacksItsLinesCentredWithoutDistance) {
    store_->message.set("text");
    EXPECT_EQ(stack().alignment, HorizontalAlignment::Center);
    EXPECT_EQ(stack().spacing, 0);
    EXPECT_EQ(stack().children.size(), 2);
}

TEST_F(SecondRowViewTest, TheRowIsCentredWithSevenPointsBetweenItsParts) {
    EXPECT_EQ(row().alignment, VerticalAlignment::Center);
    EXPECT_EQ(row().spacing, 7);
}

TEST_F(SecondRowViewTest, WithPermissionTheDividerIsFollowedByTheArrangeButton) {
    EXPECT_THAT(rowKeys(), ElementsAre("items", "divider", "arrange"));
}

TEST_F(SecondRowViewTest, WithoutPermissionTheCameraButtonStandsBetween) {
    store_->hasScreenCapturePermission.set(false);
    EXPECT_THAT(rowKeys(), ElementsAre("items", "divider", "permission", "arrange"));
}

TEST_F(SecondRowViewTest, TheDividerIsThirtyHigh) {
    EXPECT_TRUE(rowPart(1) == View(Divider()).frame({.height = 30}));
}

TEST_F(SecondRowViewTest, TheCameraButton) {
    store_->hasScreenCapturePermission.set(false);
    EXPECT_TRUE(rowPart(2) == View(Button{.label = Symbol{.name = "camera.badge.ellipsis"},
                                          .style = ButtonStyle::Borderless})
                                  .help("允许屏幕录制，以显示菜单栏原图标"));
}

TEST_F(SecondRowViewTest, TheCameraButtonAsksForThePermissionAndGoesWhenItIsGiven) {
    store_->hasScreenCapturePermission.set(false);
    fakes_.journal.clear();
    only<Button>(rowPart(2)).action();
    EXPECT_TRUE(fakes_.journal.contains("requestAccess"));
    EXPECT_THAT(rowKeys(), ElementsAre("items", "divider", "arrange"));
}

TEST_F(SecondRowViewTest, ARefusedPermissionLeavesTheButtonAndAMessage) {
    store_->hasScreenCapturePermission.set(false);
    fakes_.screenCapture.granted = false;
    fakes_.screenCapture.grantsRequest = false;
    only<Button>(rowPart(2)).action();
    EXPECT_THAT(rowKeys(), ElementsAre("items", "divider", "permission", "arrange"));
    EXPECT_EQ(texts(stack().children.at(1)).front(),
              "允许屏幕录制后，请重新启动 Pelistra，即可显示菜单栏原图标。");
}

TEST_F(SecondRowViewTest, TheArrangeButtonHoldsTheRowsRightMargin) {
    EXPECT_TRUE(rowPart(2) == View(Button{.label = Symbol{.name = "slider.horizontal.3"},
                                          .style = ButtonStyle::Borderless})
                                  .help("展开原菜单栏图标并重新整理")
                                  .padding({.trailing = 10}));
    only<Button>(rowPart(2)).action();
    EXPECT_EQ(arrangements_, 1);
}

TEST_F(SecondRowViewTest, TheStripScrollsAndIsPaddedOnItsLeadingSideOnly) {
    const auto padded = asNode<Padding>(asNode<HorizontalScroll>(rowPart(0)).content);
    EXPECT_EQ(padded.edges, Edges{.leading = 9});
    EXPECT_EQ(strip().alignment, VerticalAlignment::Center);
    EXPECT_EQ(strip().spacing, 3);
}

TEST_F(SecondRowViewTest, AnEmptySectionSaysSo) {
    ASSERT_EQ(strip().children.size(), 1);
    EXPECT_TRUE(cell(0) == View(Text{.text = "隐藏区为空",
                                     .font = {.size = TextStyle::Subheadline},
                                     .foreground = Color{.base = Role::Secondary}})
                               .padding({.leading = 10, .trailing = 10}));
}

TEST_F(SecondRowViewTest, WithoutThePrivateInterfaceItSaysThatInstead) {
    fakes_.privateLibrary.missing = true;
    store_ = makeStore();
    view_ = makeView();
    EXPECT_THAT(texts(cell(0)), ElementsAre("当前系统不支持"));
    EXPECT_EQ(row().children.size(), 3);
}

TEST_F(SecondRowViewTest, CellsFollowTheStoresOrderUnderTheirWindowIds) {
    store_->items.set({item(30), item(10), item(20)});
    std::vector<Key> keys;
    for (const auto& child : strip().children) {
        keys.push_back(asNode<Identified>(child).key);
    }
    EXPECT_THAT(
        keys, ElementsAre(Key(std::uint64_t{30}), Key(std::uint64_t{10}), Key(std::uint64_t{20})));
}

TEST_F(SecondRowViewTest, ACellIsALabelledButtonUnderARightClickCapture) {
    store_->items.set({item(7, "Control Center", "WiFi")});
    const View label = SecondRowView::overflowIcon(store_->items.get().front())
                           .frame({.width = 32, .height = 28})
                           .padding({.top = 4, .leading = 4, .bottom = 4, .trailing = 4})
                           .contentShape(RoundedRectangle{.cornerRadius = 8, .continuous = true});
    const View capture = Represented{std::make_shared<SecondRowRightClickCapture>(Action())};
    // The non-breaking hyphen is U+2011, the dash U+2014.
    EXPECT_TRUE(cell(0) ==
                View(Button{.label = label, .style = ButtonStyle::Plain})
                    .overlay(capture)
                    .help("Control Center \u2014 Wi\u2011Fi\n左键：打开应用；右键：打开原托盘菜单")
                    .accessibilityLabel("Control Center \u2014 Wi\u2011Fi，点击打开应用"));
}

TEST_F(SecondRowViewTest, ALeftClickActivatesOnlyThatItem) {
    store_->items.set(items(3));
    only<Button>(cell(1)).action();
    EXPECT_THAT(activated_, ElementsAre(2));
    EXPECT_THAT(menus_, IsEmpty());
}

TEST_F(SecondRowViewTest, ARightClickAsksForThatItemsMenuOncePerPress) {
    store_->items.set(items(3));
    const auto capture = only<Represented>(cell(2));
    const auto event = capture.value->makeView(fakes_.application);
    const Event press = {.type = EventType::RightMouseDown};
    fakes_.application.event = press;
    ASSERT_EQ(event->hitTest({}), event.get());
    event->rightMouseDown(press);
    EXPECT_THAT(menus_, ElementsAre(3));
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(SecondRowViewTest, ACapturedPictureWinsOverTheApplicationsIcon) {
    auto both = item(1);
    both.capturedImage = std::make_shared<FakeImage>(Size{.width = 44, .height = 48});
    both.applicationIcon = std::make_shared<FakeImage>(Size{.width = 32, .height = 32});
    EXPECT_TRUE(SecondRowView::overflowIcon(both) == View(Picture{both.capturedImage}));
}

TEST_F(SecondRowViewTest, TheApplicationsIconWinsOverTheSymbol) {
    auto withIcon = item(1);
    withIcon.applicationIcon = std::make_shared<FakeImage>(Size{.width = 32, .height = 32});
    EXPECT_TRUE(SecondRowView::overflowIcon(withIcon) == View(Picture{withIcon.applicationIcon}));
}

TEST_F(SecondRowViewTest, TheSymbolIsTheLastResort) {
    EXPECT_TRUE(SecondRowView::overflowIcon(item(1, "Audio Clock")) ==
                View(Symbol{.name = "clock",
                            .font = {.size = 18.0, .weight = Weight::Medium},
                            .foreground = Color{.base = Role::Primary}}));
    EXPECT_EQ(only<Symbol>(SecondRowView::overflowIcon(item(1))).name, "circle.grid.2x2");
}

TEST_F(SecondRowViewTest, WithoutAMessageThereIsOnlyTheRow) {
    EXPECT_EQ(stack().children.size(), 1);
}

TEST_F(SecondRowViewTest, AMessageIsOneQuietLine) {
    store_->message.set("该菜单栏项目已经退出。");
    EXPECT_TRUE(asNode<Identified>(stack().children.at(1)).content ==
                View(Text{.text = "该菜单栏项目已经退出。",
                          .font = {.size = TextStyle::Caption2},
                          .foreground = Color{.base = Role::Secondary},
                          .lineLimit = 1})
                    .padding({.leading = 12, .bottom = 5, .trailing = 12}));
}

TEST_F(SecondRowViewTest, AnEmptyMessageIsStillALine) {
    store_->message.set("");
    EXPECT_EQ(stack().children.size(), 2);
}

TEST_F(SecondRowViewTest, AnnouncesAllThreeProperties) {
    int announcements = 0;
    const auto token = view_->observe([&] { ++announcements; });
    store_->items.set(items(1));
    store_->message.set("text");
    store_->hasScreenCapturePermission.set(false);
    EXPECT_EQ(announcements, 3);
}

TEST_F(SecondRowViewTest, KeepsNothingOfTheStoreInItsPermissionButton) {
    store_->hasScreenCapturePermission.set(false);
    const auto button = only<Button>(rowPart(2));
    const std::weak_ptr<OverflowStore> store = store_;
    view_.reset();
    store_.reset();
    ASSERT_TRUE(store.expired());
    fakes_.journal.clear();
    button.action();
    EXPECT_THAT(fakes_.journal.entries(), IsEmpty());
}

} // namespace
} // namespace pelistra::testing

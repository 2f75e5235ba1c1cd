#include "secondrow/SecondRowView.h"
#include "tests/secondrow/SecondRowFixture.h"
#include "tests/ui/RecordedFrontEnd.h"
#include "ui/Nodes.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::ElementsAre;
using Widget = RecordedFrontEnd::Widget;

// What a front end that keeps its widgets across updates gets to do.
class SecondRowUpdateTest : public SecondRowFixture {
protected:
    SecondRowUpdateTest() { store_->items.set(items(3)); }

    [[nodiscard]] const Widget* cell(std::uint64_t id) const {
        return frontEnd_->widget<Button>(id);
    }
    [[nodiscard]] EventView* events(std::uint64_t id) const {
        return frontEnd_->widget<Represented>(id)->eventView.get();
    }

    std::vector<OverflowItem> activated_;
    std::vector<OverflowItem> menus_;
    std::unique_ptr<SecondRowView> view_ = std::make_unique<SecondRowView>(
        store_, [this](const OverflowItem& item) { activated_.push_back(item); },
        [this](const OverflowItem& item) { menus_.push_back(item); }, [] {});
    std::unique_ptr<RecordedFrontEnd> frontEnd_ =
        std::make_unique<RecordedFrontEnd>(fakes_.application, *view_);
};

TEST_F(SecondRowUpdateTest, AnUnchangedRefreshDrawsNothing) {
    // Built once more after the list was set.
    frontEnd_ = std::make_unique<RecordedFrontEnd>(fakes_.application, *view_);
    store_->items.set(items(3));
    EXPECT_EQ(frontEnd_->announcements(), 1);
    EXPECT_EQ(frontEnd_->update(), 0);
}

TEST_F(SecondRowUpdateTest, AMovedFrameDrawsNothingButIsHandedOn) {
    frontEnd_ = std::make_unique<RecordedFrontEnd>(fakes_.application, *view_);
    auto moved = items(3);
    moved[1].lastKnownFrame.origin.x = -640;
    store_->items.set(moved);
    EXPECT_EQ(frontEnd_->update(), 0);

    cell(2)->placed.view.as<Button>()->action();
    ASSERT_EQ(activated_.size(), 1);
    EXPECT_EQ(activated_.front().lastKnownFrame.origin.x, -640);

    events(2)->rightMouseDown({.type = EventType::RightMouseDown});
    ASSERT_EQ(menus_.size(), 1);
    EXPECT_EQ(menus_.front().lastKnownFrame.origin.x, -640);
}

TEST_F(SecondRowUpdateTest, ANewPictureDrawsItsOwnCellOnly) {
    frontEnd_ = std::make_unique<RecordedFrontEnd>(fakes_.application, *view_);
    const auto* before = cell(2);
    auto pictured = items(3);
    pictured[1].capturedImage = std::make_shared<FakeImage>(Size{.width = 44, .height = 48});
    store_->items.set(pictured);
    EXPECT_EQ(frontEnd_->update(), 1);
    EXPECT_EQ(cell(2), before);
}

TEST_F(SecondRowUpdateTest, CellsAreKeptWhenOthersComeAndGo) {
    frontEnd_ = std::make_unique<RecordedFrontEnd>(fakes_.application, *view_);
    const auto* kept = cell(3);
    const auto* keptEvents = events(3);
    store_->items.set({item(9), item(3)});
    frontEnd_->update();
    EXPECT_EQ(cell(3), kept);
    EXPECT_EQ(events(3), keptEvents);
    EXPECT_EQ(cell(1), nullptr);
    EXPECT_NE(cell(9), nullptr);
}

TEST_F(SecondRowUpdateTest, TheRowIsKeptWhenTheMessageAndTheCameraButtonComeAndGo) {
    const auto* strip = frontEnd_->widget<HorizontalScroll>("items");
    const auto* arrange = frontEnd_->widget<Button>("arrange");
    store_->message.set("text");
    store_->hasScreenCapturePermission.set(false);
    frontEnd_->update();
    EXPECT_EQ(frontEnd_->widget<HorizontalScroll>("items"), strip);
    EXPECT_EQ(frontEnd_->widget<Button>("arrange"), arrange);
    EXPECT_NE(frontEnd_->widget<Text>("message"), nullptr);
    EXPECT_NE(frontEnd_->widget<Button>("permission"), nullptr);
    store_->message.set(std::nullopt);
    store_->hasScreenCapturePermission.set(true);
    frontEnd_->update();
    EXPECT_EQ(frontEnd_->widget<HorizontalScroll>("items"), strip);
    EXPECT_EQ(frontEnd_->widget<Text>("message"), nullptr);
    EXPECT_EQ(frontEnd_->widget<Button>("permission"), nullptr);
}

} // namespace
} // namespace pelistra::testing

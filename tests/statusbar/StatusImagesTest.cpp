#include "statusbar/StatusImages.h"

#include "tests/platform/FakeImages.h"

#include <gmock/gmock.h>

namespace pelistra {
namespace {

using ::testing::ElementsAre;
using testing::FakeCanvas;
using testing::fakeImage;
using testing::FakeImages;
using testing::imageName;
using testing::Journal;

class StatusImagesTest : public ::testing::Test {
protected:
    Journal journal_;
    FakeImages images_{journal_};
};

TEST_F(StatusImagesTest, TheDividerPictureIsTwelveByEighteenPoints) {
    EXPECT_EQ(dividerImage(images_)->size(), (Size{.width = 12, .height = 18}));
}

TEST_F(StatusImagesTest, TheDividerPictureIsATemplateWithADescription) {
    const auto image = dividerImage(images_);

    EXPECT_TRUE(image->isTemplate);
    EXPECT_EQ(image->accessibilityDescription, "Pelistra 隐藏区分隔线");
}

TEST_F(StatusImagesTest, TheDividerIsARoundedBarInTheMiddleOfItsPicture) {
    const auto image = dividerImage(images_);
    FakeCanvas canvas;

    EXPECT_TRUE(fakeImage(image)->handler(canvas, makeRect<ScreenSpace>(0, 0, 12, 18)));

    EXPECT_THAT(canvas.shapes,
                ElementsAre(FakeCanvas::RoundedRect{.rect = makeRect<ScreenSpace>(5, 1, 2, 16),
                                                    .xRadius = 1,
                                                    .yRadius = 1,
                                                    .color = ColorRole::Label}));
    EXPECT_EQ(canvas.colorlessFills, 0);
}

TEST_F(StatusImagesTest, TheDividerFollowsItsDestination) {
    const auto image = dividerImage(images_);
    FakeCanvas canvas;

    EXPECT_TRUE(fakeImage(image)->handler(canvas, makeRect<ScreenSpace>(100, 50, 40, 30)));

    ASSERT_EQ(canvas.shapes.size(), 1U);
    EXPECT_EQ(canvas.shapes[0].rect, makeRect<ScreenSpace>(119, 1, 2, 28));
}

TEST_F(StatusImagesTest, TheExpandedArrowPointsRight) {
    const auto image = expandedArrowImage(images_);

    EXPECT_EQ(imageName(image), "chevron.right");
    EXPECT_EQ(image->accessibilityDescription, "隐藏左侧图标");
    EXPECT_TRUE(image->isTemplate);
}

TEST_F(StatusImagesTest, TheArrowPointsUpWhileTheSecondRowIsOpen) {
    const auto image = overflowArrowImage(images_, true);

    EXPECT_EQ(imageName(image), "chevron.up");
    EXPECT_EQ(image->accessibilityDescription, "关闭第二行溢出栏");
    EXPECT_TRUE(image->isTemplate);
}

TEST_F(StatusImagesTest, TheArrowPointsDownWhileTheSecondRowIsClosed) {
    const auto image = overflowArrowImage(images_, false);

    EXPECT_EQ(imageName(image), "chevron.down");
    EXPECT_EQ(image->accessibilityDescription, "打开第二行溢出栏");
    EXPECT_TRUE(image->isTemplate);
}

TEST_F(StatusImagesTest, WithoutTheSymbolsThereIsNoArrow) {
    images_.missingSymbols = {"chevron.right", "chevron.up", "chevron.down"};

    EXPECT_EQ(expandedArrowImage(images_), nullptr);
    EXPECT_EQ(overflowArrowImage(images_, true), nullptr);
    EXPECT_EQ(overflowArrowImage(images_, false), nullptr);
}

} // namespace
} // namespace pelistra

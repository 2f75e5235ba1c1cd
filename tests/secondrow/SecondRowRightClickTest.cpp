#include "secondrow/SecondRowRightClickCapture.h"
#include "secondrow/SecondRowRightClickView.h"
#include "tests/platform/FakeApplication.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace pelistra::testing {
namespace {

constexpr Event rightDown = {.type = EventType::RightMouseDown};

class SecondRowRightClickTest : public ::testing::Test {
protected:
    Journal journal_;
    FakeApplication application_{journal_};
    SecondRowRightClickView view_{application_};
};

TEST_F(SecondRowRightClickTest, TakesNothingOutsideEventHandling) {
    application_.event = std::nullopt;
    EXPECT_EQ(view_.hitTest({}), nullptr);
}

TEST_F(SecondRowRightClickTest, TakesTheRightButtonOnly) {
    application_.event = rightDown;
    EXPECT_EQ(view_.hitTest({}), &view_);
    application_.event = Event{.type = EventType::RightMouseUp};
    EXPECT_EQ(view_.hitTest({}), &view_);
    for (const int type : {1, 2, 5, 6, 7, 8, 9, 10, 22, 25, 26}) {
        application_.event = Event{.type = static_cast<EventType>(type)};
        EXPECT_EQ(view_.hitTest({}), nullptr) << type;
    }
}

TEST_F(SecondRowRightClickTest, DoesNotLookAtThePoint) {
    application_.event = rightDown;
    const double far = std::numeric_limits<double>::max();
    EXPECT_EQ(view_.hitTest({.x = -far, .y = far}), &view_);
}

TEST_F(SecondRowRightClickTest, ANewViewHasNoAction) {
    EXPECT_FALSE(view_.action);
    view_.rightMouseDown(rightDown);
}

TEST_F(SecondRowRightClickTest, CallsItsActionOncePerPress) {
    int calls = 0;
    view_.action = [&calls] { ++calls; };
    view_.rightMouseDown(rightDown);
    EXPECT_EQ(calls, 1);
    view_.rightMouseDown(rightDown);
    EXPECT_EQ(calls, 2);
}

TEST_F(SecondRowRightClickTest, MayBeUpdatedByItsOwnAction) {
    int calls = 0;
    view_.action = [&] {
        view_.action = ui::Action();
        ++calls;
    };
    view_.rightMouseDown(rightDown);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(view_.action);
}

TEST_F(SecondRowRightClickTest, TheCaptureMakesAViewWithItsAction) {
    int calls = 0;
    const SecondRowRightClickCapture capture([&calls] { ++calls; });
    const auto made = capture.makeView(application_);
    application_.event = rightDown;
    EXPECT_EQ(made->hitTest({}), made.get());
    made->rightMouseDown(rightDown);
    EXPECT_EQ(calls, 1);
}

TEST_F(SecondRowRightClickTest, AnUpdateReplacesTheAction) {
    int first = 0;
    int second = 0;
    const auto made = SecondRowRightClickCapture([&first] { ++first; }).makeView(application_);
    SecondRowRightClickCapture([&second] { ++second; }).updateView(*made);
    made->rightMouseDown(rightDown);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

} // namespace
} // namespace pelistra::testing

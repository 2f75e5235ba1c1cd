// The second row of the running organiser, under the running bar, with real icons.

#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/RealTrayPrograms.h"
#include "tests/desktop/harness/TrayClient.h"
#include "tests/desktop/harness/UserInput.h"

#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using Button = UserInput::Button;

const std::string rowTitle = "Pelistra 第二行";
// Between two clicks of the arrow, so that the second is no double click.
constexpr std::chrono::milliseconds rest{350};

class SecondRowTest : public ::testing::Test {
protected:
    explicit SecondRowTest(const PrivateDisplay::Options& options = {.windowManager = true,
                                                                     .sessionBus = true})
        : display_(options) {
        OrganiserUnderTest::completeOnboarding(display_);
        bar_ = std::make_unique<BarUnderTest>(display_, client_);
        for (const auto& [name, colour] :
             {std::pair{"Red", 0xd04040U}, {"Green", 0x30a050U}, {"Blue", 0x3070c0U}}) {
            icons_.push_back(std::make_unique<TrayClient>(
                display_.name(),
                TrayClient::Options{.name = name,
                                    .colour = colour,
                                    .processId = static_cast<std::uint32_t>(::getpid())}));
            icons_.back()->requestDock();
            EXPECT_TRUE(icons_.back()->waitUntilDocked()) << name;
        }
        organiser_ = std::make_unique<OrganiserUnderTest>(display_, client_);
        // New items come at the left end, so the icons that were there first lie right of them.
        moveItemsRightOfIcons();
    }

    void moveItemsRightOfIcons() {
        for (const std::string& item :
             {OrganiserUnderTest::dividerName, OrganiserUnderTest::controlName}) {
            // The bar moves its items one by one.
            EXPECT_TRUE(served([this] {
                const auto control = organiser_->controlFrame();
                const auto divider = organiser_->dividerFrame();
                return control && divider &&
                       (control->right() <= divider->x || divider->right() <= control->x);
            }));
            const int right = client_.rootFrame().right();
            const auto isRightmost = [&] {
                return client_.frame(*client_.barItem(item))->right() == right;
            };
            const auto frame = client_.frame(*client_.barItem(item));
            input_.drag(centre(*frame), {.x = right - 2, .y = frame->midY()}, {keys::super});
            EXPECT_TRUE(served(isRightmost)) << item;
        }
        // The bar tells others only after it has written the order down.
        EXPECT_TRUE(served([this] {
            const auto items = client_.barItems();
            return items.size() == icons_.size() + 2 &&
                   items[items.size() - 2] == client_.barItem(OrganiserUnderTest::dividerName) &&
                   items.back() == client_.barItem(OrganiserUnderTest::controlName);
        }));
    }
    // Waits while the icons answer.
    template <class Condition>
    [[nodiscard]] bool served(Condition condition, std::chrono::milliseconds bound = patience) {
        return waitFor(
            [&] {
                for (const auto& icon : icons_) {
                    icon->handleEvents();
                }
                return condition();
            },
            bound);
    }
    void letTheArrowRest() {
        static_cast<void>(served([] { return false; }, rest));
    }
    void clickArrow() { input_.click(centre(*organiser_->controlFrame())); }
    [[nodiscard]] std::optional<xcb_window_t> row() {
        for (const xcb_window_t window : client_.children(client_.root())) {
            if (client_.isViewable(window) && client_.title(window) == rowTitle) {
                return window;
            }
        }
        return std::nullopt;
    }
    // Collapses, then opens the row.
    void openRow() {
        clickArrow();
        ASSERT_TRUE(served([this] { return organiser_->isCollapsed(); }))
            << organiser_->process().output();
        letTheArrowRest();
        clickArrow();
        ASSERT_TRUE(served([this] { return row().has_value(); })) << organiser_->process().output();
    }
    void savePicture(const std::string& name) {
        if (const char* folder = std::getenv("PELISTRA_PICTURES")) {
            client_.captureRoot().savePng(std::filesystem::path(folder) / (name + ".png"));
        }
    }

    PrivateDisplay display_;
    XClient client_{display_.name()};
    UserInput input_{client_};
    std::unique_ptr<BarUnderTest> bar_;
    std::vector<std::unique_ptr<TrayClient>> icons_;
    std::unique_ptr<OrganiserUnderTest> organiser_;
};

TEST_F(SecondRowTest, TheSecondClickOpensItUnderTheArrowAndTakesNoFocus) {
    const xcb_window_t focus = client_.focus();
    openRow();
    const WindowFrame frame = *client_.frame(*row());
    EXPECT_EQ(frame.width, 280);
    EXPECT_EQ(frame.height, 78);
    const WindowFrame control = *organiser_->controlFrame();
    EXPECT_EQ(frame.y, control.y + control.height + 6);
    EXPECT_EQ(frame.right(), client_.rootFrame().right() - 8);
    EXPECT_EQ(client_.focus(), focus);
    EXPECT_TRUE(client_.isAbove(*row(), client_.barWindow()));
    static_cast<void>(served([] { return false; }, rest));
    savePicture("second-row");
}

TEST_F(SecondRowTest, AClickElsewhereClosesItAndOneInsideDoesNot) {
    openRow();
    const xcb_window_t window = *row();
    const WindowFrame frame = *client_.frame(window);
    input_.click({.x = frame.right() - 60, .y = frame.y + 8});
    EXPECT_FALSE(served([&] { return !client_.isViewable(window); }, rest));
    input_.click({.x = 200, .y = 500}, Button::Right);
    EXPECT_TRUE(served([&] { return !client_.isViewable(window); }));
    EXPECT_TRUE(organiser_->isCollapsed());
}

class SecondRowPictureTest : public SecondRowTest,
                             public ::testing::WithParamInterface<Compositor> {
protected:
    SecondRowPictureTest()
        : SecondRowTest({.windowManager = true, .sessionBus = true, .compositor = GetParam()}) {}
};
INSTANTIATE_TEST_SUITE_P(Under, SecondRowPictureTest, ::testing::ValuesIn(everyCompositor),
                         compositorTestName);

TEST_P(SecondRowPictureTest, ShowsThePicturesOfTheHiddenIcons) {
    openRow();
    EXPECT_TRUE(served([this] {
        const Picture picture = client_.capture(*client_.frame(*row()));
        return picture.pixelsOf(0xd04040) > 50 && picture.pixelsOf(0x30a050) > 50 &&
               picture.pixelsOf(0x3070c0) > 50;
    }));
}

TEST_F(SecondRowTest, ARightClickOnAnIconShowsTheIconInTheBar) {
    openRow();
    const xcb_window_t window = *row();
    const WindowFrame frame = *client_.frame(window);
    // The middle of the first icon: 4 outside the card, 9 before the strip, half of 40.
    const RootPoint place{.x = frame.x + 4 + 9 + 20, .y = frame.midY()};
    input_.click(place, Button::Right);
    EXPECT_TRUE(served([&] { return !client_.isViewable(window); }));
    EXPECT_TRUE(served([this] {
        return std::ranges::any_of(
            icons_, [this](const auto& icon) { return client_.frame(icon->window())->x >= 0; });
    })) << organiser_->process().output();
    EXPECT_EQ(client_.pointer().x, place.x);
    EXPECT_EQ(client_.pointer().y, place.y);
}

TEST_F(SecondRowTest, TheOrganiserEndsInOrderWhileItIsOpen) {
    openRow();
    EXPECT_EQ(organiser_->process().terminate(), (ExitStatus{.status = 0}))
        << organiser_->process().output();
}

} // namespace

} // namespace pelistra::testing

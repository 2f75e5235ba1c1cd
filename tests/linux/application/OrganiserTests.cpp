// The status items of the running organiser, in a tray that lives in the test.

#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/UserInput.h"
#include "tests/linux/statusitem/RespondingTray.h"

#include <algorithm>
#include <csignal>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Optional;
using Button = UserInput::Button;

const std::string control = "PelistraV3.Control";
const std::string divider = "PelistraV3.Divider";
constexpr int screenWidth = 1280;
constexpr int collapsedWidth = 2 * screenWidth;

class OrganiserTest : public ::testing::Test {
protected:
    explicit OrganiserTest(const PrivateDisplay::Options& options = {}) : display_(options) {
        writeDefaults("");
    }

    void writeDefaults(const std::string& more) const {
        std::filesystem::create_directories(defaultsFile().parent_path());
        std::ofstream(defaultsFile())
            << "[Defaults]\nhasCompletedOnboarding." PELISTRA_VERSION "=true\n" + more;
    }
    [[nodiscard]] std::filesystem::path defaultsFile() const {
        return display_.configFolder() / "pelistra" / "defaults";
    }
    [[nodiscard]] std::string defaults() const { return contentOf(defaultsFile()); }
    void start(const std::vector<std::string>& options = {}) {
        std::vector<std::string> command{(builtPrograms() / "pelistra").string()};
        command.insert(command.end(), options.begin(), options.end());
        process_ = display_.start(command);
    }
    // A tray, and the organiser docked in it.
    void startDocked(const RespondingTray::Options& options = {}) {
        tray_ = std::make_unique<RespondingTray>(display_.name(), options);
        start();
        control_ = tray_->waitForItem(control);
        divider_ = tray_->waitForItem(divider);
        // The order check is the last thing that happens at the start.
        ASSERT_TRUE(
            tray_->waitFor([this] { return contains("Status order") || contains("not ready"); }));
    }
    [[nodiscard]] bool contains(const std::string& text) const {
        return process_->output().find(text) != std::string::npos;
    }
    [[nodiscard]] int dividerWidth() { return tray_->frameOf(divider_).width; }
    [[nodiscard]] bool hasVisibleWindow(const std::string& title) {
        for (const xcb_window_t window : client_.children(client_.root())) {
            if (client_.isViewable(window) && client_.title(window) == title) {
                return true;
            }
        }
        return false;
    }
    // After a click of the arrow, further ones are ignored for a quarter of a second.
    void letTheArrowRest() { tray_->serve(std::chrono::milliseconds(350)); }
    [[nodiscard]] bool clickUntil(Button button, const UserInput::Modifiers& modifiers,
                                  const std::function<bool()>& condition) {
        input_.click(centre(tray_->frameOf(control_)), button, modifiers);
        return tray_->waitFor(condition);
    }
    [[nodiscard]] bool collapse() {
        return clickUntil(Button::Left, {}, [this] { return dividerWidth() == collapsedWidth; });
    }
    [[nodiscard]] std::size_t pixelsOf(std::uint32_t colour, xcb_window_t window) {
        return client_.capture(tray_->frameOf(window)).pixelsOf(colour);
    }

    PrivateDisplay display_;
    XClient client_{display_.name()};
    UserInput input_{client_};
    std::unique_ptr<RespondingTray> tray_;
    std::unique_ptr<ChildProcess> process_;
    xcb_window_t control_ = XCB_WINDOW_NONE;
    xcb_window_t divider_ = XCB_WINDOW_NONE;
};

TEST_F(OrganiserTest, DocksTheControlAndThenTheDivider) {
    startDocked();
    EXPECT_THAT(tray_->docked(), ElementsAre(control_, divider_));
    EXPECT_EQ(tray_->frameOf(control_),
              (WindowFrame{.x = screenWidth - 28, .y = 0, .width = 28, .height = 28}));
    EXPECT_EQ(tray_->frameOf(divider_),
              (WindowFrame{.x = screenWidth - 42, .y = 0, .width = 14, .height = 28}));
    EXPECT_THAT(process_->output(),
                HasSubstr("Status order dividerX=1238.000000 controlX=1252.000000 valid="));
}

TEST_F(OrganiserTest, ItsItemsSayWhatTheyAre) {
    startDocked();
    for (const auto& [window, name, width] :
         {std::tuple{control_, control, 28U}, {divider_, divider, 14U}}) {
        EXPECT_EQ(client_.windowClass(window), std::pair(name, std::string("Pelistra")));
        EXPECT_EQ(client_.title(window), name);
        EXPECT_EQ(client_.windowProperty(window, "WM_NAME")->text(), name);
        EXPECT_THAT(client_.words(window, "_XEMBED_INFO"), ElementsAre(0, 1));
        EXPECT_THAT(client_.claimedProcess(window),
                    Optional(static_cast<std::uint32_t>(process_->pid())));
        const auto hints = client_.words(window, "WM_NORMAL_HINTS");
        ASSERT_EQ(hints.size(), 18U);
        EXPECT_EQ(hints[0], 16U | 256U);
        EXPECT_THAT((std::vector{hints[5], hints[6], hints[15], hints[16]}),
                    ElementsAre(width, 28, width, 28));
    }
}

TEST_F(OrganiserTest, TheFirstPositionsComeFromTheDefaults) {
    startDocked();
    EXPECT_THAT(client_.words(control_, "_PELISTRA_PREFERRED_POSITION"), ElementsAre(0));
    EXPECT_THAT(client_.words(divider_, "_PELISTRA_PREFERRED_POSITION"), ElementsAre(1));
    EXPECT_THAT(defaults(), HasSubstr("NSStatusItem Preferred Position PelistraV3.Divider=1\n"));
}

TEST_F(OrganiserTest, WhereTheUserPutItIsRemembered) {
    writeDefaults("NSStatusItem Preferred Position PelistraV3.Divider=4\n");
    startDocked();
    EXPECT_THAT(client_.words(divider_, "_PELISTRA_PREFERRED_POSITION"), ElementsAre(4));
    x11::setWords(client_.connection(), divider_, client_.atom("_PELISTRA_MENUBAR_POSITION"),
                  XCB_ATOM_CARDINAL, std::array{7U});
    client_.sync();
    EXPECT_TRUE(tray_->waitFor([this] {
        return defaults().find("NSStatusItem Preferred Position PelistraV3.Divider=7\n") !=
               std::string::npos;
    }));
    EXPECT_THAT(defaults(), HasSubstr("NSStatusItem Preferred Position PelistraV3.Control=0\n"));
}

TEST_F(OrganiserTest, AMalformedPositionChangesNothing) {
    startDocked();
    x11::setText(client_.connection(), divider_, client_.atom("_PELISTRA_MENUBAR_POSITION"),
                 XCB_ATOM_STRING, "seven");
    client_.sync();
    tray_->serve(std::chrono::milliseconds(300));
    EXPECT_THAT(defaults(), HasSubstr("NSStatusItem Preferred Position PelistraV3.Divider=1\n"));
}

TEST_F(OrganiserTest, ALeftClickCollapsesOnReleaseAndAltExpands) {
    startDocked();
    input_.moveTo(centre(tray_->frameOf(control_)));
    input_.press();
    tray_->serve(std::chrono::milliseconds(150));
    EXPECT_EQ(dividerWidth(), 14);
    input_.release();
    EXPECT_TRUE(tray_->waitForWidth(divider_, collapsedWidth));
    const auto hints = client_.words(divider_, "WM_NORMAL_HINTS");
    EXPECT_EQ(hints.at(5), static_cast<unsigned>(collapsedWidth));
    letTheArrowRest();
    EXPECT_TRUE(clickUntil(Button::Left, {keys::alt}, [this] { return dividerWidth() == 14; }));
    EXPECT_TRUE(contains("Collapsed divider to length 2560.000000"));
}

// As window managers do that move windows by Alt and a button: a grab on a window around the tray.
class GrabbedClickTest : public OrganiserTest {
protected:
    void grabAround(std::uint16_t modifiers) {
        xcb_grab_button(client_.get(), 0, client_.root(),
                        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE,
                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE,
                        XCB_BUTTON_INDEX_1, modifiers);
        client_.sync();
    }
};

TEST_F(GrabbedClickTest, AnAltClickThatAWindowManagerTakesExpandsAllTheSame) {
    startDocked();
    grabAround(XCB_MOD_MASK_1);
    ASSERT_TRUE(collapse());
    letTheArrowRest();
    EXPECT_TRUE(clickUntil(Button::Left, {keys::alt}, [this] { return dividerWidth() == 14; }));
}

TEST_F(GrabbedClickTest, AnAltClickThatEndsElsewhereDoesNothing) {
    startDocked();
    grabAround(XCB_MOD_MASK_1);
    ASSERT_TRUE(collapse());
    letTheArrowRest();
    input_.pressKey(keys::alt);
    input_.press();
    input_.moveTo({.x = 300, .y = 300});
    input_.release();
    input_.releaseKey(keys::alt);
    input_.moveTo(centre(tray_->frameOf(control_)));
    tray_->serve(std::chrono::milliseconds(400));
    EXPECT_EQ(dividerWidth(), collapsedWidth);
}

TEST_F(GrabbedClickTest, AMoveOfTheItemIsNoClick) {
    startDocked();
    grabAround(XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT);
    ASSERT_TRUE(collapse());
    letTheArrowRest();
    input_.click(centre(tray_->frameOf(control_)), Button::Left, {keys::alt, keys::shift});
    tray_->serve(std::chrono::milliseconds(400));
    EXPECT_EQ(dividerWidth(), collapsedWidth);
}

TEST_F(OrganiserTest, ARightClickOpensTheSettings) {
    startDocked();
    EXPECT_TRUE(
        clickUntil(Button::Right, {}, [this] { return hasVisibleWindow("Pelistra Settings"); }));
    EXPECT_EQ(dividerWidth(), 14);
}

TEST_F(OrganiserTest, OtherButtonsAndReleasesOutsideDoNothing) {
    startDocked();
    const RootPoint arrow = centre(tray_->frameOf(control_));
    input_.click(arrow, Button::Middle);
    for (const int wheel : {4, 5}) {
        input_.click(arrow, static_cast<Button>(wheel));
    }
    input_.moveTo(arrow);
    input_.press();
    input_.moveTo({.x = arrow.x - 300, .y = arrow.y + 300});
    input_.release();
    input_.click(centre(tray_->frameOf(divider_)));
    EXPECT_TRUE(tray_->waitFor([] { return true; }));
    tray_->serve(std::chrono::milliseconds(400));
    EXPECT_EQ(dividerWidth(), 14);
    EXPECT_FALSE(hasVisibleWindow("Pelistra Settings"));
    // It still listens.
    EXPECT_TRUE(collapse());
}

TEST_F(OrganiserTest, ATrayThatComesLaterGetsBothItems) {
    start();
    ASSERT_TRUE(process_->waitForOutput("waiting for one"));
    tray_ = std::make_unique<RespondingTray>(display_.name());
    control_ = tray_->waitForItem(control);
    divider_ = tray_->waitForItem(divider);
    EXPECT_THAT(tray_->docked(), ElementsAre(control_, divider_));
}

class TrayRestartTest : public OrganiserTest, public ::testing::WithParamInterface<bool> {};

TEST_P(TrayRestartTest, BothItemsComeBackAndTheSectionKeepsItsState) {
    startDocked();
    ASSERT_TRUE(collapse());
    for (int round = 0; round < 3; ++round) {
        if (GetParam()) {
            tray_->end();
        }
        tray_.reset();
        // Nothing of ours stays behind on the root, where it would be an ordinary window.
        EXPECT_TRUE(
            waitFor([this] { return !client_.exists(control_) && !client_.exists(divider_); }));
        tray_ = std::make_unique<RespondingTray>(display_.name());
        control_ = tray_->waitForItem(control);
        divider_ = tray_->waitForItem(divider);
        EXPECT_THAT(tray_->docked(), ElementsAre(control_, divider_));
        EXPECT_TRUE(tray_->waitForWidth(divider_, collapsedWidth));
    }
    letTheArrowRest();
    EXPECT_TRUE(clickUntil(Button::Left, {keys::alt}, [this] { return dividerWidth() == 14; }));
}

INSTANTIATE_TEST_SUITE_P(TrayEnds, TrayRestartTest, ::testing::Values(false, true),
                         [](const auto& row) { return row.param ? "InOrder" : "ByDeath"; });

TEST_F(OrganiserTest, AnItemThatIsThrownOutComesBack) {
    startDocked();
    tray_->eject(divider_);
    EXPECT_TRUE(tray_->waitFor([this] { return !client_.exists(divider_); }));
    divider_ = tray_->waitForItem(divider);
    EXPECT_EQ(dividerWidth(), 14);
    EXPECT_TRUE(client_.exists(control_));
}

TEST_F(OrganiserTest, ATrayThatKeepsThrowingItOutIsLeftInPeace) {
    startDocked();
    int ejections = 0;
    while (tray_->waitFor([this] { return tray_->item(divider).has_value(); },
                          std::chrono::milliseconds(2500))) {
        ASSERT_LE(++ejections, 6);
        tray_->eject(*tray_->item(divider));
    }
    EXPECT_EQ(ejections, 6);
    EXPECT_TRUE(process_->isRunning());
}

using OrganiserPictureTest = UnderCompositor<OrganiserTest>;
INSTANTIATE_TEST_SUITE_P(Under, OrganiserPictureTest, ::testing::ValuesIn(withAndWithoutCompositor),
                         compositorTestName);

TEST_P(OrganiserPictureTest, PicturesTakeTheTraysColoursAndFollowThem) {
    startDocked({.foreground = {0xffff, 0, 0}});
    EXPECT_TRUE(tray_->waitFor([this] { return pixelsOf(0xff0000, divider_) >= 28; }));
    EXPECT_TRUE(tray_->waitFor([this] { return pixelsOf(0xff0000, control_) >= 4; }));
    tray_->setForeground({0, 0, 0xffff});
    EXPECT_TRUE(tray_->waitFor([this] {
        return pixelsOf(0x0000ff, divider_) >= 28 && pixelsOf(0xff0000, divider_) == 0;
    }));
}

TEST_P(OrganiserPictureTest, TheTraysBackgroundShowsThrough) {
    startDocked({.background = 0x336699});
    EXPECT_TRUE(tray_->waitFor([this] { return pixelsOf(0, divider_) >= 28; }));
    EXPECT_GT(pixelsOf(0x336699, divider_), 300U);
    EXPECT_GT(pixelsOf(0x336699, control_), 600U);
}

TEST_F(OrganiserTest, TakesTheTraysVisual) {
    startDocked({.alpha = true});
    EXPECT_TRUE(client_.exists(control_));
    const x11::Owned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(client_.get(), xcb_get_geometry(client_.get(), control_), nullptr));
    ASSERT_TRUE(geometry);
    EXPECT_EQ(geometry->depth, 32);
    EXPECT_TRUE(collapse());
}

TEST_P(OrganiserPictureTest, TheArrowAnswersThePointer) {
    startDocked();
    const auto frame = tray_->frameOf(control_);
    input_.moveTo({.x = 400, .y = 400});
    EXPECT_TRUE(tray_->waitFor([this] { return pixelsOf(0, divider_) >= 28; }));
    const Picture resting = client_.capture(frame);
    input_.moveTo(centre(frame));
    EXPECT_TRUE(
        tray_->waitFor([&] { return client_.capture(frame).differingPixels(resting) > 200; }));
    const Picture hovered = client_.capture(frame);
    input_.press();
    EXPECT_TRUE(
        tray_->waitFor([&] { return client_.capture(frame).differingPixels(hovered) > 200; }));
    input_.moveTo({.x = 400, .y = 400});
    input_.release();
    EXPECT_TRUE(tray_->waitFor([&] { return client_.capture(frame) == resting; }));
}

TEST_P(OrganiserPictureTest, TheDividerIsInert) {
    startDocked();
    const auto frame = tray_->frameOf(divider_);
    EXPECT_TRUE(tray_->waitFor([this] { return pixelsOf(0, divider_) >= 28; }));
    const Picture resting = client_.capture(frame);
    input_.moveTo(centre(frame));
    input_.press();
    tray_->serve(std::chrono::milliseconds(200));
    EXPECT_EQ(client_.capture(frame), resting);
    input_.release();
}

TEST_F(OrganiserTest, ARestingPointerGetsTheTooltipBelowTheBar) {
    startDocked();
    const auto before = client_.children(client_.root()).size();
    input_.moveTo(centre(tray_->frameOf(control_)));
    const auto toolTip = [&]() -> std::optional<WindowFrame> {
        const auto children = client_.children(client_.root());
        for (const xcb_window_t window : children) {
            const auto frame = client_.frame(window);
            if (client_.isViewable(window) && frame && frame->y >= 28 && frame->width > 100) {
                return frame;
            }
        }
        return std::nullopt;
    };
    EXPECT_TRUE(tray_->waitFor([&] { return toolTip().has_value(); }));
    ASSERT_TRUE(toolTip());
    EXPECT_EQ(toolTip()->y, 32);
    EXPECT_LE(toolTip()->right(), screenWidth);
    input_.moveTo({.x = 400, .y = 400});
    EXPECT_TRUE(tray_->waitFor([&] { return !toolTip(); }));
    EXPECT_GE(client_.children(client_.root()).size(), before);
}

class ScaledOrganiserTest : public OrganiserTest,
                            public ::testing::WithParamInterface<std::uint32_t> {};

TEST_P(ScaledOrganiserTest, ItemsAreAsLargeAsTheBarsScaleSays) {
    startDocked({.menuBarScale = GetParam()});
    const int side = static_cast<int>(28 * GetParam() / 100);
    EXPECT_EQ(tray_->frameOf(control_).width, side);
    EXPECT_EQ(tray_->frameOf(control_).height, side);
    EXPECT_EQ(dividerWidth(), static_cast<int>(14 * GetParam() / 100));
    // The collapsed length is twice the screen in points, and so in pixels.
    EXPECT_TRUE(collapse());
}

INSTANTIATE_TEST_SUITE_P(Scales, ScaledOrganiserTest, ::testing::Values(100U, 150U, 200U),
                         [](const auto& row) { return std::to_string(row.param); });

TEST_F(OrganiserTest, WindowsAreAsLargeAsTheBarsScaleSays) {
    startDocked({.menuBarScale = 150});
    ASSERT_TRUE(
        clickUntil(Button::Right, {}, [this] { return hasVisibleWindow("Pelistra Settings"); }));
    const auto windows = client_.children(client_.root());
    const auto settings = std::ranges::find_if(windows, [this](xcb_window_t window) {
        return client_.title(window) == "Pelistra Settings";
    });
    ASSERT_NE(settings, windows.end());
    EXPECT_EQ(client_.frame(*settings)->width, 680 * 3 / 2);
    EXPECT_EQ(client_.frame(*settings)->height, 600 * 3 / 2);
}

TEST_F(OrganiserTest, ItemsFollowAChangeOfTheScale) {
    startDocked();
    tray_->setMenuBarScale(200);
    EXPECT_TRUE(tray_->waitForWidth(divider_, 28));
    EXPECT_TRUE(tray_->waitForWidth(control_, 56));
}

TEST_F(OrganiserTest, UnderATrayThatSaysNothingItAsksForAUsualIcon) {
    startDocked({.menuBarScale = std::nullopt});
    EXPECT_EQ(dividerWidth(), 14);
    EXPECT_TRUE(tray_->waitForWidth(control_, 28));
}

TEST_F(OrganiserTest, ItsEndTakesTheItemsOutOfTheTray) {
    for (const int number : {SIGTERM, SIGKILL}) {
        startDocked();
        ASSERT_TRUE(collapse());
        process_->signal(number);
        EXPECT_TRUE(tray_->waitFor([this] { return tray_->docked().empty(); }));
        static_cast<void>(process_->waitForExit());
        tray_.reset();
    }
}

TEST_F(OrganiserTest, ASizeThatItHasIsNotAskedForAgain) {
    startDocked();
    const int before = tray_->sizeRequests();
    tray_->setForeground({0xffff, 0, 0});
    EXPECT_TRUE(tray_->waitFor([&] { return pixelsOf(0xff0000, control_) > 0; }));
    EXPECT_EQ(tray_->sizeRequests(), before);
    ASSERT_TRUE(collapse());
    EXPECT_EQ(tray_->sizeRequests(), before + 1);
}

TEST_F(OrganiserTest, ASizeThatWasRefusedIsAskedForAgainWhenTheTrayChanges) {
    startDocked();
    const int width = dividerWidth();
    tray_->setGranting(false);
    const int before = tray_->sizeRequests();
    ASSERT_TRUE(clickUntil(Button::Left, {}, [&] { return tray_->sizeRequests() == before + 1; }));
    EXPECT_EQ(dividerWidth(), width);
    tray_->setForeground({0xffff, 0, 0});
    EXPECT_TRUE(tray_->waitFor([&] { return tray_->sizeRequests() > before + 1; }));
    EXPECT_EQ(dividerWidth(), width);
    tray_->setGranting(true);
    tray_->setForeground({0, 0xffff, 0});
    EXPECT_TRUE(tray_->waitForWidth(divider_, collapsedWidth));
}

TEST_F(OrganiserTest, ExpandedAndIdleItSleeps) {
    startDocked();
    input_.moveTo({.x = 400, .y = 400});
    // Two seconds after its start it gives back what that has needed, once.
    tray_->serve(std::chrono::milliseconds(3000));
    const auto before = wakeUps(process_->pid());
    ASSERT_TRUE(before);
    tray_->serve(std::chrono::milliseconds(3000));
    EXPECT_EQ(wakeUps(process_->pid()), before);
}

} // namespace

} // namespace pelistra::testing

#include "tests/statusbar/StatusBarFixture.h"

namespace pelistra::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr auto ready = "info: Status order dividerX=1386.000000 controlX=1400.000000 valid=true";

class StartUpTest : public StatusBarFixture {
protected:
    // Makes the controller and lets its start-up check pass.
    void launch(const std::vector<std::string>& switches = {}) {
        auto& arguments = fake_.application.processArguments;
        arguments.insert(arguments.end(), switches.begin(), switches.end());
        make();
        fake_.log.lines.clear();
        fake_.journal.clear();
        fake_.mainQueue.runUntilIdle();
    }
};

// The order check.

TEST_F(StartUpTest, TheCheckWaitsForTheNextTurn) {
    make();
    EXPECT_THAT(logged(), ElementsAre("info: Expanded hidden section"));

    fake_.mainQueue.runTurn();
    EXPECT_THAT(logged(), ElementsAre("info: Expanded hidden section", ready));
}

TEST_F(StartUpTest, ADividerLeftOfTheControlIsInOrder) {
    launch();

    EXPECT_THAT(logged(), ElementsAre(ready));
}

TEST_F(StartUpTest, ADividerRightOfTheControlIsReported) {
    placeItems(1450.5, 1400);
    launch();

    EXPECT_THAT(
        logged(),
        ElementsAre("info: Status order dividerX=1450.500000 controlX=1400.000000 valid=false",
                    "error: Pelistra status items have an invalid saved order"));
}

TEST_F(StartUpTest, EqualPlacesAreNotInOrder) {
    placeItems(1400, 1400);
    launch();

    EXPECT_THAT(
        logged(),
        ElementsAre("info: Status order dividerX=1400.000000 controlX=1400.000000 valid=false",
                    "error: Pelistra status items have an invalid saved order"));
}

TEST_F(StartUpTest, AWrongOrderIsNotRepaired) {
    placeItems(1450, 1400);
    launch();

    EXPECT_THAT(fake_.journal.entriesStartingWith("PelistraV3"), IsEmpty());
    EXPECT_THAT(fake_.journal.entriesStartingWith("defaults["), IsEmpty());
}

TEST_F(StartUpTest, AMissingDividerWindowIsReported) {
    make();
    fake_.log.lines.clear();
    fake_.windowList.remove(dividerName);
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(logged(), ElementsAre("error: Status item windows are not ready"));
}

TEST_F(StartUpTest, AMissingControlWindowIsReported) {
    make();
    fake_.log.lines.clear();
    fake_.windowList.remove(controlName);
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(logged(), ElementsAre("error: Status item windows are not ready"));
}

TEST_F(StartUpTest, AnotherProcessesItemsDoNotCount) {
    layoutIsFixed_ = true;
    fake_.windowList.place(99, dividerName, 100, 14);
    fake_.windowList.place(99, controlName, 200, 24);
    launch();

    EXPECT_THAT(logged(), ElementsAre("error: Status item windows are not ready"));
}

TEST_F(StartUpTest, TheFlagIsReadFromTheWindowsAgain) {
    make();
    fake_.log.lines.clear();
    const int before = fake_.windowList.answers;
    fake_.windowList.beforeAnswer = [this, before](int answered) {
        if (answered == before + 2) {
            placeItems(1500, 1400);
        }
    };
    fake_.mainQueue.runUntilIdle();

    EXPECT_EQ(fake_.windowList.answers, before + 4);
    EXPECT_THAT(
        logged(),
        ElementsAre("info: Status order dividerX=1386.000000 controlX=1400.000000 valid=false"));
}

// The switches.

TEST_F(StartUpTest, WithoutASwitchTheSectionStaysExpanded) {
    launch({"--start", "start-collapsed", "--start-collapsed=1"});

    EXPECT_FALSE(isCollapsed());
    EXPECT_EQ(fake_.mainQueue.delayedBlocks(), 0U);
}

TEST_F(StartUpTest, StartCollapsedCollapsesAfterTheCheck) {
    launch({"--start-collapsed"});

    EXPECT_EQ(divider().length, collapsedLength);
    EXPECT_THAT(logged(), ElementsAre(ready, "info: Collapsed divider to length 3024.000000"));
}

TEST_F(StartUpTest, StartCollapsedSetsNoLatch) {
    launch({"--start-collapsed"});
    leftClick();

    EXPECT_TRUE(rowIsOpen());
}

TEST_F(StartUpTest, StartCollapsedIsRefusedWhileTheOrderIsWrong) {
    placeItems(1450, 1400);
    launch({"--start-collapsed"});

    EXPECT_FALSE(isCollapsed());
    EXPECT_THAT(
        logged(),
        ElementsAre("info: Status order dividerX=1450.000000 controlX=1400.000000 valid=false",
                    "error: Pelistra status items have an invalid saved order",
                    "error: Refusing to collapse because divider is not left of control",
                    "info: Expanded hidden section"));
}

TEST_F(StartUpTest, StartCollapsedWinsOverTheLayoutVerification) {
    launch({"--verify-section-layout", "--start-collapsed"});
    passTime(10);

    EXPECT_TRUE(isCollapsed());
    EXPECT_THAT(logged(), Each(Not(HasSubstr("Verification"))));
}

// The layout verification.

TEST_F(StartUpTest, TheLayoutVerificationCollapsesMeasuresAndExpands) {
    launch({"--verify-section-layout"});
    EXPECT_EQ(divider().length, collapsedLength);
    divider().button->window = makeRect<ScreenSpace>(-1624, 958, collapsedLength, 24);

    passTime(0.399);
    EXPECT_TRUE(isCollapsed());
    passTime(0.001);

    EXPECT_FALSE(isCollapsed());
    EXPECT_THAT(
        logged(),
        ElementsAre(ready, "info: Collapsed divider to length 3024.000000",
                    "info: Verification collapsed dividerWidth=3024.0 pointerUnchanged=true",
                    "info: Expanded hidden section"));
}

TEST_F(StartUpTest, TheLayoutVerificationDoesNotEndTheProcess) {
    launch({"--verify-section-layout"});
    passTime(10);

    EXPECT_FALSE(fake_.journal.contains("terminate"));
}

TEST_F(StartUpTest, TheLayoutVerificationSeesAPointerThatMoved) {
    for (const ScreenPoint moved : {ScreenPoint{.x = 700, .y = 400.5}, {.x = 699, .y = 400}}) {
        fake_.application.pointer = {.x = 700, .y = 400};
        fake_.application.processArguments = {"pelistra"};
        fake_.statusBar.items.clear();
        launch({"--verify-section-layout"});
        divider().button->window = makeRect<ScreenSpace>(-1624, 958, 2999.5, 24);
        fake_.application.pointer = moved;
        passTime(0.4);

        EXPECT_THAT(
            logged(),
            Contains("info: Verification collapsed dividerWidth=2999.5 pointerUnchanged=false"));
        controller_.reset();
    }
}

TEST_F(StartUpTest, TheLayoutVerificationWithoutADividerWindowReportsMinusOne) {
    launch({"--verify-section-layout"});
    divider().button->window.reset();
    passTime(0.4);

    EXPECT_THAT(logged(),
                Contains("info: Verification collapsed dividerWidth=-1.0 pointerUnchanged=true"));
}

TEST_F(StartUpTest, TheLayoutVerificationWithoutADividerButtonReportsMinusOne) {
    fake_.statusBar.itemsWithoutButton = {1};
    launch({"--verify-section-layout"});
    passTime(0.4);

    EXPECT_THAT(logged(),
                Contains("info: Verification collapsed dividerWidth=-1.0 pointerUnchanged=true"));
}

TEST_F(StartUpTest, TheLayoutVerificationIsSilentWhileTheOrderIsWrong) {
    placeItems(1450, 1400);
    launch({"--verify-section-layout"});
    passTime(10);

    EXPECT_FALSE(isCollapsed());
    EXPECT_THAT(
        logged(),
        ElementsAre("info: Status order dividerX=1450.000000 controlX=1400.000000 valid=false",
                    "error: Pelistra status items have an invalid saved order"));
}

TEST_F(StartUpTest, TheLayoutVerificationIsSilentWithoutWindows) {
    make();
    fake_.application.processArguments.emplace_back("--verify-section-layout");
    fake_.log.lines.clear();
    fake_.windowList.remove(dividerName);
    fake_.mainQueue.runUntilIdle();
    passTime(10);

    EXPECT_THAT(logged(), ElementsAre("error: Status item windows are not ready"));
}

TEST_F(StartUpTest, TheMeasurementDoesNothingOnceTheControllerIsGone) {
    launch({"--verify-section-layout"});
    controller_.reset();
    fake_.log.lines.clear();
    passTime(1);

    EXPECT_THAT(logged(), IsEmpty());
}

} // namespace
} // namespace pelistra::testing

#include "overflow/PrivateMenuBarBridge.h"

#include "tests/overflow/OverflowFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Eq;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::string openLine =
    "dlopen /System/Library/PrivateFrameworks/SkyLight.framework/SkyLight 5";
const LogLine unavailable{
    .subsystem = "com.pelistra.app",
    .category = "private-menu-bar",
    .level = LogLevel::Error,
    .message = "Required SkyLight symbols are unavailable; second-row discovery is disabled"};

class PrivateMenuBarBridgeTest : public OverflowFixture {
protected:
    void TearDown() override {
        EXPECT_EQ(library.openHandles, 0);
        EXPECT_EQ(library.misuses, 0);
    }

    // Whether a lone window of that frame passes.
    bool passes(const Rect& frame) {
        place(1, clockPid, frame);
        return makeBridge()->windows().size() == 1;
    }
    bool passes(double width, double height) {
        return passes(makeRect<GlobalSpace>(10, 0, width, height));
    }
};

TEST_F(PrivateMenuBarBridgeTest, LoadsLibraryAndSymbolsInOrder) {
    const auto bridge = makeBridge();
    EXPECT_TRUE(bridge->hasSymbols());
    EXPECT_THAT(journal.entries(),
                ElementsAre(openLine, "dlsym SLSMainConnectionID", "dlsym SLSGetWindowCount",
                            "dlsym SLSGetProcessMenuBarWindowList",
                            "dlsym SLSGetScreenRectForWindow"));
}

TEST_F(PrivateMenuBarBridgeTest, ClosesTheLibraryWhenItDies) {
    auto bridge = makeBridge();
    journal.clear();
    bridge.reset();
    EXPECT_THAT(journal.entries(), ElementsAre("dlclose"));
}

TEST_F(PrivateMenuBarBridgeTest, StaysUsableWithoutTheLibrary) {
    library.missing = true;
    place(1, clockPid, 10);
    {
        const auto bridge = makeBridge();
        EXPECT_FALSE(bridge->hasSymbols());
        EXPECT_THAT(bridge->windows(), IsEmpty());
        EXPECT_EQ(bridge->windowFrame(1), std::nullopt);
    }
    // Nothing was opened, so nothing is looked up, asked or closed.
    EXPECT_THAT(journal.entries(), ElementsAre(openLine, "log error: " + unavailable.message));
    EXPECT_THAT(log.lines, ElementsAre(unavailable));
}

struct MissingSymbol {
    std::string name;
    std::vector<std::string> lookUps;
};

class MissingSymbolTest : public PrivateMenuBarBridgeTest,
                          public ::testing::WithParamInterface<MissingSymbol> {};

TEST_P(MissingSymbolTest, EndsTheSequenceAndClosesTheLibrary) {
    library.missingSymbols = {GetParam().name};
    place(1, clockPid, 10);
    {
        const auto bridge = makeBridge();
        EXPECT_FALSE(bridge->hasSymbols());
        EXPECT_THAT(bridge->windows(), IsEmpty());
        EXPECT_THAT(bridge->windows(), IsEmpty());
        EXPECT_EQ(bridge->windowFrame(1), std::nullopt);
    }
    std::vector<std::string> expected = {openLine};
    for (const std::string& lookUp : GetParam().lookUps) {
        expected.push_back("dlsym " + lookUp);
    }
    expected.insert(expected.end(), {"dlclose", "log error: " + unavailable.message});
    EXPECT_EQ(journal.entries(), expected);
    EXPECT_THAT(log.lines, ElementsAre(unavailable));
}

INSTANTIATE_TEST_SUITE_P(
    Each, MissingSymbolTest,
    ::testing::Values(
        MissingSymbol{.name = "SLSMainConnectionID", .lookUps = {"SLSMainConnectionID"}},
        MissingSymbol{.name = "SLSGetWindowCount",
                      .lookUps = {"SLSMainConnectionID", "SLSGetWindowCount"}},
        MissingSymbol{.name = "SLSGetProcessMenuBarWindowList",
                      .lookUps = {"SLSMainConnectionID", "SLSGetWindowCount",
                                  "SLSGetProcessMenuBarWindowList"}},
        MissingSymbol{.name = "SLSGetScreenRectForWindow",
                      .lookUps = {"SLSMainConnectionID", "SLSGetWindowCount",
                                  "SLSGetProcessMenuBarWindowList", "SLSGetScreenRectForWindow"}}),
    [](const auto& test) { return test.param.name; });

TEST_F(PrivateMenuBarBridgeTest, AsksTheServerInOrderAndPassesTheConnectionOn) {
    place(11, clockPid, 10);
    place(12, clockPid, 50);
    const auto bridge = makeBridge();
    journal.clear();
    EXPECT_THAT(bridge->windows(), SizeIs(2));
    EXPECT_THAT(journal.entries(),
                ElementsAre("mainConnection", "windowCount(77, 0)", "menuBarWindowList(77, 0, 2)",
                            "copyWindowInfo", "windowFrame(77, 11)", "runningApplication 300",
                            "windowFrame(77, 12)", "runningApplication 300"));
}

TEST_F(PrivateMenuBarBridgeTest, EveryCallStartsFromNothing) {
    place(1, clockPid, 10);
    const auto bridge = makeBridge();
    EXPECT_THAT(idsOf(bridge->windows()), ElementsAre(1));
    place(2, clockPid, 50);
    EXPECT_THAT(idsOf(bridge->windows()), ElementsAre(1, 2));
    remove(1);
    EXPECT_THAT(idsOf(bridge->windows()), ElementsAre(2));
    EXPECT_THAT(journal.entriesStartingWith("mainConnection"), SizeIs(3));
}

TEST_F(PrivateMenuBarBridgeTest, FailedCountEndsTheLook) {
    place(1, clockPid, 10);
    const auto bridge = makeBridge();
    journal.clear();
    library.countError = 1000;
    EXPECT_THAT(bridge->windows(), IsEmpty());
    EXPECT_THAT(journal.entries(), ElementsAre("mainConnection", "windowCount(77, 0)"));
}

TEST_F(PrivateMenuBarBridgeTest, CountBelowOneEndsTheLook) {
    place(1, clockPid, 10);
    const auto bridge = makeBridge();
    for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        journal.clear();
        library.count = count;
        EXPECT_THAT(bridge->windows(), IsEmpty());
        EXPECT_THAT(journal.entries(), ElementsAre("mainConnection", "windowCount(77, 0)"));
    }
    library.count = 1;
    EXPECT_THAT(bridge->windows(), SizeIs(1));
}

TEST_F(PrivateMenuBarBridgeTest, FailedListEndsTheLook) {
    place(1, clockPid, 10);
    const auto bridge = makeBridge();
    journal.clear();
    library.listError = -1;
    EXPECT_THAT(bridge->windows(), IsEmpty());
    EXPECT_THAT(journal.entries(),
                ElementsAre("mainConnection", "windowCount(77, 0)", "menuBarWindowList(77, 0, 1)"));
}

TEST_F(PrivateMenuBarBridgeTest, NumberListedBelowOneEndsTheLook) {
    place(1, clockPid, 10);
    const auto bridge = makeBridge();
    for (const std::int32_t listed : {0, -5}) {
        library.listed = listed;
        EXPECT_THAT(bridge->windows(), IsEmpty());
    }
    EXPECT_THAT(journal.entriesStartingWith("copyWindowInfo"), IsEmpty());
}

TEST_F(PrivateMenuBarBridgeTest, NumberListedAboveTheCountUsesTheCount) {
    place(1, clockPid, 10);
    place(2, clockPid, 50);
    place(3, clockPid, 90);
    library.count = 2;
    library.listed = 3;
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(1, 2));
}

TEST_F(PrivateMenuBarBridgeTest, SmallerNumberListedUsesOnlyThatMany) {
    place(1, clockPid, 10);
    place(2, clockPid, 50);
    place(3, clockPid, 90);
    library.listed = 2;
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(1, 2));
}

TEST_F(PrivateMenuBarBridgeTest, KeepsTheServersOrder) {
    place(30, clockPid, 400);
    place(10, clockPid, 100);
    place(20, clockPid, 250);
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(30, 10, 20));
}

TEST_F(PrivateMenuBarBridgeTest, WindowNamedTwiceIsOneRecord) {
    place(1, clockPid, 10);
    place(2, clockPid, 50);
    library.ids = {1, 2, 1};
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(1, 2));
}

TEST_F(PrivateMenuBarBridgeTest, WithoutWindowListNothingIsKnown) {
    place(1, clockPid, 10);
    const auto bridge = makeBridge();
    windowList.windows.reset();
    EXPECT_THAT(bridge->windows(), IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PrivateMenuBarBridgeTest, WindowsWithoutEntryAreDropped) {
    place(1, clockPid, 10);
    place(2, clockPid, 50);
    windowList.windows->erase(windowList.windows->begin());
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(2));
}

TEST_F(PrivateMenuBarBridgeTest, EntriesWithoutNumberAreSkipped) {
    place(1, clockPid, 10);
    WindowInfo anonymous;
    anonymous.ownerPid = 5;
    windowList.windows->insert(windowList.windows->begin(), 2, anonymous);
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(1));
}

TEST_F(PrivateMenuBarBridgeTest, WindowsWithoutOwnerAreDropped) {
    place(1, clockPid, 10);
    place(2, clockPid, 50);
    info(1).ownerPid.reset();
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(2));
}

TEST_F(PrivateMenuBarBridgeTest, WindowsWhoseFrameCallFailsAreDropped) {
    place(1, clockPid, 10);
    place(2, clockPid, 50);
    library.frameErrors[1] = 1;
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(2));
    library.frameErrors[1] = -1;
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(2));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PrivateMenuBarBridgeTest, WidthLimitsAreStrict) {
    EXPECT_FALSE(passes(4, 24));
    EXPECT_TRUE(passes(4.01, 24));
    EXPECT_TRUE(passes(179, 24));
    EXPECT_TRUE(passes(179.99, 24));
    EXPECT_FALSE(passes(180, 24));
    EXPECT_FALSE(passes(3024, 24));
}

TEST_F(PrivateMenuBarBridgeTest, HeightIsAboveFourAndAtMostFifty) {
    EXPECT_FALSE(passes(30, 4));
    EXPECT_TRUE(passes(30, 4.01));
    EXPECT_TRUE(passes(179, 50));
    EXPECT_FALSE(passes(30, 50.01));
    EXPECT_FALSE(passes(30, 51));
}

TEST_F(PrivateMenuBarBridgeTest, AbsurdSizesAreDropped) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(passes(0, 0));
    EXPECT_FALSE(passes(nan, 24));
    EXPECT_FALSE(passes(30, nan));
    EXPECT_FALSE(passes(infinity, 24));
    EXPECT_FALSE(passes(30, infinity));
    EXPECT_FALSE(passes(-1e300, 24));
}

TEST_F(PrivateMenuBarBridgeTest, WindowsOffScreenPass) {
    EXPECT_TRUE(passes(makeRect<GlobalSpace>(-2500, 0, 30, 24)));
    EXPECT_TRUE(passes(makeRect<GlobalSpace>(99999, -4000, 30, 24)));
}

TEST_F(PrivateMenuBarBridgeTest, RecordHoldsWhatIsKnown) {
    const auto icon = std::make_shared<FakeImage>(Size{.width = 32, .height = 32});
    auto& clock = run(clockPid, "Localized Clock");
    clock.bundleIdentifier = "org.example.clock";
    clock.icon = icon;
    const Rect frame = makeRect<GlobalSpace>(100.5, 1.25, 42.75, 22);
    place(7, clockPid, frame, "Clock");
    const PrivateMenuBarWindow expected{.id = 7,
                                        .ownerPID = clockPid,
                                        .ownerName = "Owner 300",
                                        .windowName = "Clock",
                                        .bundleIdentifier = "org.example.clock",
                                        .frame = frame,
                                        .applicationIcon = icon};
    EXPECT_THAT(makeBridge()->windows(), ElementsAre(expected));
    // The name of the application was not needed.
    EXPECT_THAT(journal.entriesStartingWith("localizedName"), IsEmpty());
}

TEST_F(PrivateMenuBarBridgeTest, OwnerWithoutApplicationHasNeitherIdentifierNorIcon) {
    place(7, clockPid, 10);
    const auto windows = makeBridge()->windows();
    ASSERT_THAT(windows, SizeIs(1));
    EXPECT_EQ(windows[0].ownerName, "Owner 300");
    EXPECT_EQ(windows[0].bundleIdentifier, std::nullopt);
    EXPECT_EQ(windows[0].applicationIcon, nullptr);
}

TEST_F(PrivateMenuBarBridgeTest, ApplicationMayLackEverything) {
    applications.running[clockPid];
    place(7, clockPid, 10);
    info(7).ownerName.reset();
    const auto windows = makeBridge()->windows();
    ASSERT_THAT(windows, SizeIs(1));
    EXPECT_EQ(windows[0].ownerName, "菜单栏项目");
    EXPECT_EQ(windows[0].bundleIdentifier, std::nullopt);
    EXPECT_EQ(windows[0].applicationIcon, nullptr);
}

TEST_F(PrivateMenuBarBridgeTest, OwnerNameFallsBackToTheApplicationsAndThenToALiteral) {
    place(1, clockPid, 10);
    info(1).ownerName.reset();
    EXPECT_EQ(makeBridge()->windows().at(0).ownerName, "菜单栏项目");
    run(clockPid, "Localized Clock");
    EXPECT_EQ(makeBridge()->windows().at(0).ownerName, "Localized Clock");
    info(1).ownerName = "";
    EXPECT_EQ(makeBridge()->windows().at(0).ownerName, "");
}

TEST_F(PrivateMenuBarBridgeTest, MissingWindowNameIsEmpty) {
    place(1, clockPid, 10);
    info(1).name.reset();
    EXPECT_EQ(makeBridge()->windows().at(0).windowName, "");
}

TEST_F(PrivateMenuBarBridgeTest, ApplicationsAreLookedUpAfreshForEveryWindow) {
    place(1, clockPid, 10);
    place(2, clockPid, 50);
    const auto bridge = makeBridge();
    EXPECT_THAT(bridge->windows(), SizeIs(2));
    EXPECT_THAT(bridge->windows(), SizeIs(2));
    EXPECT_THAT(journal.entriesStartingWith("runningApplication 300"), SizeIs(4));
}

TEST_F(PrivateMenuBarBridgeTest, NoOwnerIsFilteredOut) {
    place(1, application.pid, 10);
    place(2, 0, 50);
    place(3, -9, 90);
    place(4, 1, 130);
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(1, 2, 3, 4));
}

TEST_F(PrivateMenuBarBridgeTest, ForeignTextsPassUnchanged) {
    const std::string megabyte(1024UL * 1024, 'x');
    const std::string zeroBytes("a\0b\0", 4);
    const std::string malformed = "\xff\xfe\xc3(\xe2\x82";
    const std::string rightToLeft = "\u202Eشريط\u202C\x1b[31m\n";
    const std::vector<std::string> names = {megabyte, zeroBytes, malformed, rightToLeft};
    for (WindowId id = 0; id < names.size(); ++id) {
        place(id + 1, clockPid, makeRect<GlobalSpace>(10, 0, 30, 24), names[id]);
        info(id + 1).ownerName = names[id];
    }
    const auto windows = makeBridge()->windows();
    ASSERT_THAT(windows, SizeIs(names.size()));
    for (std::size_t index = 0; index < names.size(); ++index) {
        EXPECT_EQ(windows[index].windowName, names[index]);
        EXPECT_EQ(windows[index].ownerName, names[index]);
    }
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PrivateMenuBarBridgeTest, ExtremeWindowNumbersAreNumbersLikeOthers) {
    constexpr WindowId largest = std::numeric_limits<WindowId>::max();
    place(largest, clockPid, 10);
    place(0, clockPid, 50);
    EXPECT_THAT(idsOf(makeBridge()->windows()), ElementsAre(largest, 0));
}

TEST_F(PrivateMenuBarBridgeTest, WindowFrameAsksTheServerAtOnce) {
    const Rect frame = makeRect<GlobalSpace>(3, 4, 500, 600);
    library.frames[9] = frame;
    const auto bridge = makeBridge();
    journal.clear();
    EXPECT_EQ(bridge->windowFrame(9), frame);
    EXPECT_THAT(journal.entries(), ElementsAre("mainConnection", "windowFrame(77, 9)"));
}

TEST_F(PrivateMenuBarBridgeTest, WindowFrameIsEmptyWhenTheServerRefuses) {
    const auto bridge = makeBridge();
    EXPECT_EQ(bridge->windowFrame(9), std::nullopt);
    library.frames[9] = makeRect<GlobalSpace>(3, 4, 5, 6);
    library.frameErrors[9] = 1000;
    EXPECT_EQ(bridge->windowFrame(9), std::nullopt);
    EXPECT_THAT(log.lines, IsEmpty());
}

using PrivateMenuBarBridgeDeathTest = PrivateMenuBarBridgeTest;

// In a process of its own, since it lasts as long as that.
TEST_F(PrivateMenuBarBridgeDeathTest, SharedBridgeIsMadeOnceForAllThreadsAndNeverGoes) {
    EXPECT_EXIT(
        {
            static const Journal& calls = journal;
            // Runs after everything that was made later has gone.
            std::atexit([] {
                if (calls.entriesStartingWith("dlopen").size() != 1 ||
                    !calls.entriesStartingWith("dlclose").empty()) {
                    std::_Exit(EXIT_FAILURE);
                }
            });
            std::vector<const PrivateMenuBarBridge*> bridges(8);
            std::vector<std::thread> threads;
            for (auto& bridge : bridges) {
                threads.emplace_back(
                    [this, &bridge] { bridge = PrivateMenuBarBridge::shared(services()).get(); });
            }
            for (auto& thread : threads) {
                thread.join();
            }
            const auto* const later = PrivateMenuBarBridge::shared(services()).get();
            const bool isOne = std::ranges::count(bridges, later) == std::ssize(bridges);
            std::exit(isOne ? EXIT_SUCCESS : EXIT_FAILURE);
        },
        ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(PrivateMenuBarBridgeDeathTest, WindowNumberListedTwiceIsFatal) {
    place(1, clockPid, 10);
    windowList.windows->push_back(info(1));
    const auto bridge = makeBridge();
    EXPECT_DEATH((void)bridge->windows(),
                 "Fatal error: the window server listed one window number twice");
}

} // namespace
} // namespace pelistra::testing

#include "overflow/OverflowStore.h"

#include "tests/overflow/OverflowFixture.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::NotNull;
using ::testing::SizeIs;

const std::string unsupported = "当前 macOS 版本不支持第二行菜单栏读取。";
const std::string nothingHidden = "分隔线左侧暂时没有可放入第二行的图标。";
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

LogLine snapshotLine(int count) {
    return {.subsystem = "com.pelistra.app",
            .category = "overflow-store",
            .level = LogLevel::Info,
            .message = "Snapshotted " + std::to_string(count) + " overflow item(s)"};
}

class OverflowStoreTest : public OverflowFixture {
protected:
    void SetUp() override {
        for (const ProcessId pid : {300, 301, 302, 303}) {
            run(pid, "Application " + std::to_string(pid));
        }
        store = makeStore();
        journal.clear();
    }
    void TearDown() override {
        store.reset();
        EXPECT_EQ(library.misuses, 0);
    }

    // A store on a system without the private functions.
    void loseSymbols() {
        library.missing = true;
        store = makeStore();
        journal.clear();
        log.lines.clear();
    }
    [[nodiscard]] std::vector<WindowId> ids() const { return idsOf(store->items.get()); }
    [[nodiscard]] const OverflowItem& item(std::size_t index) const {
        return store->items.get().at(index);
    }
    [[nodiscard]] std::vector<std::string> captures() const {
        return journal.entriesStartingWith("capture");
    }
    // Whether a snapshot takes a lone window of that frame.
    bool snapshotTakes(const Rect& frame) {
        place(9, 300, frame);
        store->snapshot(divider());
        return !ids().empty();
    }
    // Whether a fresh store's refresh against a divider of that width takes a lone window.
    bool refreshTakes(const Rect& frame, double dividerWidth) {
        place(9, 300, frame);
        store = makeStore();
        store->refreshWhileCollapsed(divider(dividerWidth));
        return !ids().empty();
    }
    // A lone window that ends there, 30 points wide.
    static Rect endingAt(double maxX) { return makeRect<GlobalSpace>(maxX - 30, 0, 30, 24); }
    static Rect lower(double minY) { return makeRect<GlobalSpace>(100, minY, 30, 24); }

    std::unique_ptr<OverflowStore> store;
};

TEST_F(OverflowStoreTest, StartsEmptyWithThePreflightsAnswer) {
    EXPECT_THAT(store->items.get(), IsEmpty());
    EXPECT_EQ(store->message.get(), std::nullopt);
    EXPECT_TRUE(store->hasScreenCapturePermission.get());
    EXPECT_TRUE(store->hasSymbols());
    capture.granted = false;
    EXPECT_FALSE(makeStore()->hasScreenCapturePermission.get());
    EXPECT_THAT(journal.entriesStartingWith("preflightAccess"), SizeIs(1));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(OverflowStoreTest, SharesTheBridgeItIsGiven) {
    const auto bridge = makeBridge();
    journal.clear();
    auto own = std::make_unique<OverflowStore>(bridge, services());
    EXPECT_THAT(journal.entriesStartingWith("dlopen"), IsEmpty());
    own.reset();
    EXPECT_THAT(journal.entriesStartingWith("dlclose"), IsEmpty());
}

// --- snapshot

TEST_F(OverflowStoreTest, SnapshotWithoutSymbolsSaysSoAndKeepsTheList) {
    loseSymbols();
    EXPECT_FALSE(store->hasSymbols());
    store->items.set({itemWithId(5)});
    int publications = 0;
    const auto token = store->items.observe([&](const auto&) { ++publications; });
    store->snapshot(divider());
    EXPECT_EQ(store->message.get(), unsupported);
    EXPECT_THAT(ids(), ElementsAre(5));
    EXPECT_EQ(publications, 0);
    EXPECT_THAT(journal.entries(), IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(OverflowStoreTest, SnapshotTakesTheWindowsLeftOfTheDividerFromLeftToRight) {
    place(1, 300, 400);
    place(2, 301, 100);
    place(3, 302, 600);
    place(4, 303, 250);
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(2, 4, 1));
    EXPECT_EQ(store->message.get(), std::nullopt);
    EXPECT_THAT(log.lines, ElementsAre(snapshotLine(3)));
}

TEST_F(OverflowStoreTest, SnapshotRunsItsStepsInOrder) {
    place(1, 300, 100);
    std::vector<std::string> published;
    const auto items = store->items.observe([&](const auto& value) {
        published.push_back("items " + std::to_string(value.size()) +
                            (value.empty() || !value[0].capturedImage ? "" : " with picture"));
    });
    const auto permission = store->hasScreenCapturePermission.observe(
        [&](const bool&) { published.emplace_back("permission"); });
    const auto message = store->message.observe(
        [&](const auto& value) { published.push_back(value.value_or("no message")); });
    store->snapshot(divider());
    EXPECT_THAT(published,
                ElementsAre("items 1", "permission", "items 1 with picture", "no message"));
    EXPECT_THAT(journal.entries(),
                ElementsAre("mainConnection", "windowCount(77, 0)", "menuBarWindowList(77, 0, 1)",
                            "copyWindowInfo", "windowFrame(77, 1)", "runningApplication 300",
                            "preflightAccess", "capture 1 9",
                            "log info: Snapshotted 1 overflow item(s)"));
}

TEST_F(OverflowStoreTest, SnapshotPublishesOnceEvenWhenNothingChanged) {
    capture.granted = false;
    place(1, 300, 100);
    store->snapshot(divider());
    int publications = 0;
    const auto token = store->items.observe([&](const auto&) { ++publications; });
    store->snapshot(divider());
    EXPECT_EQ(publications, 1);
    remove(1);
    store->snapshot(divider());
    EXPECT_EQ(publications, 2);
    store->snapshot(divider());
    EXPECT_EQ(publications, 3);
}

TEST_F(OverflowStoreTest, SnapshotBoundIsTheDividersLeftEdgePlusOnePoint) {
    EXPECT_TRUE(snapshotTakes(endingAt(500)));
    EXPECT_TRUE(snapshotTakes(endingAt(501)));
    EXPECT_FALSE(snapshotTakes(endingAt(501.01)));
    EXPECT_FALSE(snapshotTakes(endingAt(514)));
    // There is no bound on the other side.
    EXPECT_TRUE(snapshotTakes(endingAt(-100'000)));
}

TEST_F(OverflowStoreTest, SnapshotRowIsThreePointsHighOrLow) {
    EXPECT_TRUE(snapshotTakes(lower(3)));
    EXPECT_FALSE(snapshotTakes(lower(3.01)));
    EXPECT_TRUE(snapshotTakes(lower(-3)));
    EXPECT_FALSE(snapshotTakes(lower(-3.01)));
    EXPECT_FALSE(snapshotTakes(lower(1080)));
}

TEST_F(OverflowStoreTest, RowIsMeasuredFromTheDividersTop) {
    place(1, 300, makeRect<GlobalSpace>(100, 1083, 30, 40));
    place(2, 300, makeRect<GlobalSpace>(140, 0, 30, 24));
    store->snapshot(makeRect<GlobalSpace>(500, 1080, 14, 24));
    EXPECT_THAT(ids(), ElementsAre(1));
}

TEST_F(OverflowStoreTest, FramesThatAreNoNumbersAreNotInPlace) {
    EXPECT_FALSE(snapshotTakes(makeRect<GlobalSpace>(nan, 0, 30, 24)));
    EXPECT_FALSE(snapshotTakes(makeRect<GlobalSpace>(100, nan, 30, 24)));
    EXPECT_FALSE(refreshTakes(makeRect<GlobalSpace>(nan, 0, 30, 24), 3000));
}

TEST_F(OverflowStoreTest, OwnStatusItemsAreNeverListed) {
    run(application.pid, "Own");
    place(1, application.pid, 100);
    place(2, 300, 140);
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(2));
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(2));
}

TEST_F(OverflowStoreTest, OwnersWithOddProcessIdsAreListedByASnapshot) {
    place(1, 0, 100);
    place(2, -7, 140);
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(1, 2));
    EXPECT_FALSE(store->activateOriginalMenu(item(0)));
    EXPECT_FALSE(store->openApplication(item(1)));
}

TEST_F(OverflowStoreTest, SnapshotKeepsTheBridgesOrderAtTheSamePlace) {
    for (const WindowId id : {40, 10, 30, 20}) {
        place(id, 300, 100);
    }
    place(5, 300, 50);
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(5, 40, 10, 30, 20));
}

TEST_F(OverflowStoreTest, SnapshotTakesEverythingButThePictureFromTheWindow) {
    place(7, 300, 100);
    store->snapshot(divider());
    const ImagePtr picture = item(0).capturedImage;
    ASSERT_THAT(picture, NotNull());

    const auto icon = std::make_shared<FakeImage>(Size{.width = 32, .height = 32});
    run(301, "Other").bundleIdentifier = "org.example.other";
    applications.running[301].icon = icon;
    info(7).ownerPid = 301;
    info(7).ownerName = "New owner";
    info(7).name = "New name";
    place(7, 301, 120);
    store->snapshot(divider());
    const OverflowItem expected{.id = 7,
                                .ownerPID = 301,
                                .ownerName = "New owner",
                                .windowName = "New name",
                                .bundleIdentifier = "org.example.other",
                                .lastKnownFrame = makeRect<GlobalSpace>(120, 0, 30, 24),
                                .capturedImage = picture,
                                .applicationIcon = icon};
    EXPECT_THAT(store->items.get(), ElementsAre(expected));
    EXPECT_THAT(captures(), SizeIs(1));
}

TEST_F(OverflowStoreTest, SnapshotKeepsThePictureThatARefreshFound) {
    place(7, 300, 100);
    place(8, 300, 140);
    store->refreshWhileCollapsed(divider(3000));
    const ImagePtr picture = item(0).capturedImage;
    ASSERT_THAT(picture, NotNull());
    store->snapshot(divider());
    EXPECT_EQ(item(0).capturedImage, picture);
}

TEST_F(OverflowStoreTest, SnapshotDropsItemsAndPicturesThatAreNoLongerLeftOfTheDivider) {
    place(7, 300, 100);
    place(8, 300, 140);
    store->snapshot(divider());
    const ImagePtr picture = item(0).capturedImage;
    place(7, 300, 600);
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(8));
    place(7, 300, 100);
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(7, 8));
    EXPECT_NE(item(0).capturedImage, picture);
    EXPECT_THAT(captures(), ElementsAre("capture 7 9", "capture 8 9", "capture 7 9"));
}

TEST_F(OverflowStoreTest, EmptySnapshotSaysSo) {
    place(1, 300, 100);
    store->snapshot(divider());
    place(1, 300, 600);
    store->snapshot(divider());
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(store->message.get(), nothingHidden);
    EXPECT_THAT(log.lines, ElementsAre(snapshotLine(1), snapshotLine(0)));
    place(1, 300, 100);
    store->snapshot(divider());
    EXPECT_EQ(store->message.get(), std::nullopt);
}

TEST_F(OverflowStoreTest, SnapshotAfterAFailedLookIsEmpty) {
    place(1, 300, 100);
    store->snapshot(divider());
    library.listError = 1000;
    store->snapshot(divider());
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(store->message.get(), nothingHidden);
}

TEST_F(OverflowStoreTest, SnapshotReadsTheListAgainForItsMessage) {
    // An observer that empties the list is seen by the message and the log line.
    place(1, 300, 100);
    capture.granted = false;
    const auto token =
        store->hasScreenCapturePermission.observe([&](const bool&) { store->items.set({}); });
    store->snapshot(divider());
    EXPECT_EQ(store->message.get(), nothingHidden);
    EXPECT_THAT(log.lines, ElementsAre(snapshotLine(0)));
}

TEST_F(OverflowStoreTest, WindowListedTwiceIsOneItem) {
    place(1, 300, 100);
    place(2, 300, 140);
    library.ids = {1, 2, 1};
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(1, 2));
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(1, 2));
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(1, 2));
}

TEST_F(OverflowStoreTest, MessageIsPublishedBySnapshotOnlyOnce) {
    place(1, 300, 100);
    std::vector<std::optional<std::string>> published;
    const auto token =
        store->message.observe([&](const auto& message) { published.push_back(message); });
    store->snapshot(divider());
    remove(1);
    store->snapshot(divider());
    EXPECT_THAT(published, ElementsAre(std::nullopt, nothingHidden));
}

// --- refresh

TEST_F(OverflowStoreTest, RefreshWithoutSymbolsDoesNothing) {
    loseSymbols();
    store->items.set({itemWithId(5)});
    store->message.set("text");
    int publications = 0;
    const auto items = store->items.observe([&](const auto&) { ++publications; });
    const auto message = store->message.observe([&](const auto&) { ++publications; });
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_EQ(publications, 0);
    EXPECT_THAT(ids(), ElementsAre(5));
    EXPECT_THAT(journal.entries(), IsEmpty());
}

TEST_F(OverflowStoreTest, RefreshBoundIsTheDividersRightEdgePlusOnePoint) {
    EXPECT_TRUE(refreshTakes(endingAt(3500), 3000));
    EXPECT_TRUE(refreshTakes(endingAt(3501), 3000));
    EXPECT_FALSE(refreshTakes(endingAt(3501.01), 3000));
    EXPECT_TRUE(refreshTakes(endingAt(-100'000), 3000));
    EXPECT_FALSE(refreshTakes(endingAt(515.01), 14));
}

TEST_F(OverflowStoreTest, RefreshRowIsThreePointsHighOrLow) {
    EXPECT_TRUE(refreshTakes(lower(3), 3000));
    EXPECT_FALSE(refreshTakes(lower(3.01), 3000));
    EXPECT_TRUE(refreshTakes(lower(-3), 3000));
    EXPECT_FALSE(refreshTakes(lower(-3.01), 3000));
}

TEST_F(OverflowStoreTest, RefreshRunsItsStepsInOrder) {
    place(1, 300, 100);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(journal.entries(),
                ElementsAre("mainConnection", "windowCount(77, 0)", "menuBarWindowList(77, 0, 1)",
                            "copyWindowInfo", "windowFrame(77, 1)", "runningApplication 300",
                            "runningApplications", "preflightAccess", "capture 1 9"));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(OverflowStoreTest, RefreshThatFindsNothingChangesNothing) {
    place(1, 300, 100);
    place(2, 301, 140);
    store->snapshot(divider());
    store->message.set("text");
    const auto before = store->items.get();
    int publications = 0;
    const auto items = store->items.observe([&](const auto&) { ++publications; });
    const auto message = store->message.observe([&](const auto&) { ++publications; });
    const auto permission =
        store->hasScreenCapturePermission.observe([&](const auto&) { ++publications; });

    // Even an application that has quit stays in the list then.
    applications.running.erase(300);
    place(1, 300, 5000);
    place(2, 301, 5000);
    store->refreshWhileCollapsed(divider(3000));
    library.listError = 1000;
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_EQ(store->items.get(), before);
    EXPECT_EQ(publications, 0);
    EXPECT_THAT(journal.entriesStartingWith("runningApplications"), IsEmpty());
}

TEST_F(OverflowStoreTest, RefreshFillsAnEmptyList) {
    place(1, 300, 200);
    place(2, 301, 100);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(2, 1));
    EXPECT_THAT(item(0).capturedImage, NotNull());
    EXPECT_EQ(item(0).ownerName, "Owner 301");
}

TEST_F(OverflowStoreTest, RefreshAddsAndMoves) {
    place(1, 300, 100);
    place(2, 301, 140);
    store->snapshot(divider());
    place(1, 300, -900);
    place(2, 301, -860);
    place(3, 302, -880);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(1, 3, 2));
    EXPECT_EQ(item(0).lastKnownFrame, makeRect<GlobalSpace>(-900, 0, 30, 24));
    EXPECT_EQ(item(2).lastKnownFrame, makeRect<GlobalSpace>(-860, 0, 30, 24));
}

TEST_F(OverflowStoreTest, RefreshChangesOnlyTheFrameOfAKnownItem) {
    place(1, 300, makeRect<GlobalSpace>(100, 0, 30, 24), "Old name");
    store->snapshot(divider());
    OverflowItem expected = item(0);
    info(1).ownerName = "New owner";
    info(1).name = "New name";
    info(1).ownerPid = 301;
    run(301, "Other").icon = std::make_shared<FakeImage>(Size{.width = 1, .height = 1});
    place(1, 301, -900);
    store->refreshWhileCollapsed(divider(3000));
    expected.lastKnownFrame = makeRect<GlobalSpace>(-900, 0, 30, 24);
    EXPECT_THAT(store->items.get(), ElementsAre(expected));
}

TEST_F(OverflowStoreTest, RefreshThatOnlyMovesPublishesWithoutTakingPictures) {
    capture.refusals = {{1, CaptureRefusal::NoImage}};
    place(1, 300, 100);
    place(2, 301, 140);
    store->snapshot(divider());
    journal.clear();
    int publications = 0;
    const auto items = store->items.observe([&](const auto&) { ++publications; });
    int permissions = 0;
    const auto permission =
        store->hasScreenCapturePermission.observe([&](const auto&) { ++permissions; });
    place(1, 300, 90);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_EQ(publications, 1);
    EXPECT_EQ(item(0).lastKnownFrame.minX(), 90);
    // An unchanged list is published as well.
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_EQ(publications, 2);
    EXPECT_EQ(permissions, 0);
    EXPECT_THAT(captures(), IsEmpty());
    EXPECT_THAT(journal.entriesStartingWith("preflightAccess"), IsEmpty());
}

TEST_F(OverflowStoreTest, RefreshTakesPicturesWhenTheOrderChanged) {
    capture.refusals = {{1, CaptureRefusal::NoImage}};
    place(1, 300, 100);
    place(2, 301, 140);
    store->snapshot(divider());
    journal.clear();
    place(1, 300, 180);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(2, 1));
    EXPECT_THAT(captures(), ElementsAre("capture 1 9"));
}

TEST_F(OverflowStoreTest, RefreshTakesPicturesWhenAnItemWentOrCame) {
    capture.refusals = {{1, CaptureRefusal::NoImage}};
    place(1, 300, 100);
    place(2, 301, 140);
    store->snapshot(divider());
    journal.clear();
    applications.running.erase(301);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(1));
    EXPECT_THAT(captures(), ElementsAre("capture 1 9"));
    journal.clear();
    place(3, 302, 180);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(1, 3));
    EXPECT_THAT(captures(), ElementsAre("capture 1 9", "capture 3 9"));
}

TEST_F(OverflowStoreTest, RefreshPublishesTheListBeforeTakingPictures) {
    place(1, 300, 100);
    std::vector<std::string> published;
    const auto items = store->items.observe([&](const auto& value) {
        published.emplace_back(value[0].capturedImage ? "items with picture" : "items");
    });
    const auto permission = store->hasScreenCapturePermission.observe(
        [&](const auto&) { published.emplace_back("permission"); });
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(published, ElementsAre("items", "permission", "items with picture"));
}

TEST_F(OverflowStoreTest, RefreshBreaksTiesByTheSmallerId) {
    for (const WindowId id : {40, 10, 30, 20}) {
        place(id, 300, 100);
    }
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(40, 10, 30, 20));
    journal.clear();
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(10, 20, 30, 40));
    // That is another order, so pictures were asked for.
    EXPECT_THAT(journal.entriesStartingWith("preflightAccess"), SizeIs(1));
}

TEST_F(OverflowStoreTest, RefreshKeepsItemsNotSeenAsLongAsTheirApplicationRuns) {
    place(1, 300, 100);
    place(2, 301, 140);
    store->snapshot(divider());
    remove(1);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(1, 2));
    EXPECT_EQ(item(0).lastKnownFrame.minX(), 100);
    applications.running.erase(300);
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(2));
}

TEST_F(OverflowStoreTest, RefreshDropsSeenItemsOfNoRunningApplication) {
    place(1, 300, 100);
    place(2, 999, 140);
    place(3, 0, 180);
    store->snapshot(divider());
    EXPECT_THAT(ids(), ElementsAre(1, 2, 3));
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), ElementsAre(1));
}

TEST_F(OverflowStoreTest, RefreshMayEmptyTheList) {
    place(1, 300, 100);
    store->snapshot(divider());
    applications.running.clear();
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(store->message.get(), std::nullopt);
}

TEST_F(OverflowStoreTest, RefreshNeverTouchesTheMessage) {
    int publications = 0;
    const auto token = store->message.observe([&](const auto&) { ++publications; });
    place(1, 300, 100);
    store->refreshWhileCollapsed(divider(3000));
    applications.running.clear();
    store->refreshWhileCollapsed(divider(3000));
    EXPECT_EQ(publications, 0);
}

TEST_F(OverflowStoreTest, RefreshOfManyWindowsKeepsThemAllInOrder) {
    constexpr WindowId count = 2000;
    capture.granted = false;
    for (WindowId id = 1; id <= count; ++id) {
        // A permutation of the places.
        place(id, 300, -static_cast<double>((id * 7) % count) * 30 - 100);
    }
    store->refreshWhileCollapsed(divider(3000));
    ASSERT_THAT(store->items.get(), SizeIs(count));
    EXPECT_TRUE(std::ranges::is_sorted(store->items.get(), {}, [](const OverflowItem& each) {
        return each.lastKnownFrame.minX();
    }));
}

// --- one item

TEST_F(OverflowStoreTest, CurrentFrameIsTheLiveOne) {
    place(1, 300, 100);
    store->snapshot(divider());
    place(1, 300, -900);
    store->message.set("text");
    EXPECT_EQ(store->currentFrame(item(0)), makeRect<GlobalSpace>(-900, 0, 30, 24));
    EXPECT_EQ(item(0).lastKnownFrame.minX(), 100);
    // Its size does not matter here.
    place(1, 300, makeRect<GlobalSpace>(1, 2, 3000, 0));
    EXPECT_EQ(store->currentFrame(item(0)), makeRect<GlobalSpace>(1, 2, 3000, 0));
    library.frameErrors[1] = 1000;
    EXPECT_EQ(store->currentFrame(item(0)), std::nullopt);
    EXPECT_EQ(store->message.get(), "text");
}

TEST_F(OverflowStoreTest, CurrentFrameWithoutSymbolsIsEmpty) {
    loseSymbols();
    library.frames[1] = makeRect<GlobalSpace>(1, 2, 3, 4);
    EXPECT_EQ(store->currentFrame(itemWithId(1)), std::nullopt);
    EXPECT_THAT(journal.entries(), IsEmpty());
}

TEST_F(OverflowStoreTest, ActivationThatSucceedsClearsTheMessage) {
    place(1, 300, 100);
    store->snapshot(divider());
    store->message.set("text");
    EXPECT_TRUE(store->activateOriginalMenu(item(0)));
    EXPECT_EQ(store->message.get(), std::nullopt);
    EXPECT_THAT(journal.entriesStartingWith("post"), ElementsAre("post 1 300", "post 2 300"));
}

TEST_F(OverflowStoreTest, ActivationThatFailsNamesTheItem) {
    place(1, 300, makeRect<GlobalSpace>(100, 0, 30, 24), "Clock");
    place(2, 301, 140);
    store->snapshot(divider());
    const auto before = store->items.get();
    posting.refusesSource = true;
    EXPECT_FALSE(store->activateOriginalMenu(item(0)));
    EXPECT_EQ(store->message.get(), "无法触发 时钟 的原托盘菜单。");
    EXPECT_FALSE(store->activateOriginalMenu(item(1)));
    EXPECT_EQ(store->message.get(), "无法触发 Owner 301 的原托盘菜单。");
    EXPECT_EQ(store->items.get(), before);
}

// --- opening

class OpenApplicationTest : public OverflowStoreTest {
protected:
    void SetUp() override {
        OverflowStoreTest::SetUp();
        foo = itemWithId(1);
        foo.ownerPID = 300;
        foo.ownerName = "Foo";
        foo.windowName = "Clock";
        store->message.set("text");
        const auto count = [this](const auto&) { ++itemPublications; };
        token = store->items.observe(count);
    }
    void TearDown() override {
        EXPECT_EQ(itemPublications, 0);
        token.reset();
        OverflowStoreTest::TearDown();
    }

    OverflowItem foo;
    int itemPublications = 0;
    SubscriptionPtr token;
};

TEST_F(OpenApplicationTest, OwnerThatHasQuit) {
    applications.running.clear();
    EXPECT_FALSE(store->openApplication(foo));
    EXPECT_EQ(store->message.get(), "该菜单栏项目已经退出。");
    EXPECT_THAT(journal.entries(), ElementsAre("runningApplication 300"));
}

TEST_F(OpenApplicationTest, OutermostBundleIsOpenedFirst) {
    applications.running[300].bundleUrl =
        FileUrl{.path = "/Applications/Foo.app/Contents/Library/LoginItems/Helper.app"};
    EXPECT_TRUE(store->openApplication(foo));
    EXPECT_EQ(store->message.get(), std::nullopt);
    EXPECT_THAT(journal.entries(),
                ElementsAre("runningApplication 300", "open /Applications/Foo.app"));
}

TEST_F(OpenApplicationTest, RefusedOpenFallsBackToActivation) {
    applications.running[300].bundleUrl = FileUrl{.path = "/Applications/Foo.app"};
    applications.refusesOpen = true;
    EXPECT_TRUE(store->openApplication(foo));
    EXPECT_EQ(store->message.get(), std::nullopt);
    EXPECT_THAT(journal.entries(), ElementsAre("runningApplication 300",
                                               "open /Applications/Foo.app", "activate 300 1"));
}

TEST_F(OpenApplicationTest, WithoutBundleTheApplicationIsActivated) {
    EXPECT_TRUE(store->openApplication(foo));
    EXPECT_EQ(store->message.get(), std::nullopt);
    EXPECT_THAT(journal.entries(), ElementsAre("runningApplication 300", "activate 300 1"));
}

TEST_F(OpenApplicationTest, BundleThatIsNoApplicationIsNotOpened) {
    applications.running[300].bundleUrl = FileUrl{.path = "/usr/local/bin/tool"};
    EXPECT_TRUE(store->openApplication(foo));
    EXPECT_THAT(journal.entries(), ElementsAre("runningApplication 300", "activate 300 1"));
}

TEST_F(OpenApplicationTest, NeitherOpenedNorActivatedNamesTheOwner) {
    applications.running[300].bundleUrl = FileUrl{.path = "/Applications/Foo.app"};
    applications.running[300].refusesActivation = true;
    applications.refusesOpen = true;
    EXPECT_FALSE(store->openApplication(foo));
    EXPECT_EQ(store->message.get(),
              "Foo 没有可打开的主窗口；可右键点击该图标，尝试打开原托盘菜单。");
    foo.ownerName.clear();
    EXPECT_FALSE(store->openApplication(foo));
    EXPECT_EQ(store->message.get(), " 没有可打开的主窗口；可右键点击该图标，尝试打开原托盘菜单。");
    EXPECT_THAT(log.lines, IsEmpty());
}

} // namespace
} // namespace pelistra::testing

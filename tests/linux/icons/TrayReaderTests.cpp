#include "platform/linux/icons/TrayReader.h"

#include "platform/linux/icons/PresentableText.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/TrayClient.h"
#include "tests/linux/icons/TestTray.h"

#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <unistd.h>
#include <xcb/shape.h>

namespace pelistra::testing {
namespace {

using linux::RootRect;
using linux::TrayIcon;
using linux::TrayReader;
using linux::TrayView;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class TrayReaderTests : public ::testing::Test {
protected:
    TrayView view() {
        auto result = reader.read();
        EXPECT_TRUE(result.has_value());
        return result.value_or(TrayView{});
    }

    PrivateDisplay display;
    std::unique_ptr<x11::Connection> connection = connect(display);
    TrayReader reader{*connection};
};

class OurTrayTest : public TrayReaderTests {
protected:
    TestTray tray{display.name(), TestTray::Kind::Ours};
    IconClient client{display.name()};
};

TEST_F(TrayReaderTests, SeesNoTrayWhereThereIsNone) {
    EXPECT_EQ(view().owner, 0U);
    EXPECT_THAT(view().icons, IsEmpty());
}

TEST_F(OurTrayTest, ListsOurItemsInTheBarsOrderWithTheirRootFrames) {
    const auto right = client.makeWindow(24, 28);
    const auto left = client.makeWindow(30, 28);
    tray.embed(right, 200, 24, 28);
    tray.embed(left, -40, 30, 28);
    tray.publish({left, right});

    const TrayView seen = view();
    EXPECT_EQ(seen.owner, tray.owner());
    ASSERT_THAT(seen.icons, SizeIs(2));
    EXPECT_EQ(seen.icons[0].window, left);
    EXPECT_EQ(seen.icons[0].frame, (RootRect{.x = -40, .y = 0, .width = 30, .height = 28}));
    EXPECT_EQ(seen.icons[1].window, right);
    EXPECT_EQ(seen.icons[1].frame, (RootRect{.x = 200, .y = 0, .width = 24, .height = 28}));
}

TEST_F(TrayReaderTests, FindsTheIconsOfAnyOtherTrayByTheirPlace) {
    TestTray tray(display.name(), TestTray::Kind::Foreign);
    IconClient client(display.name());
    const auto right = client.makeWindow(24, 24);
    const auto left = client.makeWindow(24, 24);
    const auto elsewhere = client.makeWindow(24, 24);
    tray.embed(right, 200, 24, 24);
    tray.embed(left, 100, 24, 24);

    const TrayView seen = view();
    EXPECT_THAT(seen.icons,
                ElementsAre(Field(&TrayIcon::window, left), Field(&TrayIcon::window, right)));
    EXPECT_NE(elsewhere, left);
    EXPECT_LE(seen.roundTrips, TrayReader::mostRoundTrips);
}

TEST_F(TrayReaderTests, FindsIconsInWindowsWhoseShapeTheTrayWatches) {
    TestTray tray(display.name(), TestTray::Kind::Foreign);
    IconClient client(display.name());
    const auto icon = client.makeWindow(24, 24);
    tray.embed(icon, 200, 24, 24);
    xcb_shape_select_input(tray.x().get(), tray.x().parent(icon), 1);
    tray.x().sync();

    EXPECT_THAT(view().icons, ElementsAre(Field(&TrayIcon::window, icon)));
}

// Other texts and another place than the window's own, to see who was asked.
x11::PublishedItem toldOf(xcb_window_t window) {
    return {.window = window,
            .x = -500,
            .y = 3,
            .width = 40,
            .height = 30,
            .title = "told\ntitle",
            .instance = "told instance",
            .className = "told class",
            .process = {}};
}

TEST_F(OurTrayTest, BelievesWhatTheBarTellsOfItsItems) {
    const auto right = client.makeWindow(24, 28);
    const auto left = client.makeWindow(24, 28);
    client.setText(left, "_NET_WM_NAME", "UTF8_STRING", "own title");
    tray.embed(right, 200, 24, 28);
    tray.embed(left, 100, 24, 28);
    x11::PublishedItem untitled = toldOf(right);
    untitled.title.clear();
    client.setText(right, "WM_NAME", "STRING", "not asked for");
    tray.publishDetails({toldOf(left), untitled});

    const TrayView seen = view();
    EXPECT_EQ(seen.roundTrips, 3);
    ASSERT_THAT(seen.icons,
                ElementsAre(Field(&TrayIcon::window, left), Field(&TrayIcon::window, right)));
    EXPECT_EQ(seen.icons[0].frame, (RootRect{.x = -500, .y = 3, .width = 40, .height = 30}));
    EXPECT_EQ(seen.icons[0].name, "told title");
    EXPECT_EQ(seen.icons[0].instanceName, "told instance");
    EXPECT_EQ(seen.icons[0].className, "told class");
    EXPECT_EQ(seen.icons[0].pid, ::getpid()) << "the server knows better";
    EXPECT_EQ(seen.icons[1].name, "");
}

TEST_F(OurTrayTest, WhatTheBarTellsMakesNoIconOfAWindow) {
    IconClient dying(display.name());
    const auto embedded = client.makeWindow(24, 28);
    const auto outside = client.makeWindow(24, 28);
    const auto gone = dying.makeWindow(24, 28);
    tray.embed(embedded, 10, 24, 28);
    tray.embed(gone, 40, 24, 28);
    const auto containers = client.x().children(tray.bar());
    tray.publishDetails({toldOf(outside), toldOf(tray.bar()), toldOf(containers[0]), toldOf(gone),
                         toldOf(embedded), toldOf(client.x().root()), toldOf(0xffffffff)});
    EXPECT_THAT(view().icons, SizeIs(2));
    xcb_destroy_window(dying.x().get(), gone);
    dying.x().sync();
    EXPECT_THAT(view().icons, ElementsAre(Field(&TrayIcon::window, embedded)));
    EXPECT_FALSE(connection->pollEvent()) << "an error has reached the event queue";
}

TEST_F(OurTrayTest, WindowsThatTheBarHasLentBelongToTheProcessThatItTells) {
    constexpr int process = 4711;
    const auto foreign = client.makeWindow(24, 28);
    XClient& bar = tray.x();
    const xcb_window_t lent = bar.connection().newId();
    xcb_create_window(bar.get(), XCB_COPY_FROM_PARENT, lent, bar.root(), 0, 0, 24, 28, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    tray.embed(lent, 100, 24, 28);
    tray.embed(foreign, 200, 24, 28);
    x11::PublishedItem own = toldOf(lent);
    own.process = process;
    tray.publishDetails({own, toldOf(foreign)});
    const TrayView seen = view();
    ASSERT_THAT(seen.icons,
                ElementsAre(Field(&TrayIcon::window, lent), Field(&TrayIcon::window, foreign)));
    EXPECT_EQ(seen.icons[0].pid, process);
    EXPECT_EQ(seen.icons[0].kind, linux::IconKind::Lent);
    EXPECT_EQ(seen.icons[1].pid, ::getpid());
    EXPECT_EQ(seen.icons[1].kind, linux::IconKind::Window);

    // Nobody is told to be behind another program's window.
    x11::PublishedItem lie = toldOf(foreign);
    lie.process = process;
    tray.publishDetails({toldOf(lent), lie});
    EXPECT_THAT(view().icons, IsEmpty());
}

TEST_F(OurTrayTest, AsksItselfWhenTheBarsWordsMakeNoSense) {
    const auto window = client.makeWindow(24, 28);
    client.setText(window, "_NET_WM_NAME", "UTF8_STRING", "own title");
    tray.embed(window, 100, 24, 28);
    client.setText(tray.owner(), "_PELISTRA_MENUBAR_ITEM_DETAILS", "UTF8_STRING", "nonsense");
    EXPECT_THAT(view().icons, ElementsAre(Field(&TrayIcon::name, "own title")));
    client.setWords(tray.owner(), "_PELISTRA_MENUBAR_ITEM_DETAILS", "CARDINAL", {1, 2, 3});
    EXPECT_THAT(view().icons, ElementsAre(Field(&TrayIcon::name, "own title")));
}

TEST_F(TrayReaderTests, AnotherTrayTellsNothingOfItsIcons) {
    TestTray tray(display.name(), TestTray::Kind::Foreign);
    IconClient client(display.name());
    const auto window = client.makeWindow(24, 28);
    tray.embed(window, 100, 24, 28);
    tray.publishDetails({toldOf(window), toldOf(client.makeWindow(1, 1))});
    ASSERT_THAT(view().icons, SizeIs(1));
    EXPECT_EQ(view().icons[0].frame.x, 100);
}

TEST_F(OurTrayTest, LeavesOutAWindowThatIsListedButNotEmbedded) {
    const auto embedded = client.makeWindow(24, 28);
    const auto outside = client.makeWindow(24, 28);
    tray.embed(embedded, 10, 24, 28);
    tray.publish({outside, embedded, embedded, 0x7fffff, 0, 0xffffffff});

    EXPECT_THAT(view().icons, ElementsAre(Field(&TrayIcon::window, embedded)));
}

TEST_F(OurTrayTest, WindowsOfTheTrayItselfAreNoIcons) {
    const auto embedded = client.makeWindow(24, 28);
    tray.embed(embedded, 10, 24, 28);
    const auto containers = client.x().children(tray.bar());
    ASSERT_THAT(containers, SizeIs(1));
    // Any client can write this property.
    client.setWords(tray.owner(), "_PELISTRA_MENUBAR_ITEMS", "WINDOW",
                    {tray.bar(), containers[0], tray.owner(), embedded, client.x().root()});

    EXPECT_THAT(view().icons, ElementsAre(Field(&TrayIcon::window, embedded)));
}

TEST_F(OurTrayTest, AWindowThatIsGoneCostsOnlyItself) {
    IconClient dying(display.name());
    std::vector<xcb_window_t> staying;
    for (int i = 0; i < 20; ++i) {
        staying.push_back(client.makeWindow(24, 28));
        tray.embed(staying.back(), i * 48, 24, 28);
        tray.embed(dying.makeWindow(24, 28), i * 48 + 24, 24, 28);
    }
    ASSERT_THAT(view().icons, SizeIs(40));
    for (const TrayIcon& icon : view().icons) {
        if (std::ranges::find(staying, icon.window) == staying.end()) {
            xcb_destroy_window(dying.x().get(), icon.window);
        }
    }
    dying.x().sync();
    EXPECT_THAT(view().icons, SizeIs(20));
    EXPECT_FALSE(connection->pollEvent()) << "an error has reached the event queue";
}

TEST_F(OurTrayTest, WindowsThatComeAndGoDuringLooksNeverHarmTheOthers) {
    const auto staying = client.makeWindow(24, 28);
    tray.embed(staying, 10, 24, 28);
    const std::jthread storm([&](const std::stop_token& stop) {
        IconClient other(display.name());
        while (!stop.stop_requested()) {
            const auto window = other.makeWindow(24, 28);
            tray.publish({window, staying});
            tray.x().sync();
            xcb_destroy_window(other.x().get(), window);
            other.x().sync();
        }
    });
    for (int i = 0; i < 300; ++i) {
        ASSERT_THAT(view().icons, ElementsAre(Field(&TrayIcon::window, staying)));
    }
}

TEST_F(TrayReaderTests, WaitsForTheServerEquallyOftenForAnyNumberOfIcons) {
    TestTray tray(display.name(), TestTray::Kind::Ours);
    std::vector<std::unique_ptr<IconClient>> clients;
    std::vector<int> roundTrips;
    int embedded = 0;
    for (const int count : {1, 10, 100, 1000}) {
        while (embedded < count) {
            if (embedded % 100 == 0) {
                clients.push_back(std::make_unique<IconClient>(display.name()));
            }
            const auto window = clients.back()->makeWindow(24, 28);
            clients.back()->setText(window, "_NET_WM_NAME", "UTF8_STRING", "icon");
            tray.embed(window, 24 * embedded, 24, 28);
            ++embedded;
        }
        const TrayView seen = view();
        ASSERT_THAT(seen.icons, SizeIs(static_cast<std::size_t>(count)));
        roundTrips.push_back(seen.roundTrips);
        for (const TrayIcon& icon : seen.icons) {
            ASSERT_EQ(icon.pid, ::getpid());
            ASSERT_EQ(icon.name, "icon");
        }
    }
    EXPECT_THAT(roundTrips, ElementsAre(3, 3, 3, 3));
}

TEST_F(OurTrayTest, AFallbackForOneIconOrAThousandCostsOneMoreRoundTrip) {
    for (int i = 0; i < 50; ++i) {
        const auto window = client.makeWindow(24, 28);
        client.setText(window, "WM_NAME", "STRING", "caf\xE9");
        tray.embed(window, 24 * i, 24, 28);
    }
    const TrayView seen = view();
    EXPECT_EQ(seen.roundTrips, 4);
    ASSERT_THAT(seen.icons, SizeIs(50));
    EXPECT_EQ(seen.icons[49].name, "café");
}

// The time in which two looks are one has passed.
void letTheMomentPass() {
    constexpr std::chrono::milliseconds longerThanOneMoment{5};
    std::this_thread::sleep_for(longerThanOneMoment);
}

TEST_F(OurTrayTest, AsksAboutNoIconWhileTheBarSaysThatNothingHasChanged) {
    tray.setSerial(1);
    const xcb_window_t icon = client.makeWindow(24, 24);
    tray.embed(icon, 100, 24, 24);
    EXPECT_THAT(view().icons, SizeIs(1));
    letTheMomentPass();
    const TrayView unchanged = view();
    EXPECT_EQ(unchanged.roundTrips, 1);
    EXPECT_TRUE(unchanged.isMenuBar);
    EXPECT_THAT(unchanged.icons, ElementsAre(Field(&TrayIcon::window, icon)));

    client.setText(icon, "_NET_WM_NAME", "UTF8_STRING", "renamed");
    tray.setSerial(2);
    letTheMomentPass();
    const TrayView changed = view();
    EXPECT_GT(changed.roundTrips, 1);
    EXPECT_THAT(changed.icons, ElementsAre(Field(&TrayIcon::name, "renamed")));
}

TEST_F(OurTrayTest, DoesNotEvenAskWhileSomebodyListensAndHearsOfNoChange) {
    tray.setSerial(1);
    const xcb_window_t icon = client.makeWindow(24, 24);
    tray.embed(icon, 100, 24, 24);
    std::optional<std::uint64_t> heard = 7;
    TrayReader listening(*connection, [&](WindowId owner) {
        EXPECT_EQ(owner, tray.owner());
        return heard;
    });
    const auto roundTrips = [&] {
        letTheMomentPass();
        const auto seen = listening.read();
        EXPECT_THAT(seen.value_or(TrayView{}).icons, SizeIs(1));
        return seen ? seen->roundTrips : -1;
    };
    EXPECT_GT(roundTrips(), 1);
    EXPECT_EQ(roundTrips(), 1) << "what was heard before the first look proves nothing";
    EXPECT_EQ(roundTrips(), 0);
    EXPECT_EQ(roundTrips(), 0);
    heard = 8;
    EXPECT_EQ(roundTrips(), 1);
    EXPECT_EQ(roundTrips(), 0);
    heard = std::nullopt;
    EXPECT_EQ(roundTrips(), 1);
    EXPECT_EQ(roundTrips(), 1) << "nobody hears";
    heard = 9;
    EXPECT_EQ(roundTrips(), 1);
    client.setText(icon, "_NET_WM_NAME", "UTF8_STRING", "renamed");
    tray.setSerial(2);
    heard = 10;
    EXPECT_GT(roundTrips(), 1);
    EXPECT_THAT(listening.read().value_or(TrayView{}).icons,
                ElementsAre(Field(&TrayIcon::name, "renamed")));
}

TEST_F(OurTrayTest, AsksNowAndThenWhateverIsHeard) {
    tray.setSerial(1);
    tray.embed(client.makeWindow(24, 24), 100, 24, 24);
    TrayReader listening(*connection, [](WindowId) { return 7; }, std::chrono::milliseconds(0));
    for (int i = 0; i < 3; ++i) {
        letTheMomentPass();
        EXPECT_GT(listening.read().value_or(TrayView{}).roundTrips, 0);
    }
}

TEST_F(OurTrayTest, LooksAgainAtABarThatDoesNotCountItsChanges) {
    const xcb_window_t icon = client.makeWindow(24, 24);
    tray.embed(icon, 100, 24, 24);
    EXPECT_THAT(view().icons, SizeIs(1));
    client.setText(icon, "_NET_WM_NAME", "UTF8_STRING", "renamed");
    EXPECT_THAT(view().icons, ElementsAre(Field(&TrayIcon::name, "renamed")));
}

TEST_F(TrayReaderTests, ForgetsABarThatHasGone) {
    {
        TestTray tray(display.name(), TestTray::Kind::Ours);
        tray.setSerial(1);
        EXPECT_NE(view().owner, 0U);
    }
    letTheMomentPass();
    EXPECT_EQ(view().owner, 0U);
    TestTray another(display.name(), TestTray::Kind::Ours);
    another.setSerial(1);
    IconClient client(display.name());
    another.embed(client.makeWindow(24, 24), 100, 24, 24);
    EXPECT_THAT(view().icons, SizeIs(1));
}

TEST_F(OurTrayTest, KnowsTheProcessFromTheConnectionWhateverTheClientClaims) {
    const auto window = client.makeWindow(24, 28);
    client.setWords(window, "_NET_WM_PID", "CARDINAL", {2});
    tray.embed(window, 10, 24, 28);
    ASSERT_THAT(view().icons, SizeIs(1));
    EXPECT_EQ(view().icons[0].pid, ::getpid());
}

TEST_F(OurTrayTest, SurvivesAbsurdNamesAndSizes) {
    const auto huge = client.makeWindow(24, 28);
    client.setText(huge, "_NET_WM_NAME", "UTF8_STRING", std::string(200'000, 'n'));
    const auto broken = client.makeWindow(24, 28);
    client.setText(broken, "_NET_WM_NAME", "UTF8_STRING", "a\xFF\n\xE2\x80\xAE z");
    const auto zero = client.makeWindow(24, 28);
    client.setText(zero, "_NET_WM_NAME", "UTF8_STRING", std::string_view("ab\0cd", 5));
    const auto numbers = client.makeWindow(24, 28);
    client.setWords(numbers, "_NET_WM_NAME", "CARDINAL", {1, 2, 3});
    client.setWords(numbers, "WM_CLASS", "STRING", {1, 2, 3});
    const auto large = client.makeWindow(32'000, 32'000);
    const auto nameless = client.makeWindow(1, 1);
    int x = 0;
    for (const auto window : {huge, broken, zero, numbers, large, nameless}) {
        tray.embed(window, x += 30, 24, 28);
    }
    const TrayView seen = view();
    ASSERT_THAT(seen.icons, SizeIs(6));
    EXPECT_EQ(seen.icons[0].name, std::string(linux::presentableTextByteLimit, 'n'));
    EXPECT_EQ(seen.icons[1].name, "a\xEF\xBF\xBD  z");
    EXPECT_EQ(seen.icons[2].name, "ab");
    EXPECT_EQ(seen.icons[3].name, "");
    EXPECT_EQ(seen.icons[4].frame.width, 32'000);
    EXPECT_EQ(seen.icons[5].name, "");
}

TEST_F(OurTrayTest, ScalesByTheBarsWordElseByTheResourcesElseNot) {
    const auto scale = [&] { return view().coordinates.scale(); };
    EXPECT_EQ(scale(), 1);
    client.setText(client.x().root(), "RESOURCE_MANAGER", "STRING",
                   "*.Xft.dpi:\t288\nXft.dpi:\t192\nXft.hinting:\t1\n");
    EXPECT_EQ(scale(), 2);
    tray.setScale(150);
    EXPECT_EQ(scale(), 1.5);
    tray.setScale(0);
    EXPECT_EQ(scale(), 2);
    client.setText(client.x().root(), "RESOURCE_MANAGER", "UTF8_STRING", "Xft.dpi:\t144\n");
    EXPECT_EQ(scale(), 1.5) << "a text of another type";
    client.setText(client.x().root(), "RESOURCE_MANAGER", "STRING", "Xft.dpi:\tnonsense\n");
    EXPECT_EQ(scale(), 1);
    client.setText(client.x().root(), "RESOURCE_MANAGER", "STRING", "Xft.dpi:\t1e300\n");
    EXPECT_EQ(scale(), 1);
}

TEST_F(OurTrayTest, KnowsTheLiveFrameOfAnyWindow) {
    tray.setScale(200);
    const auto window = client.makeWindow(24, 28);
    tray.embed(window, 100, 24, 28);
    EXPECT_EQ(reader.frameOf(window), (makeRect<GlobalSpace>(50, 0, 12, 14)));
    EXPECT_EQ(reader.frameOf(0x7fffff), std::nullopt);
    EXPECT_EQ(reader.frameOf(0), std::nullopt);
}

TEST_F(TrayReaderTests, ATrayThatDiesLeavesAnEmptyView) {
    {
        TestTray tray(display.name(), TestTray::Kind::Ours);
        IconClient client(display.name());
        tray.embed(client.makeWindow(24, 28), 10, 24, 28);
        EXPECT_THAT(view().icons, SizeIs(1));
    }
    EXPECT_TRUE(waitFor([&] { return view().owner == 0U; }));
}

TEST_F(TrayReaderTests, AStoppedServerCostsABoundedTimeOnceAndNothingAfterwards) {
    const TestTray tray(display.name(), TestTray::Kind::Ours);
    const auto timed = [&](auto operation) {
        const auto start = std::chrono::steady_clock::now();
        operation();
        return std::chrono::steady_clock::now() - start;
    };
    ::kill(display.serverPid(), SIGSTOP);
    EXPECT_LT(timed([&] { EXPECT_EQ(reader.read(), std::nullopt); }), TrayReader::patience * 2);
    // The server owes an answer: no more questions, no more waiting.
    EXPECT_LT(timed([&] { EXPECT_EQ(reader.read(), std::nullopt); }), TrayReader::patience / 2);
    EXPECT_EQ(reader.frameOf(1), std::nullopt);
    ::kill(display.serverPid(), SIGCONT);
    EXPECT_TRUE(waitFor([&] { return reader.read().has_value(); }));
    EXPECT_EQ(view().owner, tray.owner());
}

TEST_F(TrayReaderTests, AServerThatIsGoneGivesNoAnswer) {
    display.killServer();
    EXPECT_EQ(reader.read(), std::nullopt);
    EXPECT_EQ(reader.read(), std::nullopt);
}

} // namespace
} // namespace pelistra::testing

#include "platform/x11/PublishedItems.h"
#include "tests/menubar/BarFixture.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::SizeIs;
using x11::PublishedItem;

// What the bar tells of its items, so that nobody has to ask about each.
class DetailsTests : public BarFixture {
protected:
    [[nodiscard]] std::optional<x11::PropertyValue> property() {
        return x_.windowProperty(x_.trayOwner(), "_PELISTRA_MENUBAR_ITEM_DETAILS");
    }
    [[nodiscard]] std::optional<std::vector<PublishedItem>> details() {
        const auto value = property();
        return value ? x11::publishedItemsIn(*value) : std::nullopt;
    }

    // The item that stands there now; an empty one while nothing does.
    [[nodiscard]] PublishedItem itemAt(std::size_t index) {
        const auto items = details();
        return items && index < items->size() ? (*items)[index] : PublishedItem{};
    }
    [[nodiscard]] std::vector<xcb_window_t> order() {
        std::vector<xcb_window_t> windows;
        for (const PublishedItem& item : details().value_or(std::vector<PublishedItem>())) {
            windows.push_back(item.window);
        }
        return windows;
    }

    // What the server says of the same items.
    [[nodiscard]] std::vector<PublishedItem> truth() {
        std::vector<PublishedItem> result;
        for (const xcb_window_t window : x_.barItems()) {
            const WindowFrame frame = x_.frame(window).value_or(WindowFrame{});
            const auto [instance, className] = x_.windowClass(window);
            result.push_back({.window = window,
                              .x = frame.x,
                              .y = frame.y,
                              .width = frame.width,
                              .height = frame.height,
                              .title = x_.title(window),
                              .instance = instance,
                              .className = className,
                              .process = {}});
        }
        return result;
    }

    [[nodiscard]] bool comeTrue() {
        return eventually([&] { return details() == truth(); });
    }
};

TEST_F(DetailsTests, AreThereFromTheStart) {
    startBar();
    EXPECT_TRUE(eventually([&] { return details().has_value(); }));
    EXPECT_THAT(order(), IsEmpty());
}

TEST_F(DetailsTests, FollowWhateverHappensToTheItems) {
    startBar();
    TrayClient& right = dock({.name = "right", .width = 40});
    TrayClient& left = dockNamed("left");
    EXPECT_TRUE(comeTrue());
    EXPECT_THAT(order(), ElementsAre(left.window(), right.window()));
    EXPECT_EQ(itemAt(0).instance, "left");
    EXPECT_EQ(itemAt(1).x + itemAt(1).width, screenWidth);
    EXPECT_EQ(itemAt(1).height, barHeight);

    right.setTitle("a title", "UTF8_STRING");
    EXPECT_TRUE(eventually([&] { return itemAt(1).title == "a title"; }));
    right.askForWidth(90);
    EXPECT_TRUE(eventually([&] { return itemAt(1).width == 90; }));
    EXPECT_TRUE(comeTrue());
    x11::setText(right.x().connection(), right.window(), XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                 std::string_view("other\0Class\0", 12));
    right.x().sync();
    EXPECT_TRUE(eventually([&] { return itemAt(1).className == "Class"; }));
    EXPECT_TRUE(comeTrue());
    // The leftmost one moves nobody else by going.
    left.setMappedFlag(false);
    EXPECT_TRUE(eventually([&] { return order().size() == 1; }));
    left.setMappedFlag(true);
    EXPECT_TRUE(eventually([&] { return order().size() == 2; }));
    EXPECT_TRUE(comeTrue());
    endClient(right);
    EXPECT_TRUE(eventually([&] { return order().size() == 1; }));
    EXPECT_TRUE(comeTrue());
}

TEST_F(DetailsTests, FollowADragAndKeepTheOrderUntilItIsDecided) {
    startBar();
    const TrayClient& right = dockNamed("right");
    const TrayClient& left = dockNamed("left");
    ASSERT_TRUE(comeTrue());
    const auto from = centre(frameOf(left));
    const auto to = centre(frameOf(right));
    const UserInput::Modifiers super{keys::super};
    user_.beginDrag(from, to, super);
    EXPECT_TRUE(eventually([&] { return frameOf(right).x < frameOf(left).x; }));
    EXPECT_TRUE(comeTrue());
    EXPECT_THAT(order(), ElementsAre(left.window(), right.window()));
    user_.endDrag(super);
    EXPECT_TRUE(eventually([&] { return order() == std::vector{right.window(), left.window()}; }));
    EXPECT_TRUE(comeTrue());
}

TEST_F(DetailsTests, FollowTheBarToAnotherMonitor) {
    startBar();
    dockNamed("icon");
    ASSERT_TRUE(comeTrue());
    const auto before = details();
    const auto xrandr =
        display_.start({"xrandr", "--setmonitor", "*Lower", "640/150x400/100+600+400", "screen"});
    EXPECT_THAT(xrandr->waitForExit(), Optional(ExitStatus{.status = 0}));
    EXPECT_TRUE(eventually([&] { return details() != before; }));
    EXPECT_TRUE(comeTrue());
    EXPECT_EQ(itemAt(0).x + itemAt(0).width, 600 + 640);
    EXPECT_EQ(itemAt(0).y, 400);
}

TEST_F(DetailsTests, TitlesAreUtf8AndNotLong) {
    startBar();
    TrayClient& icon = dockNamed("icon");
    const auto title = [&] { return itemAt(0).title; };
    icon.setTitle("caf\xe9", "STRING");
    EXPECT_TRUE(eventually([&] { return title() == "café"; })) << title();
    constexpr std::size_t longest = 1024;
    icon.setTitle(std::string(1'000'000, 't'), "UTF8_STRING");
    EXPECT_TRUE(eventually([&] { return title() == std::string(longest, 't'); }));
    icon.setTitle(std::string_view("ab\0cd", 5), "UTF8_STRING");
    EXPECT_TRUE(eventually([&] { return title() == "ab"; }));
}

TEST_F(DetailsTests, AreLeftOutWhileTheyAreTooLong) {
    startBar();
    XClient client(display_.name());
    std::vector<xcb_window_t> windows;
    constexpr std::size_t manyWithLongTitles = 270;
    const std::string longTitle(1024, 't');
    for (std::size_t i = 0; i < manyWithLongTitles; ++i) {
        const xcb_window_t window = windows.emplace_back(client.connection().newId());
        xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, window, client.root(), 0, 0, 24, 24,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        x11::setText(client.connection(), window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, longTitle);
        ASSERT_TRUE(requestDock(client, window));
    }
    EXPECT_TRUE(waitFor([&] { return x_.barItems().size() == manyWithLongTitles; }));
    EXPECT_TRUE(waitFor([&] { return !property().has_value(); }));
    constexpr std::size_t few = 40;
    for (std::size_t i = few; i < windows.size(); ++i) {
        xcb_destroy_window(client.get(), windows[i]);
    }
    client.sync();
    EXPECT_TRUE(waitFor([&] { return property().has_value(); }));
    EXPECT_TRUE(comeTrue());
    EXPECT_THAT(order(), SizeIs(few));
}

} // namespace
} // namespace pelistra::testing

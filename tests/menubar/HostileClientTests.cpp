#include "tests/desktop/harness/FileContent.h"
#include "tests/menubar/BarFixture.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Clients that want more from the bar than a place for their icon.
class HostileClientTests : public BarFixture {
protected:
    [[nodiscard]] std::filesystem::path orderFile() const {
        return display_.stateFolder() / "pelistra" / "menubar-order";
    }
    [[nodiscard]] std::string order() const { return contentOf(orderFile()); }
};

TEST_F(HostileClientTests, TheBarsOwnWindowsAreNotDocked) {
    startBar();
    const TrayClient& victim = dockNamed("victim");
    const xcb_window_t container = x_.parent(victim.window());
    const WindowFrame place = frameOf(victim);
    TrayClient hostile(display_.name(), {.name = "hostile"});
    for (const xcb_window_t own : {container, x_.trayOwner(), x_.barWindow()}) {
        requestDock(hostile.x(), own);
    }
    dockNamed("later");
    EXPECT_TRUE(comesToBe({"later", "victim"}));
    EXPECT_EQ(x_.parent(container), x_.barWindow());
    EXPECT_EQ(x_.parent(victim.window()), container);
    EXPECT_EQ(frameOf(victim), place);
    EXPECT_TRUE(x_.isViewable(victim.window()));
}

TEST_F(HostileClientTests, NamesStartNoLineInTheLogOrInTheOrderFile) {
    allowComplaints(1);
    startBar();
    TrayClient& hostile = dockNamed("evil\npelistra-menubar: forged\x1b[2J\nx\ty\t7");
    // Leaves again and again, so that the bar has something to complain of.
    constexpr int fetchedBack = 3;
    for (int time = 0; time <= fetchedBack; ++time) {
        const xcb_window_t container = x_.parent(hostile.window());
        xcb_reparent_window(hostile.x().get(), hostile.window(), x_.root(), 5, 50);
        hostile.x().sync();
        if (time < fetchedBack) {
            ASSERT_TRUE(eventually([&] {
                return x_.parent(hostile.window()) != x_.root() &&
                       x_.parent(hostile.window()) != container && x_.isViewable(hostile.window());
            }));
        }
    }
    ASSERT_TRUE(bar().process().waitForOutput("it is let go"));
    EXPECT_THAT(bar().process().output(), HasSubstr("'evilpelistra-menubar: forged[2Jxy7'"));
    EXPECT_EQ(std::ranges::count(bar().process().output(), '\n'), 1);
    EXPECT_THAT(bar().process().output(), Not(HasSubstr("\x1b")));

    const std::string text = order();
    EXPECT_THAT(text, HasSubstr("evilpelistra-menubar: forged[2Jxy7\t"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 2) << text;
    EXPECT_EQ(std::ranges::count(text, '\t'), 2) << text;
    struct stat status{};
    ASSERT_EQ(::stat(orderFile().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(::stat(orderFile().parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

using HostileDrawingTests = UnderCompositor<BarFixture>;
INSTANTIATE_TEST_SUITE_P(Under, HostileDrawingTests, ::testing::ValuesIn(everyCompositor),
                         compositorTestName);

TEST_P(HostileDrawingTests, AClientDrawsInItsOwnPlaceOnly) {
    startBar();
    const TrayClient& neighbour = dockNamed("neighbour");
    TrayClient hostile(display_.name(), {.name = "hostile", .colour = 0xff00ff});
    // Resize requests of such a window are nobody's to refuse.
    const std::uint32_t unmanaged = 1;
    xcb_change_window_attributes(hostile.x().get(), hostile.window(), XCB_CW_OVERRIDE_REDIRECT,
                                 &unmanaged);
    hostile.x().sync();
    ASSERT_TRUE(hostile.requestDock());
    ASSERT_TRUE(hostile.waitUntilDocked());
    const int right = frameOf(neighbour).x;
    ASSERT_TRUE(eventually([&] { return frameOf(hostile).right() == right; }));
    const WindowFrame place = frameOf(hostile);
    const std::vector<std::pair<int, int>> outside{{place.midX(), barHeight + 40},
                                                   {place.x - 100, barHeight / 2},
                                                   {place.x - 100, barHeight + 1},
                                                   {frameOf(neighbour).midX(), barHeight / 2}};
    std::vector<std::uint32_t> before;
    for (const auto& [x, y] : outside) {
        before.push_back(pixel(x, y));
    }

    // Away to the left, and far out of the bar. A width is anybody's to ask for.
    const std::array<std::uint32_t, 4> wish{static_cast<std::uint32_t>(-100),
                                            static_cast<std::uint32_t>(-10),
                                            static_cast<std::uint32_t>(place.width), 600};
    const xcb_gcontext_t colour = hostile.x().connection().newId();
    const std::uint32_t magenta = 0xff00ff;
    xcb_create_gc(hostile.x().get(), colour, hostile.window(), XCB_GC_FOREGROUND, &magenta);
    xcb_configure_window(hostile.x().get(), hostile.window(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         wish.data());
    const xcb_rectangle_t all{.x = 0, .y = 0, .width = 1'000, .height = 600};
    xcb_poly_fill_rectangle(hostile.x().get(), hostile.window(), colour, 1, &all);
    hostile.x().sync();
    // The bar has drawn what changed before it shows an icon that came later.
    TrayClient& later = dockNamed("later");
    ASSERT_TRUE(eventually([&] { return frameOf(later).right() == place.x; }));
    EXPECT_TRUE(eventually([&] { return pixel(place.midX(), barHeight / 2) == magenta; }));
    for (std::size_t i = 0; i < outside.size(); ++i) {
        const auto [x, y] = outside[i];
        EXPECT_EQ(pixel(x, y), before[i]) << x << ", " << y;
    }
}

} // namespace
} // namespace pelistra::testing

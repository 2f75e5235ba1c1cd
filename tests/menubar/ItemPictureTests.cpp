#include "tests/menubar/BarFixture.h"

#include <array>

#include <xcb/composite.h>

namespace pelistra::testing {
namespace {

constexpr std::uint32_t red = 0xff0000;
constexpr std::uint32_t blue = 0x0000ff;

class ItemPictureTests : public UnderCompositor<BarFixture> {
protected:
    // What the icon's container holds, seen or not.
    [[nodiscard]] std::optional<std::uint32_t> ownPixel(const TrayClient& client) {
        xcb_connection_t* connection = x_.get();
        const xcb_pixmap_t pixmap = x_.connection().newId();
        const x11::Owned<xcb_composite_query_version_reply_t> version(
            xcb_composite_query_version_reply(
                connection, xcb_composite_query_version(connection, 0, 4), nullptr));
        xcb_composite_name_window_pixmap(connection, x_.parent(client.window()), pixmap);
        const auto cookie =
            xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, 3, 3, 1, 1, 0xFFFFFFFF);
        const x11::Owned<xcb_get_image_reply_t> image(
            xcb_get_image_reply(connection, cookie, nullptr));
        xcb_free_pixmap(connection, pixmap);
        if (!image) {
            return std::nullopt;
        }
        const std::uint8_t* data = xcb_get_image_data(image.get());
        return static_cast<std::uint32_t>(data[0] | (data[1] << 8) | (data[2] << 16));
    }

    // An icon of the given depth that paints nothing itself.
    xcb_window_t dockUnpainted(XClient& client, std::uint8_t depth, xcb_visualid_t visual,
                               std::uint32_t backPixmap) {
        const xcb_window_t window = client.connection().newId();
        const xcb_colormap_t colormap = client.connection().newId();
        xcb_create_colormap(client.get(), XCB_COLORMAP_ALLOC_NONE, colormap, client.root(), visual);
        const std::array<std::uint32_t, 3> values{backPixmap, 0, colormap};
        xcb_create_window(client.get(), depth, window, client.root(), 0, 0, 24, 24, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                          XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP,
                          values.data());
        requestDock(client, window);
        EXPECT_TRUE(waitFor([&] { return x_.isViewable(window); }));
        return window;
    }

    [[nodiscard]] std::uint32_t barColour() { return pixel(640, 14); }
};

INSTANTIATE_TEST_SUITE_P(Under, ItemPictureTests, ::testing::ValuesIn(everyCompositor),
                         compositorTestName);

TEST_P(ItemPictureTests, AnIconIsShownAndRepaintedWhenItDraws) {
    startBar();
    TrayClient& icon = dock({.name = "icon", .colour = red});
    const int x = frameOf(icon).midX();
    EXPECT_TRUE(eventually([&] { return pixel(x, 14) == red; }));
    icon.changeColour(blue);
    EXPECT_TRUE(eventually([&] { return pixel(x, 14) == blue; }));
}

TEST_P(ItemPictureTests, AMovedIconIsShownInItsNewPlaceOnly) {
    startBar();
    TrayClient& right = dock({.name = "right", .colour = red});
    TrayClient& left = dock({.name = "left", .colour = blue});
    EXPECT_TRUE(eventually([&] { return pixel(frameOf(left).midX(), 14) == blue; }));
    const int before = frameOf(left).x + 1;
    right.askForWidth(100);
    EXPECT_TRUE(eventually([&] { return frameOf(left).right() == screenWidth - 100; }));
    EXPECT_TRUE(eventually([&] { return pixel(frameOf(left).midX(), 14) == blue; }));
    EXPECT_TRUE(eventually([&] { return pixel(before, 14) == red; }));
    EXPECT_TRUE(eventually([&] { return pixel(screenWidth - 2, 14) == red; }));
}

TEST_P(ItemPictureTests, AnIconThatLeavesLeavesNothingBehind) {
    startBar();
    TrayClient& icon = dock({.name = "icon", .colour = red});
    const int x = frameOf(icon).midX();
    EXPECT_TRUE(eventually([&] { return pixel(x, 14) == red; }));
    icon.setMappedFlag(false);
    EXPECT_TRUE(eventually([&] { return pixel(x, 14) == barColour(); }));
    icon.setMappedFlag(true);
    EXPECT_TRUE(eventually([&] { return pixel(x, 14) == red; }));
    icon.die();
    EXPECT_TRUE(eventually([&] { return pixel(x, 14) == barColour(); }));
}

TEST_P(ItemPictureTests, ThePictureOfAnItemOffTheScreenCanBeTaken) {
    startBar();
    TrayClient& divider = dock({.name = "divider", .preferredPosition = 0});
    TrayClient& icon = dock({.name = "icon", .colour = red});
    EXPECT_TRUE(eventually([&] { return ownPixel(icon) == red; }));
    divider.askForWidth(2560);
    EXPECT_TRUE(eventually([&] { return frameOf(icon).right() < 0; }));
    EXPECT_EQ(ownPixel(icon), red);
    // It still draws there.
    icon.changeColour(blue);
    EXPECT_EQ(ownPixel(icon), blue);
    // And what it drew there is seen when it comes back.
    divider.askForWidth(14);
    EXPECT_TRUE(eventually([&] { return frameOf(icon).right() == screenWidth - 14; }));
    EXPECT_TRUE(waitFor([&] { return pixel(frameOf(icon).midX(), 14) == blue; }));
}

TEST_P(ItemPictureTests, AnAlphaIconThatPaintsNothingShowsTheBar) {
    startBar();
    XClient client(display_.name());
    const x11::Connection::Visual visual = client.connection().alphaVisual();
    ASSERT_NE(visual.type, nullptr);
    const xcb_window_t window = dockUnpainted(client, 32, visual.type->visual_id, XCB_NONE);
    const xcb_gcontext_t context = client.connection().newId();
    const std::uint32_t clear = 0;
    xcb_create_gc(client.get(), context, window, XCB_GC_FOREGROUND, &clear);
    const xcb_rectangle_t all{.x = 0, .y = 0, .width = 28, .height = 28};
    xcb_poly_fill_rectangle(client.get(), window, context, 1, &all);
    // Half-transparent black, as a drawing library writes it.
    const std::uint32_t half = 0x80000000;
    xcb_change_gc(client.get(), context, XCB_GC_FOREGROUND, &half);
    const xcb_rectangle_t corner{.x = 0, .y = 0, .width = 8, .height = 8};
    xcb_poly_fill_rectangle(client.get(), window, context, 1, &corner);
    client.sync();
    const int left = screenWidth - barHeight;
    EXPECT_TRUE(waitFor([&] { return pixel(left + 20, 14) == barColour(); }));
    EXPECT_TRUE(waitFor([&] {
        const std::uint32_t blue8 = pixel(left + 2, 2) & 0xFFU;
        return blue8 > 0x70 && blue8 < 0x88;
    }));
}

TEST_P(ItemPictureTests, AnIconThatTakesItsParentsBackgroundShowsTheBar) {
    startBar({"--theme", "dark"});
    XClient client(display_.name());
    const xcb_screen_t& screen = client.connection().screen();
    dockUnpainted(client, screen.root_depth, screen.root_visual, XCB_BACK_PIXMAP_PARENT_RELATIVE);
    const int left = screenWidth - barHeight;
    for (const int y : {1, 14, 27}) {
        EXPECT_TRUE(waitFor([&] { return pixel(left + 14, y) == pixel(640, y); })) << y;
        EXPECT_NE(pixel(left + 14, y), 0U);
    }
}

} // namespace
} // namespace pelistra::testing

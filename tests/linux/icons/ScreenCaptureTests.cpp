#include "platform/linux/icons/X11ScreenCapture.h"

#include "platform/linux/images/PixelBitmap.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/linux/icons/TestTray.h"

#include <array>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include <gtest/gtest.h>
#include <xcb/composite.h>

namespace pelistra::testing {
namespace {

using linux::PixelBitmap;
using linux::Pixels;
using linux::X11ScreenCapture;

constexpr std::uint32_t red = 0xffcc2010;
constexpr std::uint32_t halfBlue = 0x80000080;

class ScreenCaptureTest : public ::testing::TestWithParam<Compositor> {
protected:
    // A window filled with one colour. Left half and right half differ when `rightColour` is given.
    void paint(xcb_window_t window, std::uint32_t colour, int width, int height, int x = 0) {
        auto* server = client.x().get();
        const xcb_gcontext_t context = client.x().connection().newId();
        xcb_create_gc(server, context, window, XCB_GC_FOREGROUND, &colour);
        const xcb_rectangle_t area{.x = static_cast<std::int16_t>(x),
                                   .y = 0,
                                   .width = static_cast<std::uint16_t>(width),
                                   .height = static_cast<std::uint16_t>(height)};
        xcb_poly_fill_rectangle(server, window, context, 1, &area);
        client.x().sync();
    }
    xcb_window_t alphaWindow(xcb_window_t parent) {
        auto& x = client.x();
        const auto visual = x.connection().alphaVisual();
        const xcb_colormap_t colours = x.connection().newId();
        xcb_create_colormap(x.get(), XCB_COLORMAP_ALLOC_NONE, colours, x.root(),
                            visual.type->visual_id);
        const std::array<std::uint32_t, 3> values{0, 0, colours};
        const xcb_window_t window = x.connection().newId();
        xcb_create_window(x.get(), visual.depth, window, parent, 5, 5, 20, 20, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.type->visual_id,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP, values.data());
        xcb_map_window(x.get(), window);
        x.sync();
        return window;
    }
    Pixels capture(WindowId window) {
        const auto result = screenCapture.captureWindow(window, windowImageBoundsIgnoreFraming |
                                                                    windowImageBestResolution);
        const auto* bitmap = std::get_if<std::unique_ptr<Bitmap>>(&result);
        EXPECT_FALSE(connection->pollEvent()) << "an error has reached the event queue";
        return bitmap == nullptr ? Pixels() : dynamic_cast<PixelBitmap&>(**bitmap).pixels();
    }

    PrivateDisplay display{{.compositor = GetParam()}};
    std::unique_ptr<x11::Connection> connection = connect(display);
    IconClient client{display.name()};
    X11ScreenCapture screenCapture{*connection};
};

INSTANTIATE_TEST_SUITE_P(Under, ScreenCaptureTest, ::testing::ValuesIn(withAndWithoutCompositor),
                         compositorTestName);

TEST_P(ScreenCaptureTest, IsGrantedWhereCompositeIs) {
    EXPECT_TRUE(screenCapture.preflightAccess());
    EXPECT_TRUE(screenCapture.requestAccess());
}

TEST_P(ScreenCaptureTest, TakesAWindowThatNobodyHasRedirected) {
    TestTray tray(display.name(), TestTray::Kind::Foreign);
    const auto icon = client.makeWindow(24, 22);
    tray.embed(icon, 100, 24, 22);
    paint(icon, red, 12, 22);
    const Pixels picture = capture(icon);
    ASSERT_EQ(std::pair(picture.width, picture.height), std::pair(24, 22));
    EXPECT_EQ(picture.at(0, 0), red);
    EXPECT_EQ(picture.at(11, 21), red);
    EXPECT_NE(picture.at(12, 0), red);
    // The window is as it was: still there, still painted.
    EXPECT_TRUE(waitFor([&] {
        const Picture screen = client.x().capture({.x = 100, .y = 0, .width = 24, .height = 22});
        return screen.at(3, 3) == (red & 0xffffff);
    }));
}

TEST_P(ScreenCaptureTest, TakesAnIconBeyondTheScreenFromItsRedirectedContainer) {
    TestTray tray(display.name(), TestTray::Kind::Ours);
    xcb_composite_redirect_subwindows(tray.x().get(), tray.bar(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    const auto icon = client.makeWindow(24, 28);
    tray.embed(icon, -500, 24, 28);
    paint(icon, red, 24, 28);
    const Pixels picture = capture(icon);
    ASSERT_EQ(std::pair(picture.width, picture.height), std::pair(24, 28));
    EXPECT_EQ(picture.at(0, 0), red);
    EXPECT_EQ(picture.at(23, 27), red);
}

TEST_P(ScreenCaptureTest, KeepsTheAlphaOfAWindowThatHasOne) {
    if (client.x().connection().alphaVisual().type == nullptr) {
        FAIL() << "the server has no visual with alpha";
    }
    const auto window = alphaWindow(client.x().root());
    paint(window, halfBlue, 10, 20);
    const Pixels picture = capture(window);
    ASSERT_EQ(std::pair(picture.width, picture.height), std::pair(20, 20));
    EXPECT_EQ(picture.at(2, 2), halfBlue);
    EXPECT_EQ(picture.at(15, 2), 0U);
}

TEST_P(ScreenCaptureTest, HasNoPictureOfWhatIsGoneHiddenOrAbsurd) {
    EXPECT_TRUE(capture(0x7fffff).isEmpty());
    EXPECT_TRUE(capture(0).isEmpty());
    EXPECT_TRUE(capture(client.makeWindow(24, 24)).isEmpty()) << "not mapped";
    const auto large = client.makeWindow(32'000, 32'000);
    xcb_map_window(client.x().get(), large);
    client.x().sync();
    EXPECT_TRUE(capture(large).isEmpty());
    const auto gone = client.makeWindow(24, 24);
    xcb_map_window(client.x().get(), gone);
    xcb_destroy_window(client.x().get(), gone);
    client.x().sync();
    EXPECT_TRUE(capture(gone).isEmpty());
}

TEST_P(ScreenCaptureTest, APictureHasTheNominalSizeThatItIsGiven) {
    const PixelBitmap bitmap({.width = 4, .height = 2, .values = std::vector(8, red)});
    EXPECT_EQ(bitmap.pixelWidth(), 4U);
    EXPECT_EQ(bitmap.pixelHeight(), 2U);
    const auto image = bitmap.image({.width = 8, .height = 4});
    EXPECT_EQ(image->size(), (Size{.width = 8, .height = 4}));
}

TEST_P(ScreenCaptureTest, AServerThatIsGoneGivesNoPicture) {
    const auto window = client.makeWindow(24, 24);
    display.killServer();
    EXPECT_TRUE(screenCapture.pixelsOf(window).isEmpty());
}

} // namespace
} // namespace pelistra::testing

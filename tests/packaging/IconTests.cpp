#include "tests/desktop/harness/TemporaryFolder.h"

#include <cairo.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace pelistra::testing {

namespace {

namespace fs = std::filesystem;

const fs::path kept = PELISTRA_ICON_FOLDER;

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

Surface loaded(const fs::path& file) {
    return Surface(cairo_image_surface_create_from_png(file.c_str()));
}

int side(const Surface& picture) {
    return cairo_image_surface_get_width(picture.get());
}

// The channels of a pixel, each from 0 to 255: three colours and opacity.
const unsigned char* pixel(const Surface& picture, int x, int y) {
    return cairo_image_surface_get_data(picture.get()) +
           std::ptrdiff_t{y} * cairo_image_surface_get_stride(picture.get()) +
           std::ptrdiff_t{x} * 4;
}

int brightness(const Surface& picture, int x, int y) {
    const unsigned char* const channels = pixel(picture, x, y);
    return channels[0] + channels[1] + channels[2];
}

int greatestDifference(const Surface& one, const Surface& other) {
    int greatest = 0;
    for (int y = 0; y < side(one); ++y) {
        for (int x = 0; x < side(one); ++x) {
            for (int channel = 0; channel < 4; ++channel) {
                greatest = std::max(
                    greatest, std::abs(pixel(one, x, y)[channel] - pixel(other, x, y)[channel]));
            }
        }
    }
    return greatest;
}

TEST(IconTests, ShowsADividerBetweenHiddenAndVisibleDots) {
    const Surface picture = loaded(kept / "128.png");
    ASSERT_EQ(side(picture), 128);
    constexpr int row = 50;
    // The divider is dark on the bright bar; hidden dots are paler than visible ones.
    EXPECT_LT(brightness(picture, 64, row), 450);
    EXPECT_GT(brightness(picture, 57, row), 700);
    EXPECT_GT(brightness(picture, 37, row), brightness(picture, 91, row) + 100);
    // Nothing reaches the corners.
    EXPECT_EQ(pixel(picture, 0, 0)[3], 0);
}

// Another release of the library that draws may round another way.
TEST(IconTests, TheKeptPicturesAreThoseOfTheDrawing) {
    constexpr int rounding = 12;
    const TemporaryFolder folder;
    ASSERT_EQ(std::system(("'" PELISTRA_ICON_FOLDER "/make' " + folder.path().string()).c_str()),
              0);
    int pictures = 0;
    for (const auto& made : fs::directory_iterator(folder.path())) {
        const fs::path keptFile = kept / made.path().filename();
        ASSERT_TRUE(fs::exists(keptFile)) << keptFile;
        if (made.path().extension() == ".png") {
            const Surface picture = loaded(made.path());
            const Surface keptPicture = loaded(keptFile);
            ASSERT_EQ(std::to_string(side(picture)), made.path().stem());
            ASSERT_EQ(side(picture), side(keptPicture));
            EXPECT_LE(greatestDifference(picture, keptPicture), rounding) << keptFile;
            ++pictures;
        }
    }
    EXPECT_EQ(pictures, 9);
}

} // namespace

} // namespace pelistra::testing

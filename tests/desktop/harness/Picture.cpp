#include "tests/desktop/harness/Picture.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <utility>

#include <cairo/cairo.h>

namespace pelistra::testing {

namespace {

constexpr std::uint32_t colourMask = 0x00ff'ffff;

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

} // namespace

Picture::Picture(int width, int height, std::vector<std::uint32_t> pixels)
    : width_(width), height_(height), pixels_(std::move(pixels)) {
    if (pixels_.size() != static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
        throw std::invalid_argument("a picture's pixels do not fit its size");
    }
    for (std::uint32_t& pixel : pixels_) {
        pixel &= colourMask;
    }
}

std::uint32_t Picture::at(int x, int y) const {
    return pixels_.at((static_cast<std::size_t>(y) * static_cast<std::size_t>(width_)) +
                      static_cast<std::size_t>(x));
}

Picture Picture::part(int x, int y, int width, int height) const {
    const int left = std::clamp(x, 0, width_);
    const int top = std::clamp(y, 0, height_);
    const int right = std::clamp(x + width, left, width_);
    const int bottom = std::clamp(y + height, top, height_);
    std::vector<std::uint32_t> pixels;
    for (int row = top; row < bottom; ++row) {
        for (int column = left; column < right; ++column) {
            pixels.push_back(at(column, row));
        }
    }
    return {right - left, bottom - top, std::move(pixels)};
}

Picture Picture::above(const Picture& below, int gap, std::uint32_t colour) const {
    const int width = std::max(width_, below.width_);
    const int height = height_ + gap + below.height_;
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < height; ++y) {
        const bool isBelow = y >= height_ + gap;
        const Picture& part = isBelow ? below : *this;
        const int line = isBelow ? y - height_ - gap : y;
        for (int x = 0; x < width; ++x) {
            pixels.push_back(x < part.width_ && line < part.height_ ? part.at(x, line) : colour);
        }
    }
    return {width, height, std::move(pixels)};
}

std::size_t Picture::differingPixels(const Picture& other) const {
    if (width_ != other.width_ || height_ != other.height_) {
        return std::max(pixels_.size(), other.pixels_.size());
    }
    std::size_t differing = 0;
    for (std::size_t index = 0; index < pixels_.size(); ++index) {
        differing += pixels_[index] == other.pixels_[index] ? 0U : 1U;
    }
    return differing;
}

std::size_t Picture::pixelsOf(std::uint32_t colour) const {
    return static_cast<std::size_t>(std::ranges::count(pixels_, colour & colourMask));
}

std::size_t Picture::colours() const {
    return std::set<std::uint32_t>(pixels_.begin(), pixels_.end()).size();
}

void Picture::savePng(const std::filesystem::path& file) const {
    const std::unique_ptr<cairo_surface_t, SurfaceDeleter> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, width_, height_));
    unsigned char* data = cairo_image_surface_get_data(surface.get());
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
    const std::size_t rowBytes = static_cast<std::size_t>(width_) * sizeof(std::uint32_t);
    for (std::size_t row = 0; row < static_cast<std::size_t>(height_); ++row) {
        std::memcpy(data + (row * stride), &pixels_[row * static_cast<std::size_t>(width_)],
                    rowBytes);
    }
    cairo_surface_mark_dirty(surface.get());
    if (cairo_surface_write_to_png(surface.get(), file.c_str()) != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

} // namespace pelistra::testing

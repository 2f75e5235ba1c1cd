#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace pelistra::testing {

// Pixels as 0xRRGGBB, row by row from the top left.
class Picture {
public:
    Picture() = default;
    Picture(int width, int height, std::vector<std::uint32_t> pixels);

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    // The pixel at a place inside the picture.
    [[nodiscard]] std::uint32_t at(int x, int y) const;
    // A part of this picture, cut to what lies inside it.
    [[nodiscard]] Picture part(int x, int y, int width, int height) const;

    // This picture, and another one below it with a gap of that colour between; both begin at the
    // left.
    [[nodiscard]] Picture above(const Picture& below, int gap, std::uint32_t colour) const;

    // How many pixels differ from those of a picture of the same size; all of them for another
    // size.
    [[nodiscard]] std::size_t differingPixels(const Picture& other) const;
    [[nodiscard]] std::size_t pixelsOf(std::uint32_t colour) const;
    // How many different colours there are: 1 for a blank picture, 0 for an empty one.
    [[nodiscard]] std::size_t colours() const;

    // Throws std::runtime_error when the file cannot be written.
    void savePng(const std::filesystem::path& file) const;

    bool operator==(const Picture&) const = default;

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<std::uint32_t> pixels_;
};

} // namespace pelistra::testing

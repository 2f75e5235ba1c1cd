#pragma once

#include "platform/Image.h"
#include "platform/linux/images/Pixels.h"

#include <utility>

namespace pelistra::linux {

// Pixels that were taken from the screen.
class PixelBitmap final : public Bitmap {
public:
    explicit PixelBitmap(Pixels pixels) : pixels_(std::move(pixels)) {}

    [[nodiscard]] std::size_t pixelWidth() const override {
        return static_cast<std::size_t>(pixels_.width);
    }
    [[nodiscard]] std::size_t pixelHeight() const override {
        return static_cast<std::size_t>(pixels_.height);
    }
    [[nodiscard]] std::shared_ptr<Image> image(Size size) const override;

    [[nodiscard]] const Pixels& pixels() const { return pixels_; }

private:
    Pixels pixels_;
};

} // namespace pelistra::linux

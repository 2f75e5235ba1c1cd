#pragma once

#include "platform/Image.h"
#include "platform/linux/QtImages.h"

#include <QImage>

namespace pelistra::desktop {

// Pixels as Qt keeps them.
class QtBitmap final : public Bitmap {
public:
    explicit QtBitmap(QImage pixels) : pixels_(std::move(pixels)) {}

    [[nodiscard]] std::size_t pixelWidth() const override {
        return static_cast<std::size_t>(pixels_.width());
    }
    [[nodiscard]] std::size_t pixelHeight() const override {
        return static_cast<std::size_t>(pixels_.height());
    }
    [[nodiscard]] std::shared_ptr<Image> image(Size size) const override;

    [[nodiscard]] const QImage& pixels() const { return pixels_; }

private:
    QImage pixels_;
};

} // namespace pelistra::desktop

#include "platform/linux/X11ScreenCaptureBitmap.h"

#include <utility>

#include <QPainter>

namespace pelistra::desktop {

namespace {

class PixelImage final : public QtImage {
public:
    PixelImage(QImage pixels, Size size) : pixels_(std::move(pixels)), size_(size) {}

    [[nodiscard]] Size size() const override { return size_; }

    [[nodiscard]] bool draw(QPainter& painter, const QColor& /*label*/) const override {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(0, 0, size_.width, size_.height), pixels_);
        return !pixels_.isNull();
    }

private:
    QImage pixels_;
    Size size_;
};

} // namespace

std::shared_ptr<Image> QtBitmap::image(Size size) const {
    return std::make_shared<PixelImage>(pixels_, size);
}

} // namespace pelistra::desktop

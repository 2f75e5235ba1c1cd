#include "platform/linux/images/PixelBitmap.h"

#include "platform/linux/images/Drawing.h"

namespace pelistra::linux {

namespace {

class PixelImage final : public DrawnImage {
public:
    PixelImage(Pixels pixels, Size size) : pixels_(std::move(pixels)), size_(size) {}

    [[nodiscard]] Size size() const override { return size_; }

private:
    [[nodiscard]] bool draw(cairo_t* context, const ui::Rgb& /*label*/) const override {
        if (pixels_.isEmpty()) {
            return false;
        }
        const SurfacePtr surface = surfaceOf(pixels_);
        cairo_scale(context, size_.width / pixels_.width, size_.height / pixels_.height);
        cairo_set_source_surface(context, surface.get(), 0, 0);
        // Edges stay as opaque as they are.
        cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
        cairo_rectangle(context, 0, 0, pixels_.width, pixels_.height);
        cairo_fill(context);
        return true;
    }

    Pixels pixels_;
    Size size_;
};

} // namespace

std::shared_ptr<Image> PixelBitmap::image(Size size) const {
    return std::make_shared<PixelImage>(pixels_, size);
}

} // namespace pelistra::linux

#include "tests/platform/FakeScreenCapture.h"

#include "tests/platform/FakeImages.h"

#include <memory>
#include <string>

namespace pelistra::testing {

namespace {

class FakeBitmap final : public Bitmap {
public:
    explicit FakeBitmap(PixelSize size) : size_(size) {}

    [[nodiscard]] std::size_t pixelWidth() const override { return size_.width; }
    [[nodiscard]] std::size_t pixelHeight() const override { return size_.height; }
    [[nodiscard]] std::shared_ptr<Image> image(Size size) const override {
        return std::make_shared<FakeImage>(size);
    }

private:
    PixelSize size_;
};

} // namespace

bool FakeScreenCapture::preflightAccess() {
    journal_.note("preflightAccess");
    return granted;
}

bool FakeScreenCapture::requestAccess() {
    journal_.note("requestAccess");
    return grantsRequest;
}

CaptureResult FakeScreenCapture::captureWindow(WindowId window, WindowImageOptions options) {
    journal_.note("capture " + std::to_string(window) + " " + std::to_string(options));
    if (duringCapture) {
        duringCapture(window);
    }
    if (const auto refusal = refusals.find(window); refusal != refusals.end()) {
        return refusal->second;
    }
    const auto size = sizes.find(window);
    return std::make_unique<FakeBitmap>(size == sizes.end() ? usualSize : size->second);
}

} // namespace pelistra::testing

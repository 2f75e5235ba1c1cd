#include "platform/macos/CoreGraphicsScreenCapture.h"

#include "platform/macos/AppKitImages.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/CoreFoundationOwned.h"

#import <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <dlfcn.h>
#include <utility>

namespace pelistra::macos {

namespace {

static_assert(windowImageBoundsIgnoreFraming == kCGWindowImageBoundsIgnoreFraming);
static_assert(windowImageBestResolution == kCGWindowImageBestResolution);

class CoreGraphicsBitmap final : public Bitmap {
  public:
    explicit CoreGraphicsBitmap(CoreFoundationOwned<CGImageRef> image) : image_(std::move(image)) {}

    [[nodiscard]] std::size_t pixelWidth() const override { return CGImageGetWidth(image_.get()); }
    [[nodiscard]] std::size_t pixelHeight() const override {
        return CGImageGetHeight(image_.get());
    }

    [[nodiscard]] std::shared_ptr<Image> image(Size size) const override {
        return std::make_shared<AppKitImage>(Owned<NSImage*>::adopt(
            [[NSImage alloc] initWithCGImage:image_.get() size:nsSize(size)]));
    }

  private:
    CoreFoundationOwned<CGImageRef> image_;
};

// The headers of macOS 15 mark this function as obsolete, so it cannot be named in code for that
// system, which still has it. Null where it is gone.
using CreateImageFromArray = CGImageRef (*)(CGRect screenBounds, CFArrayRef windowArray,
                                            CGWindowImageOption imageOption);

CreateImageFromArray createImageFromArray() {
    return reinterpret_cast<CreateImageFromArray>(
        dlsym(RTLD_DEFAULT, "CGWindowListCreateImageFromArray"));
}

} // namespace

bool CoreGraphicsScreenCapture::preflightAccess() { return CGPreflightScreenCaptureAccess(); }

bool CoreGraphicsScreenCapture::requestAccess() { return CGRequestScreenCaptureAccess(); }

CaptureResult CoreGraphicsScreenCapture::captureWindow(WindowId window,
                                                       WindowImageOptions options) {
    // The array holds window numbers instead of pointers, so it has no callbacks.
    const void* value = reinterpret_cast<const void*>(static_cast<std::uintptr_t>(window));
    const CoreFoundationOwned<CFArrayRef> windows(
        CFArrayCreate(kCFAllocatorDefault, &value, 1, nullptr));
    if (!windows) {
        return CaptureRefusal::NoWindowArray;
    }
    const auto create = createImageFromArray();
    if (create == nullptr) {
        return CaptureRefusal::NoImage;
    }
    CoreFoundationOwned<CGImageRef> image(
        create(CGRectNull, windows.get(), static_cast<CGWindowImageOption>(options)));
    if (!image) {
        return CaptureRefusal::NoImage;
    }
    return std::make_unique<CoreGraphicsBitmap>(std::move(image));
}

} // namespace pelistra::macos

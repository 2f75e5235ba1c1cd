#include "platform/macos/AppKitImages.h"

#include "platform/macos/Conversions.h"

namespace pelistra::macos {

namespace {

// The destination's own coordinates are the view's, so they are handed on as they are.
class AppKitCanvas final : public Canvas {
  public:
    void setFillColor(ColorRole role) override {
        switch (role) {
        case ColorRole::Label:
            [[NSColor labelColor] setFill];
        }
    }

    void fillRoundedRect(const DrawRect& rect, double xRadius, double yRadius) override {
        [[NSBezierPath bezierPathWithRoundedRect:nsRect(rect) xRadius:xRadius
                                         yRadius:yRadius] fill];
    }
};

} // namespace

Size AppKitImage::size() const { return sizeOf([image_.get() size]); }

NSImage* nativeImage(const ImagePtr& image) {
    const auto* native = dynamic_cast<const AppKitImage*>(image.get());
    if (native == nullptr) {
        return nil;
    }
    [native->native() setTemplate:(native->isTemplate ? YES : NO)];
    if (!native->accessibilityDescription.empty()) {
        [native->native() setAccessibilityDescription:nsString(native->accessibilityDescription)];
    }
    return native->native();
}

std::shared_ptr<Image> AppKitImages::systemSymbol(std::string_view name,
                                                  std::string_view accessibilityDescription) {
    NSImage* symbol = [NSImage imageWithSystemSymbolName:nsString(name)
                                accessibilityDescription:nsString(accessibilityDescription)];
    if (symbol == nil) {
        return nullptr;
    }
    auto image = std::make_shared<AppKitImage>(Owned<NSImage*>::share(symbol));
    image->accessibilityDescription = std::string(accessibilityDescription);
    return image;
}

std::shared_ptr<Image> AppKitImages::drawn(Size size, DrawingHandler handler) {
    NSImage* image = [NSImage imageWithSize:nsSize(size)
                                    flipped:NO
                             drawingHandler:^BOOL(NSRect destination) {
                               AppKitCanvas canvas;
                               return handler(canvas, screenRect(destination)) ? YES : NO;
                             }];
    return std::make_shared<AppKitImage>(Owned<NSImage*>::share(image));
}

} // namespace pelistra::macos

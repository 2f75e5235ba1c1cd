#pragma once

#include "platform/Image.h"
#include "platform/macos/Owned.h"

#import <AppKit/AppKit.h>

namespace pelistra::macos {

// A picture that is an NSImage.
class AppKitImage final : public Image {
public:
    explicit AppKitImage(Owned<NSImage*> image) : image_(std::move(image)) {}

    [[nodiscard]] Size size() const override;
    [[nodiscard]] NSImage* native() const { return image_.get(); }

private:
    Owned<NSImage*> image_;
};

// The picture with its attributes set, ready to be handed to a control; nil for null.
[[nodiscard]] NSImage* nativeImage(const ImagePtr& image);

// Pictures by NSImage; symbols are the system's own.
class AppKitImages final : public Images {
public:
    [[nodiscard]] std::shared_ptr<Image>
    systemSymbol(std::string_view name, std::string_view accessibilityDescription) override;
    [[nodiscard]] std::shared_ptr<Image> drawn(Size size, DrawingHandler handler) override;
};

} // namespace pelistra::macos

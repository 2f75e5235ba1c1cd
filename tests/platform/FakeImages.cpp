#include "tests/platform/FakeImages.h"

namespace pelistra::testing {

const FakeImage* fakeImage(const ImagePtr& image) {
    return dynamic_cast<const FakeImage*>(image.get());
}

std::string imageName(const ImagePtr& image) {
    if (image == nullptr) {
        return "none";
    }
    const auto* made = fakeImage(image);
    if (made == nullptr) {
        return "foreign";
    }
    return made->handler ? "drawn" : made->symbolName;
}

void FakeCanvas::setFillColor(ColorRole role) {
    color_ = role;
    colorChosen_ = true;
}

void FakeCanvas::fillRoundedRect(const DrawRect& rect, double xRadius, double yRadius) {
    colorlessFills += colorChosen_ ? 0 : 1;
    shapes.push_back({.rect = rect, .xRadius = xRadius, .yRadius = yRadius, .color = color_});
}

std::shared_ptr<Image> FakeImages::systemSymbol(std::string_view name,
                                                std::string_view accessibilityDescription) {
    journal_.note("symbol " + std::string(name));
    if (missingSymbols.contains(name)) {
        return nullptr;
    }
    auto image = std::make_shared<FakeImage>(Size{.width = 16, .height = 16});
    image->symbolName = name;
    image->accessibilityDescription = accessibilityDescription;
    return image;
}

std::shared_ptr<Image> FakeImages::drawn(Size size, DrawingHandler handler) {
    journal_.note("drawn image");
    auto image = std::make_shared<FakeImage>(size);
    image->handler = std::move(handler);
    return image;
}

} // namespace pelistra::testing

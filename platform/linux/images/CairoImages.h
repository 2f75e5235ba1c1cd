#pragma once

#include "platform/Image.h"

namespace pelistra::linux {

// Pictures drawn with cairo; symbols are the project's own (Symbols.h).
class CairoImages final : public Images {
public:
    [[nodiscard]] std::shared_ptr<Image>
    systemSymbol(std::string_view name, std::string_view accessibilityDescription) override;
    [[nodiscard]] std::shared_ptr<Image> drawn(Size size, DrawingHandler handler) override;
};

} // namespace pelistra::linux

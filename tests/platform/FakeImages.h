#pragma once

#include "platform/Image.h"
#include "tests/platform/Journal.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace pelistra::testing {

// A picture that remembers what it was made from: a symbol's name, or a drawing handler.
class FakeImage final : public Image {
public:
    explicit FakeImage(Size size) : size_(size) {}
    [[nodiscard]] Size size() const override { return size_; }

    std::string symbolName;
    DrawingHandler handler;

private:
    Size size_;
};

// The picture as the fake made it; null when there is none or it came from elsewhere.
const FakeImage* fakeImage(const ImagePtr& image);
// The symbol's name, "drawn" for a drawn picture, "none" without one.
std::string imageName(const ImagePtr& image);

// Writes down what is drawn on it.
class FakeCanvas final : public Canvas {
public:
    struct RoundedRect {
        DrawRect rect;
        double xRadius = 0;
        double yRadius = 0;
        ColorRole color = ColorRole::Label;

        bool operator==(const RoundedRect&) const = default;
    };

    void setFillColor(ColorRole role) override;
    void fillRoundedRect(const DrawRect& rect, double xRadius, double yRadius) override;

    std::vector<RoundedRect> shapes;
    // How many fills came before any colour was chosen.
    int colorlessFills = 0;

private:
    ColorRole color_ = ColorRole::Label;
    bool colorChosen_ = false;
};

class FakeImages final : public Images {
public:
    explicit FakeImages(Journal& journal) : journal_(journal) {}

    // Journal: "symbol <name>".
    [[nodiscard]] std::shared_ptr<Image>
    systemSymbol(std::string_view name, std::string_view accessibilityDescription) override;
    // Journal: "drawn image".
    [[nodiscard]] std::shared_ptr<Image> drawn(Size size, DrawingHandler handler) override;

    // The names of symbols that the system does not have.
    std::set<std::string, std::less<>> missingSymbols;

private:
    Journal& journal_;
};

} // namespace pelistra::testing

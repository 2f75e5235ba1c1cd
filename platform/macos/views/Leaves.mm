#include "platform/macos/AppKitImages.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/views/ContainerView.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/LabelField.h"
#include "platform/macos/views/Style.h"
#include "platform/macos/views/WatchView.h"

#include <algorithm>
#include <cmath>

namespace pelistra::appkit {

namespace {

// What a flexible view takes when it is asked for the size that it likes best.
constexpr double anySize = 10;

double flexible(const std::optional<double>& proposed) { return proposed.value_or(anySize); }

class TextElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        return measureLabel(field(), proposal.width);
    }

  protected:
    Owned<NSView*> makeView() override { return makeLabel(); }
    void apply() override {
        if (drawn_ != node<ui::Text>()) {
            drawn_ = node<ui::Text>();
            showText(field(), *drawn_);
        }
    }

  private:
    [[nodiscard]] NSTextField* field() const { return static_cast<NSTextField*>(view()); }

    std::optional<ui::Text> drawn_;
};

class SymbolElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal&) override {
        NSImage* image = [imageView() image];
        return image != nil ? sizeOf([image size]) : Size{};
    }

  protected:
    Owned<NSView*> makeView() override {
        const auto image =
            Owned<NSImageView*>::adopt([[NSImageView alloc] initWithFrame:NSZeroRect]);
        // Decoration: a screen reader skips it.
        [image.get() setAccessibilityElement:NO];
        return Owned<NSView*>::share(image.get());
    }

    void apply() override {
        const auto& symbol = node<ui::Symbol>();
        if (drawn_ != symbol) {
            [imageView() setImage:nativeSymbol(symbol.name, symbol.font)];
            [imageView() setContentTintColor:nativeColor(symbol.foreground.value_or(ui::Color{}))];
            drawn_ = symbol;
        }
    }

  private:
    [[nodiscard]] NSImageView* imageView() const { return static_cast<NSImageView*>(view()); }

    std::optional<ui::Symbol> drawn_;
};

class PictureElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        return {.width = flexible(proposal.width), .height = flexible(proposal.height)};
    }

  protected:
    Owned<NSView*> makeView() override {
        const auto image =
            Owned<NSImageView*>::adopt([[NSImageView alloc] initWithFrame:NSZeroRect]);
        [image.get() setImageScaling:NSImageScaleProportionallyUpOrDown];
        return Owned<NSView*>::share(image.get());
    }

    void apply() override {
        NSImage* image = nativeImage(node<ui::Picture>().image);
        auto* imageView = static_cast<NSImageView*>(view());
        if ([imageView image] != image) {
            [imageView setImage:image];
        }
    }
};

class SpacerElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        return {.width = axis() == Axis::Vertical ? 0 : proposal.width.value_or(0),
                .height = axis() == Axis::Horizontal ? 0 : proposal.height.value_or(0)};
    }
};

class DividerElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        if (axis() == Axis::Horizontal) {
            return {.width = 1, .height = flexible(proposal.height)};
        }
        return {.width = flexible(proposal.width), .height = 1};
    }

  protected:
    Owned<NSView*> makeView() override {
        const auto line = Owned<PelistraContainerView*>::adopt(
            [[PelistraContainerView alloc] initWithFrame:NSZeroRect]);
        line.get()->draw = [](NSRect bounds) {
            [[NSColor separatorColor] setFill];
            NSRectFillUsingOperation(bounds, NSCompositingOperationSourceOver);
        };
        return Owned<NSView*>::share(line.get());
    }
};

class RepresentedElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        return {.width = flexible(proposal.width), .height = flexible(proposal.height)};
    }

  protected:
    Owned<NSView*> makeView() override {
        const auto watch =
            Owned<PelistraWatchView*>::adopt([[PelistraWatchView alloc] initWithFrame:NSZeroRect]);
        watch.get()->target =
            node<ui::Represented>().value->makeView(*context().services.application);
        return Owned<NSView*>::share(watch.get());
    }

    void apply() override {
        auto* watch = static_cast<PelistraWatchView*>(view());
        node<ui::Represented>().value->updateView(*watch->target);
    }
};

} // namespace

std::unique_ptr<Element> makeLeaf(const ui::View& view, ElementContext& context) {
    if (view.as<ui::Text>() != nullptr) {
        return std::make_unique<TextElement>(context);
    }
    if (view.as<ui::Symbol>() != nullptr) {
        return std::make_unique<SymbolElement>(context);
    }
    if (view.as<ui::Picture>() != nullptr) {
        return std::make_unique<PictureElement>(context);
    }
    if (view.as<ui::Spacer>() != nullptr) {
        return std::make_unique<SpacerElement>(context);
    }
    if (view.as<ui::Divider>() != nullptr) {
        return std::make_unique<DividerElement>(context);
    }
    if (view.as<ui::Represented>() != nullptr) {
        return std::make_unique<RepresentedElement>(context);
    }
    return nullptr;
}

} // namespace pelistra::appkit

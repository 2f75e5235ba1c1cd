#include "platform/macos/AppKitImages.h"
#include "platform/macos/views/ContainerView.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/LabelField.h"
#include "platform/macos/views/Style.h"
#include "platform/macos/views/WatchView.h"

namespace pelistra::macos {

namespace {

class TextElement final : public Element {
  public:
    using Element::Element;

  protected:
    Owned<NSView*> makeView() override { return makeLabel(); }
    void apply(const ui::Placed& placed) override {
        if (drawn_ != node<ui::Text>()) {
            drawn_ = node<ui::Text>();
            showText(field(), *drawn_);
        }
        say(placed.help, placed.accessibilityLabel, view());
    }

  private:
    [[nodiscard]] NSTextField* field() const { return static_cast<NSTextField*>(view()); }

    std::optional<ui::Text> drawn_;
};

class SymbolElement final : public Element {
  public:
    using Element::Element;

  protected:
    Owned<NSView*> makeView() override {
        const auto image =
            Owned<NSImageView*>::adopt([[NSImageView alloc] initWithFrame:NSZeroRect]);
        // Decoration: a screen reader skips it.
        [image.get() setAccessibilityElement:NO];
        return Owned<NSView*>::share(image.get());
    }

    void apply(const ui::Placed&) override {
        ui::Symbol symbol = node<ui::Symbol>();
        symbol.foreground = symbol.foreground.value_or(context().foreground);
        if (drawn_ != symbol) {
            [imageView() setImage:nativeSymbol(symbol.name, symbol.font)];
            [imageView() setContentTintColor:nativeColor(*symbol.foreground)];
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

  protected:
    Owned<NSView*> makeView() override {
        const auto image =
            Owned<NSImageView*>::adopt([[NSImageView alloc] initWithFrame:NSZeroRect]);
        [image.get() setImageScaling:NSImageScaleProportionallyUpOrDown];
        // What it belongs to has the name.
        [image.get() setAccessibilityElement:NO];
        return Owned<NSView*>::share(image.get());
    }

    void apply(const ui::Placed&) override {
        NSImage* image = nativeImage(node<ui::Picture>().image);
        auto* imageView = static_cast<NSImageView*>(view());
        if ([imageView image] != image) {
            [imageView setImage:image];
        }
    }
};

class DividerElement final : public Element {
  public:
    using Element::Element;

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

// A watching view takes whatever point it is asked for; the container around it asks only for those
// in this place.
class RepresentedElement final : public Element {
  public:
    using Element::Element;

  protected:
    Owned<NSView*> makeView() override {
        auto container = Element::makeView();
        watch_ =
            Owned<PelistraWatchView*>::adopt([[PelistraWatchView alloc] initWithFrame:NSZeroRect]);
        watch_.get()->target =
            node<ui::Represented>().value->makeView(*context().services.application);
        [container.get() addSubview:watch_.get()];
        return container;
    }

    void apply(const ui::Placed&) override {
        [watch_.get() setFrame:[view() bounds]];
        node<ui::Represented>().value->updateView(*watch_.get()->target);
    }

  private:
    Owned<PelistraWatchView*> watch_;
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
    if (view.as<ui::Divider>() != nullptr) {
        return std::make_unique<DividerElement>(context);
    }
    if (view.as<ui::Represented>() != nullptr) {
        return std::make_unique<RepresentedElement>(context);
    }
    return nullptr;
}

} // namespace pelistra::macos

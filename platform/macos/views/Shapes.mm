#include "platform/macos/views/ContainerView.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/Style.h"

#import <QuartzCore/QuartzCore.h>

namespace pelistra::macos {

namespace {

// As a path without dashes is stroked everywhere else.
constexpr double miterLimit = 10;

class PaintedElement final : public Element {
  public:
    using Element::Element;

  protected:
    void apply(const ui::Placed& placed) override {
        const auto& shape = node<ui::FilledShape>();
        const Size size = placed.frame.size;
        if (drawn_ == shape && size_ == size) {
            return;
        }
        drawn_ = shape;
        size_ = size;
        auto* container = static_cast<PelistraContainerView*>(view());
        container->draw = nullptr;
        container->fillColor.reset();
        const auto* color = std::get_if<ui::Color>(&shape.fill);
        const bool isCircleInside =
            std::holds_alternative<ui::Circle>(shape.outline) && size.width != size.height;
        if (color != nullptr && !isCircleInside) {
            fillByLayer(container, *color, placed.frame.size);
        } else {
            [[container layer] setBackgroundColor:nullptr];
            container->draw = [shape](NSRect bounds) { paint(shape, bounds); };
        }
        [container setNeedsDisplay:YES];
    }

  private:
    void fillByLayer(PelistraContainerView* container, const ui::Color& color, Size size) {
        container->fillColor = Owned<NSColor*>::share(nativeColor(color));
        container->fillRadius = cornerRadius(drawn_->outline, size);
        container->hasContinuousCorners = hasContinuousCorners(drawn_->outline);
        if (context().motion != nullptr) {
            context().motion->recolor(container);
        }
    }

    static void paint(const ui::FilledShape& shape, NSRect bounds) {
        NSBezierPath* path = nativePath(shape.outline, bounds);
        if (const auto* gradient = std::get_if<ui::LinearGradient>(&shape.fill)) {
            fill(*gradient, path, bounds);
        } else {
            [nativeColor(std::get<ui::Color>(shape.fill)) setFill];
            [path fill];
        }
    }

    std::optional<ui::FilledShape> drawn_;
    Size size_;
};

// What lies behind the window shines through it, blurred.
class MaterialElement final : public Element {
  public:
    using Element::Element;

  protected:
    Owned<NSView*> makeView() override {
        const auto material = Owned<NSVisualEffectView*>::adopt(
            [[NSVisualEffectView alloc] initWithFrame:NSZeroRect]);
        [material.get() setMaterial:NSVisualEffectMaterialPopover];
        [material.get() setBlendingMode:NSVisualEffectBlendingModeBehindWindow];
        // Its window is never the active one.
        [material.get() setState:NSVisualEffectStateActive];
        return Owned<NSView*>::share(material.get());
    }

    void apply(const ui::Placed& placed) override {
        const auto& outline = node<ui::FilledShape>().outline;
        if (masked_ != outline || size_ != placed.frame.size) {
            masked_ = outline;
            size_ = placed.frame.size;
            // What lies behind the window is not the layer's to cut.
            [static_cast<NSVisualEffectView*>(view()) setMaskImage:cornerMask(outline, size_)];
        }
    }

  private:
    std::optional<ui::Outline> masked_;
    Size size_;
};

class StrokedElement final : public Element {
  public:
    using Element::Element;

  protected:
    void apply(const ui::Placed&) override {
        const auto& shape = node<ui::StrokedShape>();
        if (drawn_ == shape) {
            return;
        }
        drawn_ = shape;
        static_cast<PelistraContainerView*>(view())->draw = [shape](NSRect bounds) {
            NSBezierPath* path = nativePath(shape.outline, bounds);
            [path setLineWidth:shape.lineWidth];
            [path setLineCapStyle:NSLineCapStyleButt];
            [path setLineJoinStyle:NSLineJoinStyleMiter];
            [path setMiterLimit:miterLimit];
            [nativeColor(shape.color) setStroke];
            [path stroke];
        };
        [view() setNeedsDisplay:YES];
    }

  private:
    std::optional<ui::StrokedShape> drawn_;
};

} // namespace

std::unique_ptr<Element> makeShape(const ui::View& view, ElementContext& context) {
    if (const auto* filled = view.as<ui::FilledShape>()) {
        if (std::holds_alternative<ui::Material>(filled->fill)) {
            return std::make_unique<MaterialElement>(context);
        }
        return std::make_unique<PaintedElement>(context);
    }
    if (view.as<ui::StrokedShape>() != nullptr) {
        return std::make_unique<StrokedElement>(context);
    }
    return nullptr;
}

} // namespace pelistra::macos

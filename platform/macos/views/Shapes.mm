#include "platform/macos/views/ContainerView.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/Style.h"

#import <QuartzCore/QuartzCore.h>

namespace pelistra::appkit {

namespace {

// As a path without dashes is stroked everywhere else.
constexpr double miterLimit = 10;

class PaintedElement final : public Element {
  public:
    using Element::Element;

  protected:
    void apply(const ui::Placed&) override {
        const auto& shape = node<ui::FilledShape>();
        if (drawn_ == shape) {
            return;
        }
        drawn_ = shape;
        static_cast<PelistraContainerView*>(view())->draw = [shape](NSRect bounds) {
            NSBezierPath* path = nativePath(shape.outline, bounds);
            if (const auto* gradient = std::get_if<ui::LinearGradient>(&shape.fill)) {
                fill(*gradient, path, bounds);
            } else {
                [nativeColor(std::get<ui::Color>(shape.fill)) setFill];
                [path fill];
            }
        };
        [view() setNeedsDisplay:YES];
    }

  private:
    std::optional<ui::FilledShape> drawn_;
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
        [material.get() setWantsLayer:YES];
        return Owned<NSView*>::share(material.get());
    }

    void apply(const ui::Placed& placed) override {
        const auto& outline = node<ui::FilledShape>().outline;
        CALayer* layer = [view() layer];
        [layer setCornerRadius:cornerRadius(outline, placed.frame.size)];
        [layer setCornerCurve:kCACornerCurveContinuous];
        [layer setMasksToBounds:YES];
    }
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

} // namespace pelistra::appkit

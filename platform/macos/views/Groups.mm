#include "platform/macos/views/Element.h"
#include "platform/macos/views/Style.h"

#import <QuartzCore/QuartzCore.h>

namespace pelistra::macos {

namespace {

// A picture of the outline that is filled, as a mask of the layer, would need a shape layer for
// every outline; all clips that views ask for have corners that a layer knows.
class ClipElement final : public Element {
  public:
    using Element::Element;

  protected:
    Owned<NSView*> makeView() override {
        auto container = Element::makeView();
        [container.get() setClipsToBounds:YES];
        return container;
    }

    void apply(const ui::Placed& placed) override {
        const auto& outline = node<ui::Clip>().outline;
        CALayer* layer = [view() layer];
        [layer setCornerRadius:cornerRadius(outline, placed.frame.size)];
        [layer setCornerCurve:(hasContinuousCorners(outline) ? kCACornerCurveContinuous
                                                             : kCACornerCurveCircular)];
    }
};

class EnteringElement final : public Element {
  public:
    using Element::Element;

  protected:
    void apply(const ui::Placed&) override {
        if (isNew_ && context().motion != nullptr) {
            context().motion->enter(view(), node<ui::Entering>().transition.scale);
        }
        isNew_ = false;
    }

  private:
    bool isNew_ = true;
};

class AnimatedElement final : public Element {
  public:
    using Element::Element;

    void update(const ui::Placed& placed, NSPoint origin) override {
        const auto& animated = *placed.view.as<ui::Animated>();
        Motion* outer = context().motion;
        std::optional<Motion> motion;
        if (value_ && *value_ != animated.value) {
            motion.emplace(animated.animation, *context().services.mainQueue);
            context().motion = &*motion;
        }
        value_ = animated.value;
        Element::update(placed, origin);
        context().motion = outer;
    }

  private:
    std::optional<std::int64_t> value_;
};

} // namespace

std::unique_ptr<Element> makeGroup(const ui::View& view, ElementContext& context) {
    if (view.as<ui::Clip>() != nullptr) {
        return std::make_unique<ClipElement>(context);
    }
    if (view.as<ui::Entering>() != nullptr) {
        return std::make_unique<EnteringElement>(context);
    }
    if (view.as<ui::Animated>() != nullptr) {
        return std::make_unique<AnimatedElement>(context);
    }
    return nullptr;
}

} // namespace pelistra::macos

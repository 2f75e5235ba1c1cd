#include "platform/macos/views/Element.h"
#include "platform/macos/views/Style.h"

namespace pelistra::macos {

namespace {

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
    if (view.as<ui::Entering>() != nullptr) {
        return std::make_unique<EnteringElement>(context);
    }
    if (view.as<ui::Animated>() != nullptr) {
        return std::make_unique<AnimatedElement>(context);
    }
    return nullptr;
}

} // namespace pelistra::macos

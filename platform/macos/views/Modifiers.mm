#include "platform/macos/Conversions.h"
#include "platform/macos/views/AlertSheet.h"
#include "platform/macos/views/Element.h"

#include <algorithm>
#include <cmath>

namespace pelistra::appkit {

namespace {

// Takes the size of its one content and gives it all of its area.
class ContentElement : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override { return child(0).measure(proposal); }
};

class PaddingElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        const auto& edges = node<ui::Padding>().edges;
        const double across = edges.leading + edges.trailing;
        const double down = edges.top + edges.bottom;
        const Size inner = child(0).measure(
            {.width = less(proposal.width, across), .height = less(proposal.height, down)});
        return {.width = inner.width + across, .height = inner.height + down};
    }

  protected:
    void arrange(Size size) override {
        const auto& edges = node<ui::Padding>().edges;
        child(0).place(NSMakeRect(edges.leading, edges.top,
                                  std::max(0.0, size.width - edges.leading - edges.trailing),
                                  std::max(0.0, size.height - edges.top - edges.bottom)));
    }

  private:
    static std::optional<double> less(const std::optional<double>& length, double by) {
        return length ? std::optional(std::max(0.0, *length - by)) : std::nullopt;
    }
};

// One side of a frame.
struct Limits {
    std::optional<double> fixed;
    std::optional<double> least;
    std::optional<double> most;

    [[nodiscard]] std::optional<double> proposalFor(const std::optional<double>& offered) const {
        if (fixed) {
            return fixed;
        }
        if (!offered) {
            return most && std::isfinite(*most) ? most : std::nullopt;
        }
        return std::min(std::max(*offered, least.value_or(0)), most.value_or(ui::infinity));
    }

    [[nodiscard]] double sizeFor(const std::optional<double>& offered, double content) const {
        if (fixed) {
            return *fixed;
        }
        const double lower = least.value_or(std::min(content, most.value_or(content)));
        const double upper = most.value_or(std::max(content, lower));
        const double wanted = offered.value_or(content);
        return std::min(std::max(wanted, lower), std::max(lower, upper));
    }
};

class FrameElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        const Size inner = child(0).measure({.width = across().proposalFor(proposal.width),
                                             .height = down().proposalFor(proposal.height)});
        return {.width = across().sizeFor(proposal.width, inner.width),
                .height = down().sizeFor(proposal.height, inner.height)};
    }

  protected:
    void arrange(Size size) override {
        const Size inner = child(0).measure({.width = size.width, .height = size.height});
        const auto& alignment = node<ui::Frame>().limits.alignment;
        const double x = (size.width - inner.width) * share(static_cast<int>(alignment.horizontal));
        const double y = (size.height - inner.height) * share(static_cast<int>(alignment.vertical));
        child(0).place(NSMakeRect(x, y, inner.width, inner.height));
    }

  private:
    // Leading and top are 0, the centre is 1, trailing and bottom are 2.
    static double share(int alignment) { return alignment / 2.0; }

    [[nodiscard]] Limits across() const {
        const auto& limits = node<ui::Frame>().limits;
        return {.fixed = limits.width, .least = limits.minWidth, .most = limits.maxWidth};
    }
    [[nodiscard]] Limits down() const {
        const auto& limits = node<ui::Frame>().limits;
        return {.fixed = limits.height, .least = limits.minHeight, .most = limits.maxHeight};
    }
};

class BackgroundElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override { return child(1).measure(proposal); }

  protected:
    void arrange(Size size) override {
        child(0).place(NSMakeRect(0, 0, size.width, size.height));
        const double covered = reachesUnderTitleBar(shown()) ? context().titleBarHeight : 0.0;
        child(1).place(NSMakeRect(0, covered, size.width, std::max(0.0, size.height - covered)));
    }
};

class OverlayElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override { return child(0).measure(proposal); }

  protected:
    void arrange(Size size) override {
        child(0).place(NSMakeRect(0, 0, size.width, size.height));
        const Size above = child(1).measure({.width = size.width, .height = size.height});
        child(1).place(NSMakeRect((size.width - above.width) / 2, (size.height - above.height) / 2,
                                  above.width, above.height));
    }
};

// The control that stands for a content: the first one in it, else the content's own view.
NSView* controlIn(NSView* view) {
    if ([view isKindOfClass:[NSControl class]]) {
        return view;
    }
    for (NSView* subview in [view subviews]) {
        NSView* found = controlIn(subview);
        if (found != nil) {
            return found;
        }
    }
    return nil;
}

class HelpElement final : public ContentElement {
  public:
    using ContentElement::ContentElement;

  protected:
    void arrange(Size size) override {
        ContentElement::arrange(size);
        NSString* text = nsString(node<ui::Help>().text);
        NSView* control = controlIn(view());
        NSView* carrier = control != nil ? control : view();
        if (![[carrier toolTip] isEqual:text]) {
            [carrier setToolTip:text];
        }
    }
};

class AccessibilityLabelElement final : public ContentElement {
  public:
    using ContentElement::ContentElement;

  protected:
    void arrange(Size size) override {
        ContentElement::arrange(size);
        const auto& text = node<ui::AccessibilityLabel>().text;
        if (told_ != text) {
            NSView* control = controlIn(view());
            [(control != nil ? control : view()) setAccessibilityLabel:nsString(text)];
            told_ = text;
        }
    }

  private:
    std::optional<std::string> told_;
};

class AnimatedElement final : public ContentElement {
  public:
    using ContentElement::ContentElement;

  protected:
    void apply() override {
        const auto& animated = node<ui::Animated>();
        if (value_ && *value_ != animated.value) {
            motion_.emplace(animated.animation, *context().services.mainQueue);
            context().motion = &*motion_;
        }
        value_ = animated.value;
    }

    void arrange(Size size) override {
        ContentElement::arrange(size);
        if (context().motion == (motion_ ? &*motion_ : nullptr)) {
            context().motion = nullptr;
        }
    }

  private:
    std::optional<std::int64_t> value_;
    std::optional<Motion> motion_;
};

class AlertElement final : public ContentElement {
  public:
    explicit AlertElement(ElementContext& context)
        : ContentElement(context), sheet_(*context.services.mainQueue) {}

  protected:
    void arrange(Size size) override {
        ContentElement::arrange(size);
        sheet_.show(node<ui::WithAlert>().alert, view());
    }

  private:
    AlertSheet sheet_;
};

} // namespace

bool reachesUnderTitleBar(const ui::View& view) {
    if (const auto* background = view.as<ui::Background>()) {
        return background->ignoresSafeArea;
    }
    if (const auto* animated = view.as<ui::Animated>()) {
        return reachesUnderTitleBar(animated->content);
    }
    const auto* alert = view.as<ui::WithAlert>();
    return alert != nullptr && reachesUnderTitleBar(alert->content);
}

std::unique_ptr<Element> makeModifier(const ui::View& view, ElementContext& context) {
    if (view.as<ui::Padding>() != nullptr) {
        return std::make_unique<PaddingElement>(context);
    }
    if (view.as<ui::Frame>() != nullptr) {
        return std::make_unique<FrameElement>(context);
    }
    if (view.as<ui::Background>() != nullptr) {
        return std::make_unique<BackgroundElement>(context);
    }
    if (view.as<ui::Overlay>() != nullptr) {
        return std::make_unique<OverlayElement>(context);
    }
    if (view.as<ui::Help>() != nullptr) {
        return std::make_unique<HelpElement>(context);
    }
    if (view.as<ui::AccessibilityLabel>() != nullptr) {
        return std::make_unique<AccessibilityLabelElement>(context);
    }
    if (view.as<ui::Animated>() != nullptr) {
        return std::make_unique<AnimatedElement>(context);
    }
    if (view.as<ui::WithAlert>() != nullptr) {
        return std::make_unique<AlertElement>(context);
    }
    // The area of a content shape is the control's own; keys and transitions change nothing here.
    return std::make_unique<ContentElement>(context);
}

} // namespace pelistra::appkit

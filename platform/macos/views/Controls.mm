#include "base/Lifetime.h"
#include "platform/macos/ActionTarget.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/views/ContainerView.h"
#include "platform/macos/views/ContentButton.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/NativeButton.h"
#include "platform/macos/views/Style.h"

namespace pelistra::macos {

namespace {

// Of the surface under the pointer, where the label says nothing else. Points.
constexpr ui::RoundedRectangle usualSurface = {.cornerRadius = 5};

// The first text in a label; empty when there is none.
std::string textIn(const std::vector<ui::Placed>& label) {
    for (const ui::Placed& placed : label) {
        const auto* text = placed.view.as<ui::Text>();
        const std::string found = text != nullptr ? text->text : textIn(placed.children);
        if (!found.empty()) {
            return found;
        }
    }
    return {};
}

// A button with a title is one of the system's; any other label lies in a button that draws nothing
// else.
class ButtonElement final : public Element {
  public:
    explicit ButtonElement(ElementContext& context)
        : Element(context),
          target_(Owned<PelistraActionTarget*>::adopt([[PelistraActionTarget alloc] init])),
          label_(Owned<PelistraContainerView*>::adopt(
              [[PelistraContainerView alloc] initWithFrame:NSZeroRect])) {
        target_.get()->action = [this] {
            // The action may be the end of this element.
            const auto action = node<ui::Button>().action;
            action();
        };
    }
    ButtonElement(const ButtonElement&) = delete;
    ButtonElement& operator=(const ButtonElement&) = delete;
    ~ButtonElement() override {
        target_.get()->action = nullptr;
        [button() setTarget:nil];
    }

    // Its look comes first, which its margins depend on.
    void update(const ui::Placed& placed, NSPoint origin) override {
        const auto& now = *placed.view.as<ui::Button>();
        if (isNative(now) && drawn_ != now) {
            showButton(button(), now);
        }
        drawn_ = now;
        Element::update(placed, origin);
    }

  protected:
    Owned<NSView*> makeView() override {
        const bool isOwn = !isNative(node<ui::Button>());
        const auto made =
            makeButton(isOwn ? [PelistraContentButton class] : [PelistraPushButton class]);
        [made.get() setTarget:target_.get()];
        [made.get() setAction:@selector(perform:)];
        if (isOwn) {
            [made.get() setBordered:NO];
            [made.get() addSubview:label_.get()];
        }
        return Owned<NSView*>::share(made.get());
    }

    [[nodiscard]] NSView* contentView() const override { return label_.get(); }

    void apply(const ui::Placed& placed) override {
        const auto& now = node<ui::Button>();
        if (isNative(now)) {
            say(placed.help, {}, view());
            return;
        }
        const std::string text = textIn(placed.children);
        const std::string& name =
            placed.accessibilityLabel.empty() ? placed.help : placed.accessibilityLabel;
        say(placed.help, text.empty() ? name : text, view());
        [label_.get() setFrame:[view() bounds]];
        const auto* shape = now.label.as<ui::ContentShape>();
        static_cast<PelistraContentButton*>(view())->outline =
            shape != nullptr ? shape->outline : usualSurface;
    }

    void updateChildren(const ui::Placed& placed) override {
        const bool isQuiet = node<ui::Button>().style == ui::ButtonStyle::Borderless;
        const ui::Color outside = context().foreground;
        context().foreground = isQuiet ? ui::Color{.base = ui::Role::Secondary} : outside;
        Element::updateChildren(placed);
        context().foreground = outside;
    }

  private:
    [[nodiscard]] NSButton* button() const { return static_cast<NSButton*>(view()); }

    Owned<PelistraActionTarget*> target_;
    Owned<PelistraContainerView*> label_;
    std::optional<ui::Button> drawn_;
};

class ToggleElement final : public Element {
  public:
    explicit ToggleElement(ElementContext& context)
        : Element(context),
          target_(Owned<PelistraActionTarget*>::adopt([[PelistraActionTarget alloc] init])),
          switch_(Owned<NSSwitch*>::adopt([[NSSwitch alloc] initWithFrame:NSZeroRect])) {
        target_.get()->action = [this] { moved(); };
        [switch_.get() setTarget:target_.get()];
        [switch_.get() setAction:@selector(perform:)];
    }
    ToggleElement(const ToggleElement&) = delete;
    ToggleElement& operator=(const ToggleElement&) = delete;
    ~ToggleElement() override {
        target_.get()->action = nullptr;
        [switch_.get() setTarget:nil];
    }

  protected:
    Owned<NSView*> makeView() override {
        auto container = Element::makeView();
        [container.get() addSubview:switch_.get()];
        return container;
    }

    void apply(const ui::Placed& placed) override {
        const NSRect frame = nsRect(placed.toggle);
        const NSRect around = nsRect(placed.frame);
        [switch_.get()
            setFrame:[switch_.get() frameForAlignmentRect:NSOffsetRect(frame, -around.origin.x,
                                                                       -around.origin.y)]];
        say(placed.help, placed.accessibilityLabel, switch_.get());
        if (placed.accessibilityLabel.empty()) {
            [switch_.get() setAccessibilityLabel:nsString(node<ui::Toggle>().label)];
        }
        showState();
    }

  private:
    void showState() {
        const NSControlStateValue state =
            node<ui::Toggle>().isOn ? NSControlStateValueOn : NSControlStateValueOff;
        if ([switch_.get() state] != state) {
            [switch_.get() setState:state];
        }
    }

    // The switch shows the newest body's state in the end, whatever the user's move led to.
    void moved() {
        const auto action = node<ui::Toggle>().action;
        const bool isOn = [switch_.get() state] == NSControlStateValueOn;
        MainQueue& mainQueue = *context().services.mainQueue;
        const auto showLater = lifetime_.guard([this] { showState(); });
        action(isOn);
        mainQueue.async(showLater);
    }

    Owned<PelistraActionTarget*> target_;
    Owned<NSSwitch*> switch_;
    Lifetime lifetime_;
};

} // namespace

std::unique_ptr<Element> makeControl(const ui::View& view, ElementContext& context) {
    if (view.as<ui::Button>() != nullptr) {
        return std::make_unique<ButtonElement>(context);
    }
    if (view.as<ui::Toggle>() != nullptr) {
        return std::make_unique<ToggleElement>(context);
    }
    return nullptr;
}

} // namespace pelistra::macos

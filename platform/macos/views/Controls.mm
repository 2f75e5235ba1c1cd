#include "platform/Lifetime.h"
#include "platform/macos/ActionTarget.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/views/ContainerView.h"
#include "platform/macos/views/ContentButton.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/LabelField.h"
#include "platform/macos/views/Style.h"
#include "ui/Walk.h"

#include <algorithm>
#include <cmath>

namespace pelistra::appkit {

namespace {

// The node of that kind that a label comes down to, when there is nothing but modifiers around it.
template <class Kind> const Kind* only(const ui::View& view) {
    if (const auto* found = view.as<Kind>()) {
        return found;
    }
    // The children are values that share the tree, which the view keeps alive.
    const auto children = ui::childrenOf(view);
    return children.size() == 1 ? only<Kind>(children.front()) : nullptr;
}

NSString* keyEquivalent(const ui::Button& button) {
    if (button.isDefaultAction) {
        return @"\r";
    }
    return button.role == ui::ButtonRole::Cancel ? @"\033" : @"";
}

// A button with a title or a symbol is one of the system's; any other label lies in a button that
// draws nothing else.
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

    Size measure(const Proposal& proposal) override {
        if (hasOwnLabel_) {
            return child(0).measure(proposal);
        }
        const NSSize size = [[button() cell] cellSize];
        return {.width = std::ceil(size.width), .height = std::ceil(size.height)};
    }

  protected:
    Owned<NSView*> makeView() override {
        const auto& label = node<ui::Button>().label;
        hasOwnLabel_ = only<ui::Text>(label) == nullptr && only<ui::Symbol>(label) == nullptr;
        const Class kind =
            hasOwnLabel_ ? [PelistraContentButton class] : [PelistraPushButton class];
        const auto made = Owned<NSButton*>::adopt([[kind alloc] initWithFrame:NSZeroRect]);
        [made.get() setButtonType:NSButtonTypeMomentaryPushIn];
        [made.get() setTitle:@""];
        [made.get() setTarget:target_.get()];
        [made.get() setAction:@selector(perform:)];
        if (hasOwnLabel_) {
            [made.get() setBordered:NO];
            [made.get() addSubview:label_.get()];
        }
        return Owned<NSView*>::share(made.get());
    }

    [[nodiscard]] NSView* contentView() const override { return label_.get(); }

    void apply() override {
        const auto& now = node<ui::Button>();
        if (drawn_ == now) {
            return;
        }
        drawn_ = now;
        if (hasOwnLabel_) {
            return;
        }
        applyStyle(now);
        if (const auto* symbol = only<ui::Symbol>(now.label)) {
            [button() setImage:nativeSymbol(symbol->name, symbol->font)];
            [button() setImagePosition:NSImageOnly];
            [button() setContentTintColor:[NSColor secondaryLabelColor]];
        } else if (const auto* text = only<ui::Text>(now.label)) {
            applyTitle(now, *text);
        }
        [button() setKeyEquivalent:keyEquivalent(now)];
    }

    void arrange(Size size) override {
        if (!hasOwnLabel_) {
            return;
        }
        [label_.get() setFrame:NSMakeRect(0, 0, size.width, size.height)];
        child(0).place(NSMakeRect(0, 0, size.width, size.height));
        if (const auto* shape = only<ui::ContentShape>(node<ui::Button>().label)) {
            static_cast<PelistraContentButton*>(view())->cornerRadius =
                cornerRadius(shape->outline, size);
        }
    }

  private:
    [[nodiscard]] NSButton* button() const { return static_cast<NSButton*>(view()); }

    void applyStyle(const ui::Button& now) {
        switch (now.style) {
        case ui::ButtonStyle::BorderedProminent:
            [button() setBezelStyle:NSBezelStylePush];
            [button() setBezelColor:[NSColor controlAccentColor]];
            break;
        case ui::ButtonStyle::Plain:
        case ui::ButtonStyle::Borderless:
            // No border at rest, the system's quiet one under the pointer.
            [button() setBezelStyle:NSBezelStyleAccessoryBarAction];
            [button() setShowsBorderOnlyWhileMouseInside:YES];
            break;
        case ui::ButtonStyle::Automatic:
            [button() setBezelStyle:NSBezelStylePush];
            break;
        }
        [button() setControlSize:(now.size == ui::ControlSize::Large ? NSControlSizeLarge
                                                                     : NSControlSizeRegular)];
    }

    void applyTitle(const ui::Button& now, const ui::Text& text) {
        NSString* title = nsString(text.text);
        [button() setTitle:title];
        if (now.role == ui::ButtonRole::Destructive) {
            [button() setHasDestructiveAction:YES];
            NSDictionary* look = [NSDictionary
                dictionaryWithObjectsAndKeys:[NSColor systemRedColor],
                                             NSForegroundColorAttributeName, [button() font],
                                             NSFontAttributeName, nil];
            const auto red =
                Owned<NSAttributedString*>::adopt([[NSAttributedString alloc] initWithString:title
                                                                                  attributes:look]);
            [button() setAttributedTitle:red.get()];
        }
    }

    Owned<PelistraActionTarget*> target_;
    Owned<PelistraContainerView*> label_;
    std::optional<ui::Button> drawn_;
    bool hasOwnLabel_ = false;
};

// Between the label and the switch.
constexpr double switchDistance = 12;
constexpr Size usualSwitch = {.width = 38, .height = 22};

class ToggleElement final : public Element {
  public:
    explicit ToggleElement(ElementContext& context)
        : Element(context),
          target_(Owned<PelistraActionTarget*>::adopt([[PelistraActionTarget alloc] init])),
          label_(makeLabel()),
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

    Size measure(const Proposal& proposal) override {
        const Size text = measureLabel(field(), std::nullopt);
        const Size knob = switchSize();
        const double natural = text.width + switchDistance + knob.width;
        return {.width = std::max(natural, proposal.width.value_or(natural)),
                .height = std::max(text.height, knob.height)};
    }

  protected:
    Owned<NSView*> makeView() override {
        auto container = Element::makeView();
        [container.get() addSubview:label_.get()];
        [container.get() addSubview:switch_.get()];
        return container;
    }

    void apply() override {
        const auto& toggle = node<ui::Toggle>();
        if (label() != toggle.label) {
            showText(field(), ui::Text{.text = toggle.label});
            [switch_.get() setAccessibilityLabel:nsString(toggle.label)];
        }
        showState();
    }

    void arrange(Size size) override {
        const Size text = measureLabel(field(), std::nullopt);
        const Size knob = switchSize();
        [label_.get()
            setFrame:NSMakeRect(0, (size.height - text.height) / 2, text.width, text.height)];
        [switch_.get() setFrame:NSMakeRect(size.width - knob.width, (size.height - knob.height) / 2,
                                           knob.width, knob.height)];
    }

  private:
    [[nodiscard]] NSTextField* field() const { return static_cast<NSTextField*>(label_.get()); }

    [[nodiscard]] std::string label() const { return utf8([field() stringValue]); }

    [[nodiscard]] Size switchSize() const {
        const NSSize size = [switch_.get() intrinsicContentSize];
        return size.width > 0 && size.height > 0 ? sizeOf(size) : usualSwitch;
    }

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
    Owned<NSView*> label_;
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

} // namespace pelistra::appkit

#pragma once

#include "platform/Image.h"
#include "ui/Action.h"
#include "ui/Color.h"
#include "ui/Font.h"
#include "ui/Representable.h"
#include "ui/View.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace pelistra::ui {

// Sizes follow three rules. A parent offers each child a size and the child answers its own;
// texts, symbols and controls take what they need; shapes, pictures, scroll views, spacers and
// unlimited frames take what they are offered. A stack serves its rigid children first and shares
// the rest among the flexible ones. What is smaller than its place is centred there unless an
// alignment says otherwise.

// Leaves

enum class TextAlignment : std::uint8_t { Leading, Center };

// Plain text, never marked up. It wraps at the width that it is offered and is never cut, unless
// it has a line limit: then the last line ends in an ellipsis. A screen reader reads it.
struct Text {
    std::string text;
    Font font = {};
    // Empty: the colour of the control that it labels, else the primary role.
    std::optional<Color> foreground = std::nullopt;
    std::optional<int> lineLimit = std::nullopt;
    // How lines lie to each other when there are several.
    TextAlignment multilineAlignment = TextAlignment::Leading;

    bool operator==(const Text&) const = default;
};

// A symbol of the system by name, drawn in one colour at the size of the font. Decoration: a screen
// reader skips it.
struct Symbol {
    std::string name;
    Font font = {};
    std::optional<Color> foreground = std::nullopt;

    bool operator==(const Symbol&) const = default;
};

// A bitmap, resizable (stretched as a whole, no cap insets) and scaled to fit the area that it is
// offered with its aspect ratio kept, up or down, centred. Its nominal size plays no part. Equal
// when it is the same image object.
struct Picture {
    ImagePtr image;

    bool operator==(const Picture&) const = default;
};

// Takes what a stack has left, along the stack.
struct Spacer {
    bool operator==(const Spacer&) const = default;
};

// The system's hairline: vertical in an HStack, else horizontal. As long as it is offered.
struct Divider {
    bool operator==(const Divider&) const = default;
};

struct FilledShape {
    Outline outline;
    Paint fill;

    bool operator==(const FilledShape&) const = default;
};

// The outline as a line, half of it on each side: butt caps, miter joins with limit 10, no dashes.
struct StrokedShape {
    Outline outline;
    Color color;
    double lineWidth = 1;

    bool operator==(const StrokedShape&) const = default;
};

// An area that a view of the core's own making watches; as large as it is offered, draws nothing.
struct Represented {
    std::shared_ptr<const Representable> value;

    bool operator==(const Represented& other) const { return *value == *other.value; }
};

// Controls

enum class ButtonStyle : std::uint8_t {
    // The platform's push button; in a form, what the platform puts there.
    Automatic,
    // Nothing but the label. It still shows hover, press and keyboard focus quietly.
    Plain,
    // No border; hover and press are shown, the label is drawn in the secondary role unless it has
    // a colour.
    Borderless,
    // Filled with the accent colour, its label white.
    BorderedProminent,
};

enum class ButtonRole : std::uint8_t {
    Regular,
    // Drawn as something that cannot be taken back (red).
    Destructive,
    // The way out: Escape presses it.
    Cancel,
};

enum class ControlSize : std::uint8_t { Regular, Large };

// A left click, Space while focused or the accessibility press calls the action once. Its
// accessible name is the label's text, or, when the label has none, its AccessibilityLabel or
// Help.
struct Button {
    View label;
    Action action = {};
    ButtonStyle style = ButtonStyle::Automatic;
    ButtonRole role = ButtonRole::Regular;
    ControlSize size = ControlSize::Regular;
    // Return presses it from anywhere in the window.
    bool isDefaultAction = false;

    bool operator==(const Button&) const = default;
};

// A label and a switch. The switch shows isOn and nothing else: after the user moved it and the
// action was called, the front end sets it to the isOn of the newest body, also when that body is
// equal to the one before. Setting it from the value never calls the action.
struct Toggle {
    std::string label;
    bool isOn = false;
    ToggleAction action = {};

    bool operator==(const Toggle&) const = default;
};

// Containers

struct HStack {
    VerticalAlignment alignment = VerticalAlignment::Center;
    // Between neighbours, in points.
    double spacing = 0;
    std::vector<View> children = {};

    bool operator==(const HStack&) const = default;
};

struct VStack {
    HorizontalAlignment alignment = HorizontalAlignment::Center;
    double spacing = 0;
    std::vector<View> children = {};

    bool operator==(const VStack&) const = default;
};

// Children one over the other, the last on top, centred.
struct ZStack {
    std::vector<View> children = {};

    bool operator==(const ZStack&) const = default;
};

// Scrolls its content sideways, without scroll bars. It takes the width that it is offered and the
// height of its content; the content lies at the leading edge. Wheels of both directions, touch
// pads and the keyboard scroll it; its position survives every update.
struct HorizontalScroll {
    View content;

    bool operator==(const HorizontalScroll&) const = default;
};

// Rows that belong together, drawn as a card under their title, with hairlines between the rows.
struct FormSection {
    std::string title;
    std::vector<View> rows;

    bool operator==(const FormSection&) const = default;
};

// A form in the platform's grouped style. It scrolls up and down when it is higher than its place.
struct GroupedForm {
    std::vector<FormSection> sections;

    bool operator==(const GroupedForm&) const = default;
};

// Modifiers: each has one content and does one thing to it

struct Padding {
    Edges edges;
    View content;

    bool operator==(const Padding&) const = default;
};

struct Frame {
    FrameLimits limits;
    View content;

    bool operator==(const Frame&) const = default;
};

struct Background {
    View behind;
    // Whether the background reaches under the window's title bar.
    bool ignoresSafeArea = false;
    View content;

    bool operator==(const Background&) const = default;
};

struct Overlay {
    View above;
    View content;

    bool operator==(const Overlay&) const = default;
};

// The area that answers to the pointer, whatever the content draws there.
struct ContentShape {
    Outline outline;
    View content;

    bool operator==(const ContentShape&) const = default;
};

// The text shows after the pointer has rested over the content for the platform's usual delay.
// Plain text; a line break in it is kept.
struct Help {
    std::string text;
    View content;

    bool operator==(const Help&) const = default;
};

// What a screen reader says for the content as a whole, instead of what is in it.
struct AccessibilityLabel {
    std::string text;
    View content;

    bool operator==(const AccessibilityLabel&) const = default;
};

// Among its siblings, the content is the same as in the body before exactly when the key is.
struct Identified {
    Key key;
    View content;

    bool operator==(const Identified&) const = default;
};

// How the content enters and leaves, inside an Animated whose value changes in the same update.
struct Entering {
    Transition transition;
    View content;

    bool operator==(const Entering&) const = default;
};

// An update in which the value differs from the one before is shown with the animation: sizes,
// places and colours inside move to their new state, what enters or leaves does so by its Entering.
// All other updates are shown at once.
struct Animated {
    Animation animation;
    std::int64_t value = 0;
    View content;

    bool operator==(const Animated&) const = default;
};

struct AlertButton {
    std::string label = {};
    ButtonRole role = ButtonRole::Regular;
    Action action = {};

    bool operator==(const AlertButton&) const = default;
};

struct Alert {
    std::string title = {};
    std::string message = {};
    AlertButton button = {};
    bool isPresented = false;
    // Grows with every occasion for the alert. The front end shows it once for each occasion while
    // it is presented, and takes it down when it no longer is: dismissing it changes nothing here,
    // so without this it would come back at once for ever.
    std::uint64_t occasion = 0;

    bool operator==(const Alert&) const = default;
};

// The content's window shows the alert over itself.
struct WithAlert {
    Alert alert;
    View content;

    bool operator==(const WithAlert&) const = default;
};

struct Node {
    std::variant<Text, Symbol, Picture, Button, Toggle, Spacer, Divider, FilledShape, StrokedShape,
                 Represented, HStack, VStack, ZStack, HorizontalScroll, GroupedForm, Padding, Frame,
                 Background, Overlay, ContentShape, Help, AccessibilityLabel, Identified, Entering,
                 Animated, WithAlert>
        kind;

    bool operator==(const Node&) const = default;
};

template <NodeKind Kind>
View::View(Kind kind) : node_(std::make_shared<const Node>(Node{.kind = std::move(kind)})) {}

template <NodeKind Kind>
const Kind* View::as() const {
    return std::get_if<Kind>(&node_->kind);
}

} // namespace pelistra::ui

#pragma once

#include "ui/Animation.h"
#include "ui/Layout.h"
#include "ui/Outline.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>

namespace pelistra::ui {

struct Node;
struct Text;
struct Symbol;
struct Picture;
struct Button;
struct Toggle;
struct Spacer;
struct Divider;
struct FilledShape;
struct StrokedShape;
struct Represented;
struct HStack;
struct VStack;
struct ZStack;
struct HorizontalScroll;
struct GroupedForm;
struct Padding;
struct Frame;
struct Background;
struct Overlay;
struct ContentShape;
struct Help;
struct AccessibilityLabel;
struct Identified;
struct Entering;
struct Animated;
struct WithAlert;
struct Alert;

template <class Candidate, class... Kinds>
concept OneOf = (std::same_as<Candidate, Kinds> || ...);

// The kinds of views that there are; ui/Nodes.h says what each is and what a front end does with
// it.
template <class Candidate>
concept NodeKind =
    OneOf<Candidate, Text, Symbol, Picture, Button, Toggle, Spacer, Divider, FilledShape,
          StrokedShape, Represented, HStack, VStack, ZStack, HorizontalScroll, GroupedForm, Padding,
          Frame, Background, Overlay, ContentShape, Help, AccessibilityLabel, Identified, Entering,
          Animated, WithAlert>;

// What tells one child of a container from its siblings across two bodies.
using Key = std::variant<std::uint64_t, std::string>;

// A piece of a user interface as an immutable value, cheap to copy: copies share their tree. Two
// views are equal when they draw the same and are controlled the same way; see ui/Action.h on what
// that means for actions. Include ui/Nodes.h to make or read one.
class View {
public:
    template <NodeKind Kind>
    View(Kind kind);

    [[nodiscard]] const Node& node() const { return *node_; }

    // The node when it is of that kind, else null.
    template <NodeKind Kind>
    [[nodiscard]] const Kind* as() const;

    bool operator==(const View& other) const;

    // The modifiers: each wraps this view in a node of the kind that it returns.
    [[nodiscard]] View padding(const Edges& edges) const;
    [[nodiscard]] View frame(const FrameLimits& limits) const;
    // The background lies behind this view and takes its size, never the other way round.
    [[nodiscard]] View background(const View& behind, bool ignoresSafeArea = false) const;
    // The overlay lies over this view, centred, and takes its size, never the other way round.
    [[nodiscard]] View overlay(const View& above) const;
    [[nodiscard]] View contentShape(const Outline& shape) const;
    [[nodiscard]] View help(std::string text) const;
    [[nodiscard]] View accessibilityLabel(std::string text) const;
    [[nodiscard]] View id(Key key) const;
    [[nodiscard]] View transition(const Transition& transition) const;
    [[nodiscard]] View animation(const Animation& animation, std::int64_t value) const;
    [[nodiscard]] View alert(Alert alert) const;

private:
    std::shared_ptr<const Node> node_;
};

} // namespace pelistra::ui

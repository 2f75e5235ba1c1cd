#include "ui/Box.h"

#include "ui/FrameSide.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace pelistra::ui {

namespace {

// What is as large as it is offered takes where nothing is offered.
constexpr double sizeWithoutOffer = 10;
constexpr double formSizeWithoutOffer = 400;

std::optional<double> lessBy(const std::optional<double>& length, double taken) {
    return length ? std::optional(std::max(0.0, *length - taken)) : std::nullopt;
}

Size whatIsOffered(const Proposal& offered) {
    return {.width = offered.width.value_or(sizeWithoutOffer),
            .height = offered.height.value_or(sizeWithoutOffer)};
}

double along(const Size& size, Axis axis) {
    return axis == Axis::Horizontal ? size.width : size.height;
}

double across(const Size& size, Axis axis) {
    return axis == Axis::Horizontal ? size.height : size.width;
}

Proposal offer(Axis axis, std::optional<double> lengthAlong, std::optional<double> lengthAcross) {
    return axis == Axis::Horizontal ? Proposal{.width = lengthAlong, .height = lengthAcross}
                                    : Proposal{.width = lengthAcross, .height = lengthAlong};
}

Axis stackAxis(const View& view) {
    if (view.as<HStack>() != nullptr) {
        return Axis::Horizontal;
    }
    return view.as<VStack>() != nullptr ? Axis::Vertical : Axis::None;
}

// Names begin with their length, so that none reads like the next step.
std::string textOf(const Key& key) {
    const auto* number = std::get_if<std::uint64_t>(&key);
    const auto* name = std::get_if<std::string>(&key);
    std::string text = std::to_string(number != nullptr ? *number : name->size());
    text += number != nullptr ? "#" : ":" + *name;
    return text;
}

} // namespace

Box::Box(View view, const Measuring& measuring, Axis axis, std::string step)
    : view_(std::move(view)), measuring_(measuring), axis_(axis), step_(std::move(step)) {
    unwrap();
    std::visit(Overloaded{
        [this](const Button& button) {
            if (!measuring_.measures.nativeButton(button)) {
                contain(button.label, axis_);
            }
        },
        [this](const Toggle& toggle) { contain(Text{.text = toggle.label}, axis_); },
        [this](const Background& node) { containBoth(node.content, node.behind); },
        [this](const Overlay& node) { containBoth(node.content, node.above); },
        [this](const GroupedForm& form) { containForm(form); },
        [this]<class Stack>(const Stack& stack)
            requires requires { stack.children; }
                     {
                         const Axis own = stackAxis(view_);
                         containAll(stack.children, own != Axis::None ? own : axis_);
                     },
                     [this]<class Modifier>(const Modifier& modifier)
                         requires requires { modifier.content; }
        { contain(modifier.content, axis_); },
        [](const auto& /*leaf*/) {},
        },
        view_.node().kind);
    // What a front end shows by other means than its kind usually is gets another key.
    const auto* shape = view_.as<FilledShape>();
    const bool isMaterial = shape != nullptr && std::holds_alternative<Material>(shape->fill);
    if (isMaterial || (view_.as<Button>() != nullptr && contents_.empty())) {
        step_ += '*';
    }
    if (isRigid()) {
        rigidSize_ = fit({});
    }
}

void Box::unwrap() {
    const View* content = &view_;
    while (content != nullptr) {
        const View& wrapped = *content;
        step_ += static_cast<char>('A' + wrapped.node().kind.index());
        content = nullptr;
        if (const auto* help = wrapped.as<Help>()) {
            help_ = &help->text;
            content = &help->content;
        } else if (const auto* label = wrapped.as<AccessibilityLabel>()) {
            accessibilityLabel_ = &label->text;
            content = &label->content;
        } else if (const auto* alert = wrapped.as<WithAlert>()) {
            alert_ = &alert->alert;
            content = &alert->content;
        } else if (const auto* identified = wrapped.as<Identified>()) {
            content = &identified->content;
        } else if (const auto* shape = wrapped.as<ContentShape>()) {
            content = &shape->content;
        } else if (&wrapped != &view_) {
            view_ = View(wrapped);
        }
    }
}

bool Box::isRigid() const {
    const auto hasSize = [](const Box& box) { return box.rigidSize_.has_value(); };
    return std::visit(Overloaded{
        [](const Symbol&) { return true; },
        [](const Frame& frame) {
            return widthOf(frame.limits).fixed && heightOf(frame.limits).fixed;
        },
        [](const HorizontalScroll&) { return false; },
        [](const GroupedForm&) { return false; },
        [&]<class Stack>(const Stack& /*stack*/)
            requires requires(Stack stack) { stack.children; }
        { return std::ranges::all_of(contents_, hasSize); },
        [&](const auto&) { return !contents_.empty() && hasSize(contents_.front()); },
        },
        view_.node().kind);
}

void Box::contain(const View& view, Axis axis, std::string step) {
    contents_.emplace_back(view, measuring_, axis, std::move(step));
}

void Box::containBoth(const View& content, const View& layer) {
    contents_.reserve(2);
    contain(content, axis_);
    contain(layer, axis_, "~");
}

void Box::containAll(const std::vector<View>& views, Axis axis, const std::string& step) {
    contents_.reserve(contents_.size() + views.size());
    std::size_t withoutKey = 0;
    for (const View& view : views) {
        const auto* identified = view.as<Identified>();
        contain(view, axis,
                step + (identified != nullptr ? textOf(identified->key)
                                              : std::to_string(withoutKey++)));
    }
}

void Box::containForm(const GroupedForm& form) {
    const Font font = measuring_.measures.form().titleFont;
    for (std::size_t place = 0; place < form.sections.size(); ++place) {
        const FormSection& section = form.sections[place];
        const std::string step = std::to_string(place) + "/";
        contain(Text{.text = section.title, .font = font}, Axis::Vertical, step);
        containAll(section.rows, Axis::Vertical, step);
    }
    for (Box& box : contents_) {
        const auto* button = box.view_.as<Button>();
        box.isFormRow_ = box.view_.as<Toggle>() != nullptr ||
                         (button != nullptr && button->style == ButtonStyle::Automatic &&
                          !box.contents_.empty());
        if (box.isFormRow_) {
            box.rigidSize_.reset();
        }
    }
}

Size Box::measure(const Proposal& offered) {
    if (rigidSize_) {
        return *rigidSize_;
    }
    for (const Known& known : known_) {
        if (known.offered == offered) {
            return known.size;
        }
    }
    const Size size = fit(offered);
    if (stackAxis(view_) != Axis::None || view_.as<ZStack>() != nullptr ||
        view_.as<Text>() != nullptr) {
        known_.push_back({.offered = offered, .size = size});
    }
    return size;
}

Size Box::fit(const Proposal& offered) {
    const Measures& measures = measuring_.measures;
    return std::visit(Overloaded{
        [&](const Text& text) {
            const bool isBounded = offered.width && std::isfinite(*offered.width);
            return measuring_.whole(measures.text(text, isBounded ? offered.width : std::nullopt));
        },
        [&](const Symbol& symbol) { return measuring_.whole(measures.symbol(symbol)); },
        [&](const Picture& picture) { return fitPicture(picture.image, offered); },
        [&](const Spacer&) {
            return Size{.width = axis_ == Axis::Vertical ? 0 : offered.width.value_or(0),
                        .height = axis_ == Axis::Horizontal ? 0 : offered.height.value_or(0)};
        },
        [&](const Divider&) {
            const Size size = whatIsOffered(offered);
            return axis_ == Axis::Horizontal ? Size{.width = 1, .height = size.height}
                                             : Size{.width = size.width, .height = 1};
        },
        [&](const Button& button) { return fitButton(button, offered); },
        [&](const Toggle&) { return fitToggle(offered); },
        [&](const HStack& stack) { return fitStack(stack.spacing, offered); },
        [&](const VStack& stack) { return fitStack(stack.spacing, offered); },
        [&](const ZStack&) { return fitPile(offered); },
        [&](const HorizontalScroll&) {
            const Size size = contents_.front().measure({.height = offered.height});
            return Size{.width = offered.width.value_or(size.width), .height = size.height};
        },
        [&](const GroupedForm& form) { return fitForm(form, offered); },
        [&](const Padding& padding) { return fitInside(padding.edges, offered); },
        [&](const Frame& frame) { return fitFrame(frame.limits, offered); },
        [&]<class Modifier>(const Modifier& modifier)
            requires requires { modifier.content; }
        { return contents_.front().measure(offered); },
        [&](const auto& /*shape*/) { return whatIsOffered(offered); },
        },
        view_.node().kind);
}

// As large as fits, its shape kept; without an offer as large as it says.
Size Box::fitPicture(const ImagePtr& image, const Proposal& offered) const {
    const Size nominal = image ? image->size() : Size{};
    const bool hasArea = nominal.width > 0 && nominal.height > 0;
    if (!hasArea) {
        return {};
    }
    const double factor = std::min(offered.width.value_or(infinity) / nominal.width,
                                   offered.height.value_or(infinity) / nominal.height);
    const double used = std::isfinite(factor) ? factor : 1;
    return {.width = measuring_.snapped(reckonable(nominal.width * used)),
            .height = measuring_.snapped(reckonable(nominal.height * used))};
}

Size Box::fitInside(const Edges& edges, const Proposal& offered) {
    const Size size = contents_.front().measure({.width = lessBy(offered.width, across(edges)),
                                                 .height = lessBy(offered.height, down(edges))});
    return {.width = std::max(0.0, size.width + across(edges)),
            .height = std::max(0.0, size.height + down(edges))};
}

Size Box::fitFrame(const FrameLimits& limits, const Proposal& offered) {
    const FrameSide wide = widthOf(limits);
    const FrameSide high = heightOf(limits);
    if (wide.fixed && high.fixed) {
        return {.width = *wide.fixed, .height = *high.fixed};
    }
    Proposal inside = {.width = wide.within(offered.width), .height = high.within(offered.height)};
    Size size = contents_.front().measure(inside);
    const bool isTooWide = wide.isExceeded(inside.width, size.width);
    const bool isTooHigh = high.isExceeded(inside.height, size.height);
    if (isTooWide || isTooHigh) {
        inside.width = isTooWide ? wide.most : inside.width;
        inside.height = isTooHigh ? high.most : inside.height;
        size = contents_.front().measure(inside);
    }
    return {.width = wide.taken(offered.width, size.width),
            .height = high.taken(offered.height, size.height)};
}

void Box::placeFrame(const FrameLimits& limits, const Area& area, Placing& placing) {
    Box& content = contents_.front();
    const Size size = content.measure({.width = widthOf(limits).within(area.width()),
                                       .height = heightOf(limits).within(area.height())});
    placeAligned(content, size, area, limits.alignment, placing);
}

Size Box::fitStack(double spacing, const Proposal& offered) {
    const Axis axis = stackAxis(view_);
    const auto sizes = stacked(spacing, offered);
    double length = sizes.empty() ? 0 : reckonable(spacing) * static_cast<double>(sizes.size() - 1);
    double breadth = 0;
    for (const Size& size : sizes) {
        length += along(size, axis);
        breadth = std::max(breadth, across(size, axis));
    }
    length = std::max(0.0, length);
    return axis == Axis::Horizontal ? Size{.width = length, .height = breadth}
                                    : Size{.width = breadth, .height = length};
}

std::vector<Size> Box::stacked(double spacing, const Proposal& offered) {
    const Axis axis = stackAxis(view_);
    const bool isRow = axis == Axis::Horizontal;
    const auto& length = isRow ? offered.width : offered.height;
    const auto& breadth = isRow ? offered.height : offered.width;
    std::vector<Size> sizes(contents_.size());
    if (!length || contents_.empty() || rigidSize_) {
        for (std::size_t place = 0; place < contents_.size(); ++place) {
            sizes[place] = contents_[place].measure(offer(axis, std::nullopt, breadth));
        }
        return sizes;
    }
    double left = *length - (reckonable(spacing) * static_cast<double>(contents_.size() - 1));
    std::size_t waiting = contents_.size();
    for (const std::size_t place : byRigidity(breadth)) {
        const double share = std::max(0.0, left / static_cast<double>(waiting--));
        sizes[place] = contents_[place].measure(offer(axis, share, breadth));
        left -= along(sizes[place], axis);
    }
    return sizes;
}

std::vector<std::size_t> Box::byRigidity(const std::optional<double>& across) {
    const Axis axis = stackAxis(view_);
    std::vector<double> give(contents_.size());
    for (std::size_t place = 0; place < contents_.size(); ++place) {
        const double most = along(contents_[place].measure(offer(axis, infinity, across)), axis);
        const double least = along(contents_[place].measure(offer(axis, 0, across)), axis);
        give[place] = most - least;
    }
    std::vector<std::size_t> order(contents_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {},
                      [&give](std::size_t place) { return std::pair(give[place], place); });
    return order;
}

Size Box::fitPile(const Proposal& offered) {
    Size size;
    for (Box& box : contents_) {
        const Size own = box.measure(offered);
        size = {.width = std::max(size.width, own.width),
                .height = std::max(size.height, own.height)};
    }
    return size;
}

Edges Box::buttonInsets(const Button& button) const {
    return isFormRow_ ? measuring_.measures.form().rowInsets
                      : measuring_.measures.button(button).insets;
}

Size Box::fitButton(const Button& button, const Proposal& offered) {
    if (contents_.empty()) {
        return measuring_.whole(measuring_.measures.nativeButton(button).value_or(Size{}));
    }
    Size size = fitInside(buttonInsets(button), offered);
    size.width = std::max(isFormRow_ ? offered.width.value_or(size.width) : size.width,
                          measuring_.measures.button(button).leastWidth);
    return size;
}

Size Box::fitToggle(const Proposal& offered) {
    const Measures& measures = measuring_.measures;
    const Edges edges = isFormRow_ ? measures.form().rowInsets : Edges();
    const SwitchMetrics metrics = measures.toggle();
    const double beside = metrics.size.width + metrics.distance + across(edges);
    const Size label = contents_.front().measure({.width = lessBy(offered.width, beside)});
    const double width = label.width + beside;
    return {.width = isFormRow_ ? offered.width.value_or(width) : width,
            .height = std::max(label.height, metrics.size.height) + down(edges)};
}

Size Box::fitForm(const GroupedForm& form, const Proposal& offered) {
    const double width = offered.width.value_or(formSizeWithoutOffer);
    std::vector<Card> cards;
    const double bounded = std::isfinite(width) ? width : formSizeWithoutOffer;
    return {.width = width,
            .height = offered.height ? *offered.height : layOutForm(form, bounded, nullptr, cards)};
}

} // namespace pelistra::ui

#include "platform/macos/views/Element.h"

#include "platform/macos/views/ContainerView.h"
#include "ui/Walk.h"

#include <array>
#include <utility>

namespace pelistra::appkit {

namespace {

using Maker = std::unique_ptr<Element> (*)(const ui::View&, ElementContext&);
constexpr std::array<Maker, 6> makers = {makeLeaf,  makeShape,  makeControl,
                                         makeStack, makeScroll, makeModifier};

// Views that come and go in the same way as they were in the body are found again by their key.
const ui::Entering* entering(const ui::View& view) {
    if (const auto* identified = view.as<ui::Identified>()) {
        return entering(identified->content);
    }
    return view.as<ui::Entering>();
}

} // namespace

Element::~Element() { [native_.get() removeFromSuperview]; }

std::unique_ptr<Element> Element::make(const ui::View& view, NSView* parent, Axis axis,
                                       ElementContext& context) {
    for (const Maker maker : makers) {
        if (auto element = maker(view, context)) {
            element->begin(view, parent, axis);
            return element;
        }
    }
    return nullptr;
}

Owned<NSView*> Element::makeView() {
    return Owned<NSView*>::adopt([[PelistraContainerView alloc] initWithFrame:NSZeroRect]);
}

void Element::begin(const ui::View& view, NSView* parent, Axis axis) {
    axis_ = axis;
    shown_ = view;
    native_ = makeView();
    [parent addSubview:native_.get()];
    apply();
    updateChildren({}, ui::childrenOf(view));
    if (const auto* transition = view.as<ui::Entering>(); transition != nullptr) {
        if (context_->motion != nullptr) {
            context_->motion->enter(native_.get(), transition->transition.scale);
        }
    }
}

void Element::update(const ui::View& view) {
    const auto before = ui::childrenOf(*shown_);
    shown_ = view;
    apply();
    updateChildren(before, ui::childrenOf(view));
}

void Element::updateChildren(const std::vector<ui::View>& before,
                             const std::vector<ui::View>& after) {
    const auto continued = ui::continuedFrom(before, after);
    auto old = std::exchange(children_, {});
    for (std::size_t place = 0; place < after.size(); ++place) {
        if (const auto from = continued[place]) {
            children_.push_back(std::move(old[*from]));
            children_.back()->update(after[place]);
        } else {
            children_.push_back(make(after[place], contentView(), childAxis(), *context_));
        }
    }
    for (auto& gone : old) {
        if (gone != nullptr && context_->motion != nullptr && entering(gone->shown()) != nullptr) {
            leave(std::move(gone));
        }
    }
    orderChildViews();
}

void Element::leave(std::unique_ptr<Element> element) {
    const double scale = entering(element->shown())->transition.scale;
    Motion* motion = element->context_->motion;
    const std::shared_ptr<Element> leaving = std::move(element);
    motion->leave(leaving->view(), scale, leaving);
}

// What lies behind comes first among the subviews.
void Element::orderChildViews() {
    NSView* above = nil;
    for (const auto& element : children_) {
        NSView* native = element->view();
        NSArray* siblings = [contentView() subviews];
        const NSUInteger index = [siblings indexOfObjectIdenticalTo:native];
        const bool isInOrder = above == nil || index > [siblings indexOfObjectIdenticalTo:above];
        if (!isInOrder) {
            [contentView() addSubview:native positioned:NSWindowAbove relativeTo:above];
        }
        above = native;
    }
}

void Element::place(NSRect frame) {
    if (!NSEqualRects([native_.get() frame], frame)) {
        if (context_->motion != nullptr) {
            context_->motion->move(native_.get(), frame);
        } else {
            [native_.get() setFrame:frame];
        }
    }
    arrange({.width = frame.size.width, .height = frame.size.height});
}

void Element::arrange(Size size) {
    for (const auto& element : children_) {
        element->place(NSMakeRect(0, 0, size.width, size.height));
    }
}

} // namespace pelistra::appkit

#include "platform/macos/views/Element.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/views/ContainerView.h"

#include <array>
#include <utility>

namespace pelistra::macos {

namespace {

using Maker = std::unique_ptr<Element> (*)(const ui::View&, ElementContext&);
constexpr std::array<Maker, 5> makers = {makeLeaf, makeShape, makeControl, makeScroll, makeGroup};

// What lies behind comes first among the subviews.
void orderViews(const std::vector<std::unique_ptr<Element>>& elements, NSView* parent) {
    NSView* above = nil;
    for (const auto& element : elements) {
        NSView* native = element->view();
        NSArray* siblings = [parent subviews];
        const NSUInteger index = [siblings indexOfObjectIdenticalTo:native];
        const bool isInOrder = above == nil || index > [siblings indexOfObjectIdenticalTo:above];
        if (!isInOrder) {
            [parent addSubview:native positioned:NSWindowAbove relativeTo:above];
        }
        above = native;
    }
}

} // namespace

Element::~Element() { [native_.get() removeFromSuperview]; }

std::unique_ptr<Element> Element::make(const ui::Placed& placed, NSView* parent,
                                       ElementContext& context) {
    for (const Maker maker : makers) {
        if (auto element = maker(placed.view, context)) {
            element->shown_ = placed.view;
            element->native_ = element->makeView();
            // Motion is shown by layers; an ordinary view has none.
            [element->view() setWantsLayer:YES];
            [parent addSubview:element->view()];
            return element;
        }
    }
    return nullptr;
}

void Element::updateAll(std::vector<std::unique_ptr<Element>>& elements,
                        const std::vector<ui::Placed>& placed, NSView* parent, NSPoint origin,
                        ElementContext& context) {
    auto now = ui::continued(elements, placed,
                             [&](const ui::Placed& each) { return make(each, parent, context); });
    std::swap(elements, now);
    for (auto& gone : now) {
        const auto* entering = gone != nullptr ? gone->shown_->as<ui::Entering>() : nullptr;
        if (entering != nullptr && context.motion != nullptr) {
            const double scale = entering->transition.scale;
            const std::shared_ptr<Element> leaving = std::move(gone);
            context.motion->leave(leaving->view(), scale, leaving);
        }
    }
    for (std::size_t place = 0; place < placed.size(); ++place) {
        elements[place]->update(placed[place], origin);
    }
    orderViews(elements, parent);
}

Owned<NSView*> Element::makeView() {
    return Owned<NSView*>::adopt([[PelistraContainerView alloc] initWithFrame:NSZeroRect]);
}

void Element::update(const ui::Placed& placed, NSPoint origin) {
    shown_ = placed.view;
    key_ = placed.key;
    const NSRect frame = nsRect(placed.frame);
    // Controls of the system's have invisible margins around what is seen of them.
    place([native_.get() frameForAlignmentRect:NSOffsetRect(frame, -origin.x, -origin.y)]);
    apply(placed);
    updateChildren(placed);
}

void Element::updateChildren(const ui::Placed& placed) {
    updateAll(children_, placed.children, contentView(), contentOrigin(placed), *context_);
}

NSPoint Element::contentOrigin(const ui::Placed& placed) const {
    return nsRect(placed.frame).origin;
}

void Element::place(NSRect frame) {
    if (!NSEqualRects([native_.get() frame], frame)) {
        if (context_->motion != nullptr) {
            context_->motion->move(native_.get(), frame);
        } else {
            [native_.get() setFrame:frame];
        }
    }
}

void Element::say(const std::string& helpText, const std::string& name, NSView* carrier) {
    NSString* help = helpText.empty() ? nil : nsString(helpText);
    if (help != [carrier toolTip] && ![[carrier toolTip] isEqual:help]) {
        [carrier setToolTip:help];
    }
    if (said_ != name) {
        said_ = name;
        [carrier setAccessibilityLabel:said_.empty() ? nil : nsString(said_)];
    }
}

NSRect nsRect(const ui::Area& area) {
    return NSMakeRect(area.minX(), area.minY(), area.width(), area.height());
}

} // namespace pelistra::macos

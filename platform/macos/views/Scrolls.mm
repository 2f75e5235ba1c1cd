#include "platform/macos/views/AppKitMeasures.h"
#include "platform/macos/views/ContainerView.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/RowScrollView.h"

#include <algorithm>

namespace pelistra::macos {

namespace {

class RowScrollElement final : public Element {
  public:
    using Element::Element;

  protected:
    Owned<NSView*> makeView() override {
        document_ = Owned<PelistraContainerView*>::adopt(
            [[PelistraContainerView alloc] initWithFrame:NSZeroRect]);
        const auto scroll = Owned<PelistraRowScrollView*>::adopt(
            [[PelistraRowScrollView alloc] initWithFrame:NSZeroRect]);
        [scroll.get() setDrawsBackground:NO];
        [scroll.get() setHasHorizontalScroller:NO];
        [scroll.get() setHasVerticalScroller:NO];
        [scroll.get() setBorderType:NSNoBorder];
        [scroll.get() setDocumentView:document_.get()];
        return Owned<NSView*>::share(scroll.get());
    }

    [[nodiscard]] NSView* contentView() const override { return document_.get(); }

    [[nodiscard]] NSPoint contentOrigin(const ui::Placed&) const override { return NSZeroPoint; }

    void apply(const ui::Placed& placed) override {
        const NSSize whole =
            NSMakeSize(std::max(placed.content.width, placed.frame.width()), placed.frame.height());
        if (!NSEqualSizes([document_.get() frame].size, whole)) {
            [document_.get() setFrameSize:whole];
        }
    }

  private:
    Owned<PelistraContainerView*> document_;
};

// The grouped style: cards under their titles, as in the system's settings. Points.
constexpr double cardRadius = 10;
constexpr double cardFill = 0.04;
constexpr double cardEdge = 0.08;

void drawCard(const ui::Card& card) {
    const NSRect area = nsRect(card.area);
    NSBezierPath* path = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(area, 0.5, 0.5)
                                                         xRadius:cardRadius
                                                         yRadius:cardRadius];
    [[[NSColor labelColor] colorWithAlphaComponent:cardFill] setFill];
    [path fill];
    [[[NSColor labelColor] colorWithAlphaComponent:cardEdge] setStroke];
    [path stroke];
    [[NSColor separatorColor] setFill];
    for (const double line : card.lines) {
        NSRectFillUsingOperation(
            NSMakeRect(NSMinX(area) + formRowMargin, line, area.size.width - 2 * formRowMargin, 1),
            NSCompositingOperationSourceOver);
    }
}

class FormElement final : public Element {
  public:
    using Element::Element;

  protected:
    Owned<NSView*> makeView() override {
        document_ = Owned<PelistraContainerView*>::adopt(
            [[PelistraContainerView alloc] initWithFrame:NSZeroRect]);
        const auto scroll =
            Owned<NSScrollView*>::adopt([[NSScrollView alloc] initWithFrame:NSZeroRect]);
        [scroll.get() setDrawsBackground:NO];
        [scroll.get() setBorderType:NSNoBorder];
        [scroll.get() setDocumentView:document_.get()];
        return Owned<NSView*>::share(scroll.get());
    }

    [[nodiscard]] NSView* contentView() const override { return document_.get(); }

    [[nodiscard]] NSPoint contentOrigin(const ui::Placed&) const override { return NSZeroPoint; }

    void apply(const ui::Placed& placed) override {
        // The arrangement has left room for a scroller exactly when it takes one.
        const bool scrolls = placed.content.height > placed.frame.height();
        [static_cast<NSScrollView*>(view()) setHasVerticalScroller:(scrolls ? YES : NO)];
        const NSSize whole = NSMakeSize(placed.content.width,
                                        std::max(placed.content.height, placed.frame.height()));
        if (!NSEqualSizes([document_.get() frame].size, whole)) {
            [document_.get() setFrameSize:whole];
        }
        if (cards_ != placed.cards) {
            cards_ = placed.cards;
            document_.get()->draw = [cards = cards_](NSRect) {
                for (const ui::Card& card : cards) {
                    drawCard(card);
                }
            };
            [document_.get() setNeedsDisplay:YES];
        }
    }

  private:
    Owned<PelistraContainerView*> document_;
    std::vector<ui::Card> cards_;
};

} // namespace

std::unique_ptr<Element> makeScroll(const ui::View& view, ElementContext& context) {
    if (view.as<ui::HorizontalScroll>() != nullptr) {
        return std::make_unique<RowScrollElement>(context);
    }
    if (view.as<ui::GroupedForm>() != nullptr) {
        return std::make_unique<FormElement>(context);
    }
    return nullptr;
}

} // namespace pelistra::macos

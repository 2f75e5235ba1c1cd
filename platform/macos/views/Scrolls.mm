#include "platform/macos/Conversions.h"
#include "platform/macos/views/ContainerView.h"
#include "platform/macos/views/Element.h"
#include "platform/macos/views/LabelField.h"
#include "platform/macos/views/RowScrollView.h"
#include "platform/macos/views/Style.h"

#include <algorithm>

namespace pelistra::appkit {

namespace {

class RowScrollElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        const Size content = child(0).measure({.width = std::nullopt, .height = proposal.height});
        return {.width = proposal.width.value_or(content.width), .height = content.height};
    }

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

    void arrange(Size size) override {
        const Size content = child(0).measure({.width = std::nullopt, .height = size.height});
        const NSSize whole = NSMakeSize(std::max(content.width, size.width), size.height);
        if (!NSEqualSizes([document_.get() frame].size, whole)) {
            [document_.get() setFrameSize:whole];
        }
        child(0).place(
            NSMakeRect(0, (size.height - content.height) / 2, content.width, content.height));
    }

  private:
    Owned<PelistraContainerView*> document_;
};

// The grouped style: cards under their titles, as in the system's settings. Points.
constexpr double formMargin = 20;
constexpr double cardRadius = 10;
constexpr double cardFill = 0.04;
constexpr double cardEdge = 0.08;
constexpr double rowMargin = 12;
constexpr double rowPadding = 8;
constexpr double titleDistance = 8;
constexpr double sectionDistance = 24;

struct Card {
    NSRect frame;
    // Where the hairlines between the rows are.
    std::vector<double> lines;
};

void drawCard(const Card& card) {
    NSBezierPath* path = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(card.frame, 0.5, 0.5)
                                                         xRadius:cardRadius
                                                         yRadius:cardRadius];
    [[[NSColor labelColor] colorWithAlphaComponent:cardFill] setFill];
    [path fill];
    [[[NSColor labelColor] colorWithAlphaComponent:cardEdge] setStroke];
    [path stroke];
    [[NSColor separatorColor] setFill];
    for (const double line : card.lines) {
        NSRectFillUsingOperation(NSMakeRect(NSMinX(card.frame) + rowMargin, line,
                                            card.frame.size.width - 2 * rowMargin, 1),
                                 NSCompositingOperationSourceOver);
    }
}

class FormElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        const double width = proposal.width.value_or(400);
        return {.width = width, .height = proposal.height.value_or(400)};
    }

  protected:
    Owned<NSView*> makeView() override {
        document_ = Owned<PelistraContainerView*>::adopt(
            [[PelistraContainerView alloc] initWithFrame:NSZeroRect]);
        const auto scroll =
            Owned<NSScrollView*>::adopt([[NSScrollView alloc] initWithFrame:NSZeroRect]);
        [scroll.get() setDrawsBackground:NO];
        [scroll.get() setHasVerticalScroller:YES];
        [scroll.get() setAutohidesScrollers:YES];
        [scroll.get() setBorderType:NSNoBorder];
        [scroll.get() setDocumentView:document_.get()];
        return Owned<NSView*>::share(scroll.get());
    }

    [[nodiscard]] NSView* contentView() const override { return document_.get(); }

    void apply() override {
        const auto& sections = node<ui::GroupedForm>().sections;
        while (titles_.size() < sections.size()) {
            titles_.push_back(makeLabel());
            [document_.get() addSubview:titles_.back().get()];
        }
        while (titles_.size() > sections.size()) {
            [titles_.back().get() removeFromSuperview];
            titles_.pop_back();
        }
        for (std::size_t i = 0; i < sections.size(); ++i) {
            if (utf8([title(i) stringValue]) != sections[i].title) {
                showText(title(i), ui::Text{.text = sections[i].title,
                                            .font = {.size = ui::TextStyle::Headline}});
            }
        }
    }

    void arrange(Size size) override {
        const double width = [scrollView() contentSize].width;
        arrangeRows(size, width);
        // A scroller that takes room of its own may have come or gone with that.
        if ([scrollView() contentSize].width != width) {
            arrangeRows(size, [scrollView() contentSize].width);
        }
    }

  private:
    [[nodiscard]] NSScrollView* scrollView() const { return static_cast<NSScrollView*>(view()); }
    [[nodiscard]] NSTextField* title(std::size_t index) const {
        return static_cast<NSTextField*>(titles_[index].get());
    }

    void arrangeRows(Size size, double width) {
        std::vector<Card> cards;
        double y = formMargin;
        std::size_t row = 0;
        const auto& sections = node<ui::GroupedForm>().sections;
        for (std::size_t i = 0; i < sections.size(); ++i) {
            y = placeTitle(i, y, width);
            cards.push_back(placeRows(row, sections[i].rows.size(), y, width));
            row += sections[i].rows.size();
            y = NSMaxY(cards.back().frame) + sectionDistance;
        }
        const NSSize whole =
            NSMakeSize(width, std::max(y - sectionDistance + formMargin, size.height));
        if (!NSEqualSizes([document_.get() frame].size, whole)) {
            [document_.get() setFrameSize:whole];
        }
        showCards(std::move(cards));
    }

    double placeTitle(std::size_t index, double y, double width) {
        const Size size = measureLabel(title(index), width - 2 * formMargin);
        [title(index) setFrame:NSMakeRect(formMargin + rowMargin, y, size.width, size.height)];
        return y + size.height + titleDistance;
    }

    Card placeRows(std::size_t first, std::size_t count, double top, double width) {
        const double inner = std::max(0.0, width - 2 * (formMargin + rowMargin));
        Card card;
        double y = top;
        for (std::size_t i = 0; i < count; ++i) {
            if (i > 0) {
                card.lines.push_back(y);
            }
            const Size size = child(first + i).measure({.width = inner, .height = std::nullopt});
            child(first + i).place(
                NSMakeRect(formMargin + rowMargin, y + rowPadding, size.width, size.height));
            y += size.height + 2 * rowPadding;
        }
        card.frame = NSMakeRect(formMargin, top, std::max(0.0, width - 2 * formMargin), y - top);
        return card;
    }

    void showCards(std::vector<Card> cards) {
        const auto isSame = [](const Card& one, const Card& other) {
            return NSEqualRects(one.frame, other.frame) && one.lines == other.lines;
        };
        if (std::ranges::equal(cards, cards_, isSame)) {
            return;
        }
        cards_ = cards;
        document_.get()->draw = [cards = std::move(cards)](NSRect) {
            for (const Card& card : cards) {
                drawCard(card);
            }
        };
        [document_.get() setNeedsDisplay:YES];
    }

    Owned<PelistraContainerView*> document_;
    std::vector<Owned<NSView*>> titles_;
    std::vector<Card> cards_;
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

} // namespace pelistra::appkit

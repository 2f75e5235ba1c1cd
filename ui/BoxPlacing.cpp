#include "ui/Box.h"

#include <algorithm>
#include <utility>

namespace pelistra::ui {

namespace {

Proposal all(const Area& area) {
    return {.width = area.width(), .height = area.height()};
}

// Where something of that length begins, for an alignment counted from 0 (begin) to 2 (end).
template <class Alignment>
double aligned(double begin, double room, double length, Alignment alignment) {
    return begin + ((room - length) * static_cast<int>(alignment) / 2);
}

// What a screen reader and a resting pointer are told, of what is not in a control.
Placed& say(Placed& placed, const Placing& placing) {
    if (placing.help != nullptr) {
        placed.help = *placing.help;
    }
    if (placing.accessibilityLabel != nullptr) {
        placed.accessibilityLabel = *placing.accessibilityLabel;
    }
    return placed;
}

// What a group contains may reach further than its area, under a title bar for one.
void cover(Placed& group) {
    for (const Placed& child : group.children) {
        const double left = std::min(group.frame.minX(), child.frame.minX());
        const double top = std::min(group.frame.minY(), child.frame.minY());
        const double right = std::max(group.frame.maxX(), child.frame.maxX());
        const double bottom = std::max(group.frame.maxY(), child.frame.maxY());
        group.frame = makeRect<ContentSpace>(left, top, right - left, bottom - top);
    }
}

} // namespace

template <class Block>
Placed& Box::add(const Area& area, Placing& placing, const Block& block) {
    Placed placed = {.view = view_, .key = placing.path, .frame = measuring_.snapped(area)};
    auto* const outside = std::exchange(placing.into, &placed.children);
    std::string path = std::exchange(placing.path, {});
    block();
    placing.path = std::move(path);
    placing.into = outside;
    placing.into->push_back(std::move(placed));
    return placing.into->back();
}

void Box::place(const Area& area, Placing& placing) {
    const auto content = [&] { contents_.front().place(area, placing); };
    const auto* const help = placing.help;
    const auto* const label = placing.accessibilityLabel;
    placing.help = help_ != nullptr ? help_ : help;
    placing.accessibilityLabel = accessibilityLabel_ != nullptr ? accessibilityLabel_ : label;
    if (alert_ != nullptr) {
        placing.alert = *alert_;
    }
    const auto length = placing.path.size();
    placing.path += step_;
    std::visit(Overloaded{
        [&](const Spacer&) {},
        [&](const Button& button) { placeButton(button, area, placing); },
        [&](const Toggle&) { placeToggle(area, placing); },
        [&](const HStack& stack) {
            placeStack(stack.spacing, static_cast<int>(stack.alignment), area, placing);
        },
        [&](const VStack& stack) {
            placeStack(stack.spacing, static_cast<int>(stack.alignment), area, placing);
        },
        [&](const ZStack&) {
            for (Box& box : contents_) {
                placeCentred(box, area, placing);
            }
        },
        [&](const HorizontalScroll&) { placeScroll(area, placing); },
        [&](const GroupedForm& form) { placeForm(form, area, placing); },
        [&](const Padding& padding) {
            contents_.front().place(within(area, padding.edges), placing);
        },
        [&](const Frame& frame) { placeFrame(frame.limits, area, placing); },
        [&](const Background& node) { placeBackground(node, area, placing); },
        [&](const Overlay&) {
            content();
            placeCentred(contents_.back(), area, placing);
        },
        [&]<class Group>(const Group& group)
            requires requires { group.content; }
        { cover(add(area, placing, content)); },
        [&](const Text&) { say(add(area, placing, [] {}), placing); },
        [&](const auto& /*leaf*/) { add(area, placing, [] {}); },
        },
        view_.node().kind);
    placing.path.resize(length);
    placing.help = help;
    placing.accessibilityLabel = label;
}

template <class Block>
Placed& Box::addControl(const Area& area, Placing& placing, const Block& label) {
    const auto* const help = std::exchange(placing.help, nullptr);
    const auto* const name = std::exchange(placing.accessibilityLabel, nullptr);
    Placed& placed = add(area, placing, label);
    placing.help = help;
    placing.accessibilityLabel = name;
    placed.isFormRow = isFormRow_;
    return say(placed, placing);
}

void Box::placeAligned(Box& box, const Size& size, const Area& area, const Alignment& alignment,
                       Placing& placing) const {
    const double x = aligned(area.minX(), area.width(), size.width, alignment.horizontal);
    const double y = aligned(area.minY(), area.height(), size.height, alignment.vertical);
    box.place(measuring_.snapped(makeRect<ContentSpace>(x, y, size.width, size.height)), placing);
}

void Box::placeCentred(Box& box, const Area& area, Placing& placing) const {
    placeAligned(box, box.measure(all(area)), area, {}, placing);
}

void Box::placeStack(double spacing, int alignment, const Area& area, Placing& placing) {
    const auto sizes = stacked(spacing, all(area));
    const bool isRow = view_.as<HStack>() != nullptr;
    double at = isRow ? area.minX() : area.minY();
    for (std::size_t place = 0; place < sizes.size(); ++place) {
        const Size& size = sizes[place];
        const double x = isRow ? at : aligned(area.minX(), area.width(), size.width, alignment);
        const double y = isRow ? aligned(area.minY(), area.height(), size.height, alignment) : at;
        contents_[place].place(
            measuring_.snapped(makeRect<ContentSpace>(x, y, size.width, size.height)), placing);
        at += (isRow ? size.width : size.height) + reckonable(spacing);
    }
}

void Box::placeBackground(const Background& background, const Area& area, Placing& placing) {
    const double top =
        background.ignoresSafeArea && area.minY() <= placing.coveredTop ? 0 : area.minY();
    placeCentred(contents_.back(),
                 makeRect<ContentSpace>(area.minX(), top, area.width(), area.maxY() - top),
                 placing);
    contents_.front().place(area, placing);
}

void Box::placeButton(const Button& button, const Area& area, Placing& placing) {
    const auto label = [&] {
        if (!contents_.empty()) {
            const Area inner = within(area, buttonInsets(button));
            const auto horizontal =
                isFormRow_ ? HorizontalAlignment::Leading : HorizontalAlignment::Center;
            placeAligned(contents_.front(), contents_.front().measure(all(inner)), inner,
                         {.horizontal = horizontal}, placing);
        }
    };
    addControl(area, placing, label);
}

void Box::placeToggle(const Area& area, Placing& placing) {
    const Measures& measures = measuring_.measures;
    const Area inner = isFormRow_ ? within(area, measures.form().rowInsets) : area;
    const SwitchMetrics metrics = measures.toggle();
    const double beside = metrics.size.width + metrics.distance;
    Box& text = contents_.front();
    const auto label = [&] {
        const Area left = within(inner, {.top = 0, .leading = 0, .bottom = 0, .trailing = beside});
        placeAligned(text, text.measure({.width = left.width()}), left,
                     {.horizontal = HorizontalAlignment::Leading}, placing);
    };
    addControl(area, placing, label).toggle = measuring_.snapped(makeRect<ContentSpace>(
        inner.maxX() - metrics.size.width, inner.midY() - (metrics.size.height / 2),
        metrics.size.width, metrics.size.height));
}

void Box::placeScroll(const Area& area, Placing& placing) {
    Box& content = contents_.front();
    const Size size = content.measure({.height = area.height()});
    const auto inside = [&] {
        placeAligned(content, size, makeRect<ContentSpace>(0, 0, size.width, area.height()), {},
                     placing);
    };
    add(area, placing, inside).content = {.width = size.width, .height = area.height()};
}

double Box::layOutForm(const GroupedForm& form, double width, Placing* placing,
                       std::vector<Card>& cards) {
    const FormMetrics metrics = measuring_.measures.form();
    const double room = std::max(0.0, width - across(metrics.margins));
    const double column = std::min(room, metrics.widestCard);
    const double left = metrics.margins.leading + measuring_.snapped((room - column) / 2);
    const auto put = [&](Box& box, double x, double y, double widest) {
        const Size size = box.measure({.width = std::max(0.0, widest)});
        if (placing != nullptr) {
            box.place(measuring_.snapped(makeRect<ContentSpace>(x, y, size.width, size.height)),
                      *placing);
        }
        return size.height;
    };
    double at = metrics.margins.top;
    auto box = contents_.begin();
    for (const FormSection& section : form.sections) {
        at += &section == form.sections.data() ? 0 : metrics.sectionDistance;
        at += put(*box++, left + metrics.rowInsets.leading, at, column) + metrics.titleDistance;
        Card card = {.area = makeRect<ContentSpace>(left, at, column, 0), .lines = {}};
        for (std::size_t row = 0; row < section.rows.size(); ++row, ++box) {
            const Edges edges = box->isFormRow_ ? Edges() : metrics.rowInsets;
            if (row > 0) {
                card.lines.push_back(at);
            }
            at += edges.top;
            at += put(*box, left + edges.leading, at, column - across(edges)) + edges.bottom;
        }
        card.area.size.height = at - card.area.minY();
        cards.push_back(std::move(card));
    }
    return at + metrics.margins.bottom;
}

void Box::placeForm(const GroupedForm& form, const Area& area, Placing& placing) {
    std::vector<Card> cards;
    double width = area.width();
    if (layOutForm(form, width, nullptr, cards) > area.height()) {
        width = std::max(0.0, width - measuring_.measures.form().scrollerWidth);
    }
    cards.clear();
    double height = 0;
    Placed& placed = add(area, placing, [&] { height = layOutForm(form, width, &placing, cards); });
    placed.content = {.width = width, .height = height};
    placed.cards = std::move(cards);
}

} // namespace pelistra::ui

#include "platform/macos/views/Element.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace pelistra::appkit {

namespace {

constexpr double huge = 100000;

// A stack along either axis: "length" is along it, "breadth" across it.
class StackElement : public Element {
  public:
    StackElement(ElementContext& context, Axis stackAxis)
        : Element(context), stackAxis_(stackAxis) {}

    Size measure(const Proposal& proposal) override {
        const auto sizes = childSizes(proposal);
        double length = sizes.empty() ? 0 : spacing() * static_cast<double>(sizes.size() - 1);
        double breadth = 0;
        for (const Size& size : sizes) {
            length += lengthOf(size);
            breadth = std::max(breadth, breadthOf(size));
        }
        return sizeWith(length, breadth);
    }

  protected:
    [[nodiscard]] Axis childAxis() const override { return stackAxis_; }
    [[nodiscard]] virtual double spacing() const = 0;
    // Where a child lies across the stack: 0 at the leading side or the top, 1 at the other side.
    [[nodiscard]] virtual double position() const = 0;

    void arrange(Size size) override {
        const auto sizes = childSizes({.width = size.width, .height = size.height});
        double start = 0;
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const double across = (breadthOf(size) - breadthOf(sizes[i])) * position();
            const bool isRow = stackAxis_ == Axis::Horizontal;
            child(i).place(NSMakeRect(isRow ? start : across, isRow ? across : start,
                                      sizes[i].width, sizes[i].height));
            start += lengthOf(sizes[i]) + spacing();
        }
    }

  private:
    [[nodiscard]] double lengthOf(const Size& size) const {
        return stackAxis_ == Axis::Horizontal ? size.width : size.height;
    }
    [[nodiscard]] double breadthOf(const Size& size) const {
        return stackAxis_ == Axis::Horizontal ? size.height : size.width;
    }
    [[nodiscard]] Size sizeWith(double length, double breadth) const {
        return stackAxis_ == Axis::Horizontal ? Size{.width = length, .height = breadth}
                                              : Size{.width = breadth, .height = length};
    }
    [[nodiscard]] Proposal proposalWith(std::optional<double> length,
                                        std::optional<double> breadth) const {
        return stackAxis_ == Axis::Horizontal ? Proposal{.width = length, .height = breadth}
                                              : Proposal{.width = breadth, .height = length};
    }

    // The rigid children are served first, the flexible ones share what is left.
    [[nodiscard]] std::vector<Size> childSizes(const Proposal& proposal) const {
        const bool isRow = stackAxis_ == Axis::Horizontal;
        const auto length = isRow ? proposal.width : proposal.height;
        const auto breadth = isRow ? proposal.height : proposal.width;
        std::vector<Size> sizes(children().size());
        if (!length) {
            for (std::size_t i = 0; i < sizes.size(); ++i) {
                sizes[i] = child(i).measure(proposalWith(std::nullopt, breadth));
            }
            return sizes;
        }
        double left =
            *length - spacing() * static_cast<double>(sizes.empty() ? 0 : sizes.size() - 1);
        std::size_t waiting = sizes.size();
        for (const std::size_t i : byFlexibility(breadth)) {
            const double share = std::max(0.0, left / static_cast<double>(waiting--));
            sizes[i] = child(i).measure(proposalWith(share, breadth));
            left -= lengthOf(sizes[i]);
        }
        return sizes;
    }

    [[nodiscard]] std::vector<std::size_t>
    byFlexibility(const std::optional<double>& breadth) const {
        std::vector<double> flexibility;
        for (const auto& element : children()) {
            const double most = lengthOf(element->measure(proposalWith(huge, breadth)));
            const double least = lengthOf(element->measure(proposalWith(0, breadth)));
            flexibility.push_back(most - least);
        }
        std::vector<std::size_t> order(flexibility.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::ranges::sort(order, {}, [&](std::size_t i) { return std::pair(flexibility[i], i); });
        return order;
    }

    Axis stackAxis_;
};

class RowElement final : public StackElement {
  public:
    explicit RowElement(ElementContext& context) : StackElement(context, Axis::Horizontal) {}

  protected:
    [[nodiscard]] double spacing() const override { return node<ui::HStack>().spacing; }
    [[nodiscard]] double position() const override {
        switch (node<ui::HStack>().alignment) {
        case ui::VerticalAlignment::Top:
            return 0;
        case ui::VerticalAlignment::Bottom:
            return 1;
        case ui::VerticalAlignment::Center:
            break;
        }
        return 0.5;
    }
};

class ColumnElement final : public StackElement {
  public:
    explicit ColumnElement(ElementContext& context) : StackElement(context, Axis::Vertical) {}

  protected:
    [[nodiscard]] double spacing() const override { return node<ui::VStack>().spacing; }
    [[nodiscard]] double position() const override {
        switch (node<ui::VStack>().alignment) {
        case ui::HorizontalAlignment::Leading:
            return 0;
        case ui::HorizontalAlignment::Trailing:
            return 1;
        case ui::HorizontalAlignment::Center:
            break;
        }
        return 0.5;
    }
};

class PileElement final : public Element {
  public:
    using Element::Element;

    Size measure(const Proposal& proposal) override {
        Size result;
        for (const auto& element : children()) {
            const Size size = element->measure(proposal);
            result.width = std::max(result.width, size.width);
            result.height = std::max(result.height, size.height);
        }
        return result;
    }

  protected:
    void arrange(Size size) override {
        for (const auto& element : children()) {
            const Size own = element->measure({.width = size.width, .height = size.height});
            element->place(NSMakeRect((size.width - own.width) / 2, (size.height - own.height) / 2,
                                      own.width, own.height));
        }
    }
};

} // namespace

std::unique_ptr<Element> makeStack(const ui::View& view, ElementContext& context) {
    if (view.as<ui::HStack>() != nullptr) {
        return std::make_unique<RowElement>(context);
    }
    if (view.as<ui::VStack>() != nullptr) {
        return std::make_unique<ColumnElement>(context);
    }
    if (view.as<ui::ZStack>() != nullptr) {
        return std::make_unique<PileElement>(context);
    }
    return nullptr;
}

} // namespace pelistra::appkit

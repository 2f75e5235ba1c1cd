// The bar's order file, and what happens to the order while items come, are dragged and go. Input:
// a line of single steps, then the file.

#include "menubar/OrderMemory.h"
#include "tests/fuzz/Check.h"

#include <algorithm>

namespace pelistra::fuzz {
namespace {

using menubar::ItemIdentity;
using menubar::OrderMemory;

void checkRoundTrip(const OrderMemory& memory) {
    const auto parsed = OrderMemory::parse(memory.text());
    check(parsed.damagedLines == 0);
    check(parsed.memory == memory);
}

void checkParsed(const OrderMemory::Parsed& parsed, const std::string& text) {
    const auto& order = parsed.memory.order();
    check(order.size() <= OrderMemory::capacity);
    check(order.size() + parsed.damagedLines <=
          static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1);
    for (auto item = order.begin(); item != order.end(); ++item) {
        check(std::find(std::next(item), order.end(), *item) == order.end());
        check(isClean(item->instance) && isClean(item->className));
    }
}

// Items in the bar, as the bar keeps them.
class Bar {
public:
    explicit Bar(OrderMemory memory) : memory_(std::move(memory)) {}

    void step(std::uint8_t what) {
        constexpr std::uint8_t kinds = 4;
        const std::uint8_t argument = what / kinds;
        switch (what % kinds) {
        case 0:
            dock(known(argument), std::nullopt);
            break;
        case 1:
            dock(known(argument), argument % 5);
            break;
        case 2:
            drag(argument);
            break;
        default:
            leave(argument);
        }
        checkOrder();
    }

private:
    // An item of the file, or a new one.
    [[nodiscard]] ItemIdentity known(std::size_t number) const {
        const auto& order = memory_.order();
        return number % 2 == 0 && number / 2 < order.size()
                   ? order[number / 2]
                   : ItemIdentity{.instance = "item",
                                  .className = std::string(number % 3, 'C'),
                                  .ordinal = static_cast<int>(number)};
    }
    void dock(const ItemIdentity& item, std::optional<std::uint32_t> preferred) {
        if (std::ranges::find(present_, item) != present_.end()) {
            return;
        }
        const std::size_t index = memory_.place(item, present_, preferred);
        check(index <= present_.size());
        present_.insert(present_.begin() + static_cast<std::ptrdiff_t>(index), item);
    }
    void drag(std::size_t argument) {
        if (present_.empty()) {
            return;
        }
        const std::size_t from = argument % present_.size();
        const std::size_t to = argument / 3 % present_.size();
        const ItemIdentity item = present_[from];
        present_.erase(present_.begin() + static_cast<std::ptrdiff_t>(from));
        present_.insert(present_.begin() + static_cast<std::ptrdiff_t>(to), item);
        memory_.move(present_, to);
    }
    void leave(std::size_t argument) {
        if (!present_.empty()) {
            present_.erase(present_.begin() +
                           static_cast<std::ptrdiff_t>(argument % present_.size()));
        }
    }
    // What is shown stands in the order that is remembered, and nothing is remembered twice.
    void checkOrder() const {
        const auto& order = memory_.order();
        auto from = order.begin();
        for (const ItemIdentity& item : present_) {
            from = std::find(from, order.end(), item);
            check(from != order.end());
            ++from;
            check(std::ranges::count(order, item) == 1);
        }
        checkRoundTrip(memory_);
    }

    OrderMemory memory_;
    std::vector<ItemIdentity> present_;
};

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    constexpr std::size_t mostSteps = 64;
    const std::string steps = input.line().substr(0, mostSteps);
    const std::string text = input.restAsText();
    const auto parsed = menubar::OrderMemory::parse(text);
    checkParsed(parsed, text);
    checkRoundTrip(parsed.memory);
    Bar bar(parsed.memory);
    for (const char each : steps) {
        bar.step(static_cast<std::uint8_t>(each));
    }
}

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::menubar {

// Who an item is, the same after a restart of its program: the two parts of its window class, and
// which of several items with that class it is, counted from 0.
struct ItemIdentity {
    std::string instance;
    std::string className;
    int ordinal = 0;

    bool operator==(const ItemIdentity&) const = default;
};

// The identity of an icon of the session bus: what it calls itself, and its program.
[[nodiscard]] ItemIdentity notifierIdentity(const std::string& id, const std::string& program);

// Identities are at most this many characters per part.
inline constexpr std::size_t identityCharacterLimit = 128;

// The order of all items that the bar has ever shown, left to right, those of programs that do not
// run now included.
class OrderMemory {
public:
    // More than this many are not remembered: the leftmost that do not run are forgotten first. All
    // that can be in the bar at once fit.
    static constexpr std::size_t capacity = 2'500;

    // The index among `present` (identities of the docked items, left to right) where an item
    // belongs. An icon of the session bus that is not remembered takes the place of the same
    // program's window, and the other way round. Any other one that is not remembered comes in at
    // the left end, or, with a preferred position, where that many items stand right of it; its
    // place is remembered from now on.
    std::size_t place(const ItemIdentity& item, std::span<const ItemIdentity> present,
                      std::optional<std::uint32_t> preferredPosition);

    // The user put `present[index]` where it now stands; `present` is in its new order.
    void move(std::span<const ItemIdentity> present, std::size_t index);

    [[nodiscard]] const std::vector<ItemIdentity>& order() const { return order_; }

    // The order as a text: a line that names this form and its version, then a line per item with
    // instance, class and ordinal, tabs between them.
    [[nodiscard]] std::string text() const;

    struct Parsed;
    // Reads what text() wrote, or what somebody made of it: lines that make no sense, repeated
    // identities and those beyond the capacity are left out and counted.
    [[nodiscard]] static Parsed parse(std::string_view text);

    bool operator==(const OrderMemory&) const = default;

private:
    using Iterator = std::vector<ItemIdentity>::iterator;

    Iterator find(const ItemIdentity& item);
    Iterator findKin(const ItemIdentity& item);
    void insertNew(const ItemIdentity& item, std::span<const ItemIdentity> present,
                   std::optional<std::uint32_t> preferredPosition);
    void forgetSurplus(const ItemIdentity& newest, std::span<const ItemIdentity> present);

    std::vector<ItemIdentity> order_;
};

struct OrderMemory::Parsed {
    OrderMemory memory;
    // How many lines made no sense.
    std::size_t damagedLines = 0;
};

} // namespace pelistra::menubar

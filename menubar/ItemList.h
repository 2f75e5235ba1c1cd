#pragma once

#include "menubar/DockedItem.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pelistra::menubar {

// The docked items, left to right, those without a slot included.
class ItemList {
public:
    using Items = std::vector<std::unique_ptr<DockedItem>>;

    [[nodiscard]] const Items& all() const { return items_; }
    [[nodiscard]] std::size_t size() const { return items_.size(); }
    // Null when the window is not docked.
    [[nodiscard]] DockedItem* find(xcb_window_t client) const;
    [[nodiscard]] DockedItem* findByContainer(xcb_window_t container) const;

    // Those that have a slot, left to right.
    [[nodiscard]] std::vector<DockedItem*> shown() const;
    [[nodiscard]] std::vector<ItemIdentity> identities() const;
    // How many items with a slot stand right of this one.
    [[nodiscard]] std::size_t shownRightOf(const DockedItem& item) const;
    // How many items stand to the right when exactly `shownCount` of those that want a slot do; all
    // when there are not so many.
    [[nodiscard]] std::uint32_t countForShown(std::uint32_t shownCount) const;
    // The lowest ordinal that no docked item of that window class has.
    [[nodiscard]] int freeOrdinal(const std::string& instance, const std::string& className) const;

    // Puts the item at that index among all items; the number of items puts it at the right end.
    void insert(std::size_t index, std::unique_ptr<DockedItem> item);
    // Takes the item out; null when it is not docked.
    std::unique_ptr<DockedItem> take(xcb_window_t client);
    // Where it stands among all items; the number of items when it is none of them.
    [[nodiscard]] std::size_t indexOf(const DockedItem& item) const;
    // Moves the item so that it stands at `index` among the items that have a slot.
    void moveAmongShown(const DockedItem& item, std::size_t index);

private:
    Items items_;
};

} // namespace pelistra::menubar

#include "menubar/ItemList.h"

#include <algorithm>

namespace pelistra::menubar {

DockedItem* ItemList::find(xcb_window_t client) const {
    const auto found =
        std::ranges::find(items_, client, [](const auto& item) { return item->client; });
    return found == items_.end() ? nullptr : found->get();
}

DockedItem* ItemList::findByContainer(xcb_window_t container) const {
    const auto found =
        std::ranges::find(items_, container, [](const auto& item) { return item->container.id(); });
    return found == items_.end() ? nullptr : found->get();
}

std::vector<DockedItem*> ItemList::shown() const {
    std::vector<DockedItem*> result;
    result.reserve(items_.size());
    for (const auto& item : items_) {
        if (item->hasSlot()) {
            result.push_back(item.get());
        }
    }
    return result;
}

std::vector<ItemIdentity> ItemList::identities() const {
    std::vector<ItemIdentity> result;
    result.reserve(items_.size());
    for (const auto& item : items_) {
        result.push_back(item->identity);
    }
    return result;
}

std::size_t ItemList::shownRightOf(const DockedItem& item) const {
    const auto begin = items_.begin() + static_cast<std::ptrdiff_t>(indexOf(item)) + 1;
    return static_cast<std::size_t>(
        std::count_if(begin, items_.end(), [](const auto& other) { return other->hasSlot(); }));
}

std::uint32_t ItemList::countForShown(std::uint32_t shownCount) const {
    std::uint32_t count = 0;
    for (auto item = items_.rbegin(); item != items_.rend() && shownCount > 0; ++item) {
        ++count;
        if ((*item)->wantsMapped) {
            --shownCount;
        }
    }
    return count;
}

int ItemList::freeOrdinal(const std::string& instance, const std::string& className) const {
    const auto isTaken = [&](int ordinal) {
        return std::ranges::any_of(items_, [&](const auto& item) {
            return item->identity.ordinal == ordinal && item->identity.instance == instance &&
                   item->identity.className == className;
        });
    };
    int ordinal = 0;
    while (isTaken(ordinal)) {
        ++ordinal;
    }
    return ordinal;
}

void ItemList::insert(std::size_t index, std::unique_ptr<DockedItem> item) {
    items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
}

std::unique_ptr<DockedItem> ItemList::take(xcb_window_t client) {
    const auto found =
        std::ranges::find(items_, client, [](const auto& item) { return item->client; });
    if (found == items_.end()) {
        return nullptr;
    }
    std::unique_ptr<DockedItem> item = std::move(*found);
    items_.erase(found);
    return item;
}

std::size_t ItemList::indexOf(const DockedItem& item) const {
    const auto found =
        std::ranges::find(items_, &item, [](const auto& other) { return other.get(); });
    return static_cast<std::size_t>(found - items_.begin());
}

void ItemList::moveAmongShown(const DockedItem& item, std::size_t index) {
    std::unique_ptr<DockedItem> moved = take(item.client);
    if (moved == nullptr) {
        return;
    }
    const std::vector<DockedItem*> others = shown();
    const std::size_t target = index < others.size() ? indexOf(*others[index]) : items_.size();
    insert(target, std::move(moved));
}

} // namespace pelistra::menubar

#include "menubar/OrderMemory.h"

#include "menubar/ForeignText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace pelistra::menubar {

namespace {

// The first line of the file: what it is and the version of its form.
constexpr std::string_view heading = "pelistra-menubar-order 1";
constexpr int greatestOrdinal = 9999;
constexpr std::size_t fieldsPerLine = 3;

// What the class of an icon of the session bus begins with; its program's name follows. No window
// calls itself so.
constexpr std::string_view notifierClass = "StatusNotifierItem ";

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isSameName(std::string_view first, std::string_view second) {
    return !first.empty() && std::ranges::equal(first, second, {}, lower, lower);
}

// Whether one is an icon of the session bus and the other a window of what seems to be the same
// program.
bool isKin(const ItemIdentity& first, const ItemIdentity& second) {
    const bool firstIsNotifier = first.className.starts_with(notifierClass);
    if (firstIsNotifier == second.className.starts_with(notifierClass)) {
        return false;
    }
    const ItemIdentity& notifier = firstIsNotifier ? first : second;
    const ItemIdentity& window = firstIsNotifier ? second : first;
    const std::string_view program =
        std::string_view(notifier.className).substr(notifierClass.size());
    return isSameName(notifier.instance, window.instance) ||
           isSameName(notifier.instance, window.className) ||
           isSameName(program, window.instance) || isSameName(program, window.className);
}

bool contains(std::span<const ItemIdentity> items, const ItemIdentity& item) {
    return std::ranges::find(items, item) != items.end();
}

// Tabs separate fields and newlines items; identities hold neither, being clean text.
std::string lineOf(const ItemIdentity& item) {
    return item.instance + '\t' + item.className + '\t' + std::to_string(item.ordinal) + '\n';
}

std::optional<std::string> readField(std::string_view field) {
    std::string clean = cleanText(field, identityCharacterLimit);
    if (clean != field) {
        return std::nullopt;
    }
    return clean;
}

std::optional<int> readOrdinal(std::string_view field) {
    int ordinal = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), ordinal);
    if (error != std::errc() || end != field.data() + field.size() || ordinal < 0 ||
        ordinal > greatestOrdinal) {
        return std::nullopt;
    }
    return ordinal;
}

std::optional<ItemIdentity> readLine(std::string_view line) {
    std::array<std::string_view, fieldsPerLine> fields;
    for (std::size_t i = 0; i + 1 < fields.size(); ++i) {
        const std::size_t tab = line.find('\t');
        if (tab == std::string_view::npos) {
            return std::nullopt;
        }
        fields[i] = line.substr(0, tab);
        line.remove_prefix(tab + 1);
    }
    fields.back() = line;
    const std::optional<std::string> instance = readField(fields[0]);
    const std::optional<std::string> className = readField(fields[1]);
    const std::optional<int> ordinal = readOrdinal(fields[2]);
    if (!instance || !className || !ordinal) {
        return std::nullopt;
    }
    return ItemIdentity{.instance = *instance, .className = *className, .ordinal = *ordinal};
}

} // namespace

ItemIdentity notifierIdentity(const std::string& id, const std::string& program) {
    return {.instance = id,
            .className = cleanText(std::string(notifierClass) + program, identityCharacterLimit),
            .ordinal = 0};
}

OrderMemory::Iterator OrderMemory::find(const ItemIdentity& item) {
    return std::ranges::find(order_, item);
}

OrderMemory::Iterator OrderMemory::findKin(const ItemIdentity& item) {
    return std::ranges::find_if(order_,
                                [&](const ItemIdentity& other) { return isKin(item, other); });
}

std::size_t OrderMemory::place(const ItemIdentity& item, std::span<const ItemIdentity> present,
                               std::optional<std::uint32_t> preferredPosition) {
    if (find(item) != order_.end()) {
        // It has its place.
    } else if (const auto kin = findKin(item); kin == order_.end()) {
        insertNew(item, present, preferredPosition);
        forgetSurplus(item, present);
    } else if (contains(present, *kin)) {
        order_.insert(kin, item);
    } else {
        *kin = item;
    }
    // Left of every present item that is remembered right of this one. They stand in the remembered
    // order, except for one that the user holds at this moment.
    const auto remembered = find(item);
    const auto isRight = [&](const ItemIdentity& other) {
        return std::find(remembered, order_.end(), other) != order_.end();
    };
    return static_cast<std::size_t>(std::ranges::find_if(present, isRight) - present.begin());
}

void OrderMemory::insertNew(const ItemIdentity& item, std::span<const ItemIdentity> present,
                            std::optional<std::uint32_t> preferredPosition) {
    const std::size_t toTheRight = preferredPosition
                                       ? std::min<std::size_t>(*preferredPosition, present.size())
                                       : present.size();
    if (toTheRight == 0 && preferredPosition) {
        order_.push_back(item);
        return;
    }
    if (toTheRight == present.size()) {
        order_.insert(order_.begin(), item);
        return;
    }
    order_.insert(find(present[present.size() - toTheRight]), item);
}

void OrderMemory::forgetSurplus(const ItemIdentity& newest, std::span<const ItemIdentity> present) {
    for (auto item = order_.begin(); order_.size() > capacity && item != order_.end();) {
        const bool needed = *item == newest || contains(present, *item);
        item = needed ? std::next(item) : order_.erase(item);
    }
}

void OrderMemory::move(std::span<const ItemIdentity> present, std::size_t index) {
    std::erase(order_, present[index]);
    if (index + 1 < present.size()) {
        order_.insert(find(present[index + 1]), present[index]);
        return;
    }
    const auto place = index == 0 ? order_.end() : find(present[index - 1]);
    order_.insert(place == order_.end() ? place : std::next(place), present[index]);
}

std::string OrderMemory::text() const {
    std::string result(heading);
    result.push_back('\n');
    for (const ItemIdentity& item : order_) {
        result += lineOf(item);
    }
    return result;
}

OrderMemory::Parsed OrderMemory::parse(std::string_view text) {
    Parsed result;
    bool first = true;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (std::exchange(first, false) && line == heading) {
            continue;
        }
        const std::optional<ItemIdentity> item = readLine(line);
        if (!item || contains(result.memory.order_, *item) ||
            result.memory.order_.size() == capacity) {
            ++result.damagedLines;
            continue;
        }
        result.memory.order_.push_back(*item);
    }
    return result;
}

} // namespace pelistra::menubar

#pragma once

#include "platform/WindowList.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace pelistra {

// A map from window ids in one piece of memory: looking at ten thousand windows every two seconds
// must not cost an allocation each. It only grows, up to the number of ids that it was made for.
template <class Value>
class WindowIdMap {
public:
    explicit WindowIdMap(std::size_t expected)
        : slots_(std::bit_ceil(2 * expected + 2)),
          shift_(hashBits - static_cast<unsigned>(std::bit_width(slots_.size() - 1))) {}

    // Where the id's value is, after putting the given one there if there was none; and whether
    // that was so.
    std::pair<Value*, bool> emplace(WindowId id, Value value) {
        Slot& slot = slots_[slotOf(id)];
        const bool isNew = !slot.used;
        if (isNew) {
            slot = {.id = id, .used = true, .value = std::move(value)};
        }
        return {&slot.value, isNew};
    }

    // Null when there is none.
    [[nodiscard]] Value* find(WindowId id) {
        Slot& slot = slots_[slotOf(id)];
        return slot.used ? &slot.value : nullptr;
    }

private:
    struct Slot {
        WindowId id = 0;
        bool used = false;
        Value value = {};
    };

    static constexpr unsigned hashBits = 64;

    // The slot of the id, or the free one where it would be. Half of the slots stay free, so there
    // always is one.
    [[nodiscard]] std::size_t slotOf(WindowId id) const {
        // Ids mostly count up; multiplying by 2^64 / golden ratio spreads them over the high bits.
        constexpr std::uint64_t spread = 0x9e3779b97f4a7c15;
        std::size_t slot = (spread * id) >> shift_;
        while (slots_[slot].used && slots_[slot].id != id) {
            slot = (slot + 1) & (slots_.size() - 1);
        }
        return slot;
    }

    std::vector<Slot> slots_;
    unsigned shift_;
};

} // namespace pelistra

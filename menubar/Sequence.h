#pragma once

#include <cstdint>

namespace pelistra::menubar {

// Whether a request of ours was sent with the other or after it, by their sequence numbers, which
// wrap around. Of an event: whether the server had handled the other by then.
[[nodiscard]] constexpr bool isSince(std::uint32_t sequence, std::uint32_t other) {
    return static_cast<std::int32_t>(sequence - other) >= 0;
}

} // namespace pelistra::menubar

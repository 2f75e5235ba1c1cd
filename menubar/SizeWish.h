#pragma once

#include "menubar/Metrics.h"

#include <cstdint>
#include <optional>
#include <span>

namespace pelistra::menubar {

// What width an item wants, and what width it gets.

struct PixelSize {
    int width = 0;
    int height = 0;

    bool operator==(const PixelSize&) const = default;
};

enum class WishSource {
    // Neither hints nor a resize request: a square slot.
    None,
    SizeHints,
    ResizeRequest,
};

struct SizeWish {
    WishSource source = WishSource::None;
    PixelSize size;
    // The item measures itself in the bar's own terms (it carries a preferred position): its width
    // is taken as it is. Other programs describe a picture, not a slot, and get a square one unless
    // they clearly want to be wide or narrow.
    bool exact = false;

    bool operator==(const SizeWish&) const = default;
};

// The minimum size, else the base size, of a WM_NORMAL_HINTS property (its words as on the server);
// empty when it names neither or is malformed. Sizes are kept within 0 to 65535.
[[nodiscard]] std::optional<PixelSize> sizeFromHints(std::span<const std::uint32_t> words);

// The width granted, in device pixels: 1 to 10,000 points.
[[nodiscard]] int grantedWidth(const SizeWish& wish, const Metrics& metrics);

} // namespace pelistra::menubar

#pragma once

#include "packaging/macos/icon/Drawing.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pelistra::icon {

using Bytes = std::vector<std::uint8_t>;

// The picture as a PNG file.
[[nodiscard]] Bytes pngOf(const Picture& picture);

// An icon file with a picture for every size that the system shows, 16 to 1024 pixels.
[[nodiscard]] Bytes icnsFile();

} // namespace pelistra::icon

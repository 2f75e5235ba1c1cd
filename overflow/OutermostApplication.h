#pragma once

#include "platform/FileUrl.h"

#include <optional>

namespace pelistra {

// The outermost application bundle on the URL's path: the component nearest the root whose
// extension is "app" in any case, the URL itself included. Empty when there is none, and for a path
// that is empty or not absolute. The path is standardised first by its text alone: doubled and
// trailing slashes and "." go, ".." takes the component before it with it.
[[nodiscard]] std::optional<FileUrl> outermostApplicationURL(const std::optional<FileUrl>& url);

} // namespace pelistra

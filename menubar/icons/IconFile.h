#pragma once

#include "menubar/Artwork.h"
#include "menubar/icons/IconRequest.h"

#include <filesystem>

namespace pelistra::menubar {

// Reads a picture from a file that some program has named, fitted into the request's square and,
// if it is a symbolic one, in the request's colours. An empty image when it is no picture, no file
// like any other, or larger than an icon has reason to be.
[[nodiscard]] ArgbImage readIconFile(const std::filesystem::path& path, const IconRequest& request);

} // namespace pelistra::menubar

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pelistra::testing {

enum class Layer {
    // Standard library, other core files, the seam.
    Core,
    // Standard library and the seam itself.
    Seam,
};

// The include directives of a source text that its layer does not allow, as they stand there. All
// headers but those of the C++ library are foreign: of toolkits, X11, operating systems, C.
[[nodiscard]] std::vector<std::string> foreignIncludes(const std::string& sourceText, Layer layer);

// All foreign includes of the core and of the seam below the tree's top, as "file: directive". The
// entry points (app/main*) may include the front end.
[[nodiscard]] std::vector<std::string> foreignIncludesOfTree(const std::filesystem::path& top);

} // namespace pelistra::testing

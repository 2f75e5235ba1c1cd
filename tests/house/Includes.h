#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pelistra::testing {

enum class Layer {
    // Standard library, other core files, the seam, the general tools.
    Core,
    // Standard library, the seam itself, the general tools.
    Seam,
    // Standard library and the general tools themselves.
    Base,
};

// The include directives of a source text that its layer does not allow, as they stand there. All
// headers but those of the C++ library are foreign: of toolkits, X11, operating systems, C.
[[nodiscard]] std::vector<std::string> foreignIncludes(const std::string& sourceText, Layer layer);

// All foreign includes of the core, the seam and the general tools below the tree's top, as "file:
// directive". The entry points (app/main*) may include the front end.
[[nodiscard]] std::vector<std::string> foreignIncludesOfTree(const std::filesystem::path& top);

} // namespace pelistra::testing

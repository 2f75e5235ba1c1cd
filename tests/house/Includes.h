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

// The include directives of a source text that its layer does not allow, as they stand there. A
// header counts as standard when ISO C++20 names it, so every toolkit, X11, operating-system or
// Apple header is foreign without being listed.
[[nodiscard]] std::vector<std::string> foreignIncludes(const std::string& sourceText, Layer layer);

// All foreign includes of the core and of the seam below the tree's top, as "file: directive". The
// entry points (app/main*) may include the front end.
[[nodiscard]] std::vector<std::string> foreignIncludesOfTree(const std::filesystem::path& top);

} // namespace pelistra::testing

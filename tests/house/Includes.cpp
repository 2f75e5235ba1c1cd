#include "tests/house/Includes.h"

#include "tests/house/Sources.h"

#include <algorithm>
#include <regex>

namespace pelistra::testing {

namespace {

// Only the standard library has headers without an extension, a folder and a capital letter.
bool isStandardHeader(const std::string& header) {
    static const std::regex name("[a-z_]+");
    return std::regex_match(header, name);
}

// "platform/Name.h": the seam, not one of the front ends in the folders below it.
bool isSeamHeader(const std::string& header) {
    return header.starts_with("platform/") && std::ranges::count(header, '/') == 1;
}

bool isCoreHeader(const std::string& header) {
    return std::ranges::any_of(
        coreFolders(), [&](const std::string& folder) { return header.starts_with(folder + "/"); });
}

bool isAllowed(const std::string& opening, const std::string& header, Layer layer) {
    if (opening == "<") {
        return isStandardHeader(header);
    }
    return header.starts_with("base/") || (layer != Layer::Base && isSeamHeader(header)) ||
           (layer == Layer::Core && isCoreHeader(header));
}

void check(const std::filesystem::path& file, Layer layer, std::vector<std::string>& found) {
    for (const std::string& directive : foreignIncludes(contentOf(file), layer)) {
        found.push_back(file.string() + ": " + directive);
    }
}

} // namespace

std::vector<std::string> foreignIncludes(const std::string& sourceText, Layer layer) {
    static const std::regex directive(R"(^\s*#\s*(?:include|include_next|import)\b\s*(.*)$)");
    static const std::regex target(R"re(^([<"])([^>"]+)[>"].*$)re");
    std::vector<std::string> foreign;
    for (const std::string& line : linesOf(sourceText)) {
        std::smatch whole;
        if (!std::regex_match(line, whole, directive)) {
            continue;
        }
        const std::string rest = whole[1];
        std::smatch parts;
        // What a macro includes cannot be read from the text, so it is not allowed either.
        if (!std::regex_match(rest, parts, target) || !isAllowed(parts[1], parts[2], layer)) {
            foreign.push_back(line);
        }
    }
    return foreign;
}

std::vector<std::string> foreignIncludesOfTree(const std::filesystem::path& top) {
    std::vector<std::string> found;
    for (const std::string& folder : coreFolders()) {
        for (const std::filesystem::path& file : sourcesBelow(top / folder)) {
            const bool isEntryPoint =
                folder == "app" && file.filename().string().starts_with("main");
            if (!isEntryPoint) {
                check(file, Layer::Core, found);
            }
        }
    }
    for (const std::filesystem::path& file : sourcesBelow(top / "platform")) {
        if (file.parent_path() == top / "platform") {
            check(file, Layer::Seam, found);
        }
    }
    for (const std::filesystem::path& file : sourcesBelow(top / "base")) {
        check(file, Layer::Base, found);
    }
    return found;
}

} // namespace pelistra::testing

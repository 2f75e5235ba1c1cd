#include "tests/house/Includes.h"

#include "tests/house/Sources.h"

#include <algorithm>
#include <regex>
#include <set>
#include <string_view>

namespace pelistra::testing {

namespace {

const std::set<std::string>& standardHeaders() {
    static const std::set<std::string> headers{"algorithm",
                                               "any",
                                               "array",
                                               "atomic",
                                               "barrier",
                                               "bit",
                                               "bitset",
                                               "cassert",
                                               "cctype",
                                               "cerrno",
                                               "cfenv",
                                               "cfloat",
                                               "charconv",
                                               "chrono",
                                               "cinttypes",
                                               "climits",
                                               "clocale",
                                               "cmath",
                                               "codecvt",
                                               "compare",
                                               "complex",
                                               "concepts",
                                               "condition_variable",
                                               "coroutine",
                                               "csetjmp",
                                               "csignal",
                                               "cstdarg",
                                               "cstddef",
                                               "cstdint",
                                               "cstdio",
                                               "cstdlib",
                                               "cstring",
                                               "ctime",
                                               "cuchar",
                                               "cwchar",
                                               "cwctype",
                                               "deque",
                                               "exception",
                                               "execution",
                                               "filesystem",
                                               "format",
                                               "forward_list",
                                               "fstream",
                                               "functional",
                                               "future",
                                               "initializer_list",
                                               "iomanip",
                                               "ios",
                                               "iosfwd",
                                               "iostream",
                                               "istream",
                                               "iterator",
                                               "latch",
                                               "limits",
                                               "list",
                                               "locale",
                                               "map",
                                               "memory",
                                               "memory_resource",
                                               "mutex",
                                               "new",
                                               "numbers",
                                               "numeric",
                                               "optional",
                                               "ostream",
                                               "queue",
                                               "random",
                                               "ranges",
                                               "ratio",
                                               "regex",
                                               "scoped_allocator",
                                               "semaphore",
                                               "set",
                                               "shared_mutex",
                                               "source_location",
                                               "span",
                                               "sstream",
                                               "stack",
                                               "stdexcept",
                                               "stop_token",
                                               "streambuf",
                                               "string",
                                               "string_view",
                                               "strstream",
                                               "syncstream",
                                               "system_error",
                                               "thread",
                                               "tuple",
                                               "type_traits",
                                               "typeindex",
                                               "typeinfo",
                                               "unordered_map",
                                               "unordered_set",
                                               "utility",
                                               "valarray",
                                               "variant",
                                               "vector",
                                               "version"};
    return headers;
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
        return standardHeaders().contains(header);
    }
    return isSeamHeader(header) || (layer == Layer::Core && isCoreHeader(header));
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
    return found;
}

} // namespace pelistra::testing

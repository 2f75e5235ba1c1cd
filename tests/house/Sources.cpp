#include "tests/house/Sources.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace pelistra::testing {

const std::vector<std::string>& coreFolders() {
    static const std::vector<std::string> folders{"app", "statusbar", "overflow", "secondrow",
                                                  "ui"};
    return folders;
}

std::vector<std::filesystem::path> sourcesBelow(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::is_directory(folder)) {
        return files;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() && (extension == ".h" || extension == ".cpp")) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

std::string contentOf(const std::filesystem::path& file) {
    const std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace pelistra::testing

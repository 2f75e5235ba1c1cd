#include "tests/house/Packages.h"

#include "tests/house/Sources.h"

#include <regex>

namespace pelistra::testing {

std::vector<std::string> faultsOfPackageList(const std::string& text) {
    static const std::regex name("[a-z0-9][a-z0-9+.-]+");
    std::vector<std::string> faults;
    std::string previous;
    for (const std::string& line : linesOf(text)) {
        if (!std::regex_match(line, name)) {
            faults.push_back("no package name: " + line);
        } else if (line == previous) {
            faults.push_back("twice: " + line);
        } else if (line < previous) {
            faults.push_back("out of order: " + line);
        }
        previous = line;
    }
    if (previous.empty()) {
        faults.emplace_back("empty");
    }
    return faults;
}

} // namespace pelistra::testing

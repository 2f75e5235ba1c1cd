#include "tests/house/Documentation.h"

#include "tests/house/Sources.h"

#include <iterator>
#include <regex>

namespace pelistra::testing {

std::set<std::string> switchesIn(const std::string& text) {
    static const std::regex pattern(R"((?:^|[^-\w])(--[a-z][a-z0-9-]*))");
    std::set<std::string> switches;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern);
         match != std::sregex_iterator(); ++match) {
        switches.insert((*match)[1]);
    }
    return switches;
}

std::set<std::string> switchesInReadme(const std::string& text) {
    static const std::regex foreignCall(
        R"(^.*\b(cmake|ctest|apt-get|apt|git|ninja|codesign|xcode-select)\s.*$)");
    std::string own;
    for (const std::string& line : linesOf(text)) {
        if (!std::regex_match(line, foreignCall)) {
            own += line + "\n";
        }
    }
    return switchesIn(own);
}

std::vector<std::string> localLinksIn(const std::string& markdown) {
    static const std::regex pattern(R"(\]\(([^)#\s]+)[^)]*\))");
    std::vector<std::string> links;
    for (std::sregex_iterator match(markdown.begin(), markdown.end(), pattern);
         match != std::sregex_iterator(); ++match) {
        const std::string target = (*match)[1];
        if (target.find("://") == std::string::npos) {
            links.push_back(target);
        }
    }
    return links;
}

} // namespace pelistra::testing

#pragma once

#include <set>
#include <string>
#include <vector>

namespace pelistra::testing {

// The switches ("--like-this") that a text names.
[[nodiscard]] std::set<std::string> switchesIn(const std::string& text);

// The same for a README: lines that call somebody else's program (cmake, ctest, apt-get, git) are
// left out.
[[nodiscard]] std::set<std::string> switchesInReadme(const std::string& text);

// The targets of a Markdown text's links and pictures that point into the tree, without their
// anchors; links to other hosts are left out.
[[nodiscard]] std::vector<std::string> localLinksIn(const std::string& markdown);

} // namespace pelistra::testing

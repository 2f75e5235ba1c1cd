#include "tests/packaging/PackageRoot.h"

#include <algorithm>
#include <fstream>

namespace pelistra::testing {

namespace fs = std::filesystem;

namespace {

constexpr auto database = "var/lib/dpkg";

std::vector<std::string> entriesBelow(const fs::path& root, bool withFolders) {
    std::vector<std::string> entries;
    for (auto entry = fs::recursive_directory_iterator(root);
         entry != fs::recursive_directory_iterator(); ++entry) {
        const fs::path relative = entry->path().lexically_relative(root);
        if (relative == database) {
            entry.disable_recursion_pending();
        }
        if (withFolders || !entry->is_directory()) {
            entries.push_back(relative.string());
        }
    }
    std::ranges::sort(entries);
    return entries;
}

} // namespace

PackageRoot::PackageRoot() {
    const fs::path dpkgFolder = path() / database;
    fs::create_directories(dpkgFolder / "info");
    fs::create_directories(dpkgFolder / "updates");
    for (const char* file : {"status", "available"}) {
        const std::ofstream empty(dpkgFolder / file);
    }
}

// What it changes lies on the disk.
// NOLINTNEXTLINE(readability-make-member-function-const)
ToolRun PackageRoot::dpkg(const std::vector<std::string>& arguments) {
    // The last option counts: the settings of small containers leave manuals and documentation out.
    std::vector<std::string> command{
        "fakeroot",        "dpkg",          "--root=" + path().string(), "--log=/dev/null",
        "--force-depends", "--no-triggers", "--path-include=/*"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runTool(command);
}

ToolRun PackageRoot::install(const fs::path& package) {
    return dpkg({"--install", package.string()});
}

ToolRun PackageRoot::remove() {
    return dpkg({"--remove", "pelistra"});
}

ToolRun PackageRoot::purge() {
    return dpkg({"--purge", "pelistra"});
}

std::string PackageRoot::state() const {
    const ToolRun query =
        runTool({"dpkg-query", "--admindir=" + (path() / database).string(), "--show",
                 "--showformat=${db:Status-Status} ${Version}", "pelistra"});
    return query.succeeded() ? query.output : "";
}

std::vector<std::string> PackageRoot::content() const {
    return entriesBelow(path(), true);
}

std::vector<std::string> filesBelow(const fs::path& root) {
    return entriesBelow(root, false);
}

} // namespace pelistra::testing

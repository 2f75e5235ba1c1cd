#pragma once

#include "tests/desktop/harness/TemporaryFolder.h"
#include "tests/packaging/Tools.h"

#include <filesystem>
#include <string>
#include <vector>

namespace pelistra::testing {

// An empty system in a temporary folder, with a database of packages of its own. Nothing is done to
// this machine's packages, and no rights are needed.
class PackageRoot {
public:
    PackageRoot();

    // dpkg --install, --remove and --purge inside. Dependencies are not looked at: this root has
    // no other package.
    [[nodiscard]] ToolRun install(const std::filesystem::path& package);
    [[nodiscard]] ToolRun remove();
    [[nodiscard]] ToolRun purge();
    // dpkg with any other arguments.
    [[nodiscard]] ToolRun dpkg(const std::vector<std::string>& arguments);

    // "installed 0.1.0-1" and the like; empty when the database does not know the package.
    [[nodiscard]] std::string state() const;
    // Everything below the root but the database: files and folders, without leading slash, sorted.
    [[nodiscard]] std::vector<std::string> content() const;

    [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }

private:
    TemporaryFolder folder_;
};

// The files among them.
[[nodiscard]] std::vector<std::string> filesBelow(const std::filesystem::path& root);

} // namespace pelistra::testing

#pragma once

#include "tests/desktop/harness/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace pelistra::testing {

// The package's files without a database, and where they lie.
class UnpackedPackage {
public:
    // Throws std::runtime_error when dpkg-deb cannot unpack it.
    UnpackedPackage();

    [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }
    [[nodiscard]] std::filesystem::path bin() const { return path() / "usr/bin"; }
    [[nodiscard]] std::filesystem::path share() const { return path() / "usr/share"; }
    [[nodiscard]] std::filesystem::path desktopEntry(const std::string& program) const;
    [[nodiscard]] std::filesystem::path userUnit(const std::string& program) const;
    // One page for each language.
    [[nodiscard]] std::vector<std::filesystem::path> manuals(const std::string& program) const;
    [[nodiscard]] std::filesystem::path bashCompletion(const std::string& program) const;
    [[nodiscard]] std::filesystem::path zshCompletion(const std::string& program) const;

private:
    TemporaryFolder folder_;
};

// The content of a file that gzip has made.
[[nodiscard]] std::string uncompressed(const std::filesystem::path& file);

} // namespace pelistra::testing

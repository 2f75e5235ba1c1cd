#include "tests/packaging/UnpackedPackage.h"

#include "tests/packaging/Tools.h"

#include <stdexcept>

namespace pelistra::testing {

namespace fs = std::filesystem;

namespace {

std::string outputOf(const std::vector<std::string>& command) {
    const ToolRun run = runTool(command);
    if (!run.succeeded()) {
        throw std::runtime_error(command.front() + " failed: " + run.output);
    }
    return run.output;
}

} // namespace

UnpackedPackage::UnpackedPackage() {
    outputOf({"dpkg-deb", "--extract", packageUnderTest().string(), path().string()});
}

fs::path UnpackedPackage::desktopEntry(const std::string& program) const {
    return share() / "applications" / (program + ".desktop");
}

fs::path UnpackedPackage::userUnit(const std::string& program) const {
    return path() / "usr/lib/systemd/user" / (program + ".service");
}

std::vector<fs::path> UnpackedPackage::manuals(const std::string& program) const {
    const fs::path name = program + ".1.gz";
    return {share() / "man/man1" / name, share() / "man/zh/man1" / name};
}

fs::path UnpackedPackage::bashCompletion(const std::string& program) const {
    return share() / "bash-completion/completions" / program;
}

fs::path UnpackedPackage::zshCompletion(const std::string& program) const {
    return share() / "zsh/vendor-completions" / ("_" + program);
}

std::string uncompressed(const fs::path& file) {
    return outputOf({"gzip", "-dc", file.string()});
}

} // namespace pelistra::testing

#include "tests/faults/Mounts.h"
#include "tests/desktop/harness/FileContent.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <system_error>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

void refuse(const char* what) {
    throw NotPossibleHere(std::string(what) + ": " + std::strerror(errno));
}

// Makes this user the root of a namespace of its own, where mounts are allowed.
bool becomeRootOfOwn() {
    const std::string user = std::to_string(getuid());
    const std::string group = std::to_string(getgid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << " " << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << " " << group << " 1";
    return true;
}

std::map<std::filesystem::path, std::string> filesIn(const std::filesystem::path& folder) {
    std::map<std::filesystem::path, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files[entry.path()] = contentOf(entry.path());
        }
    }
    return files;
}

// False when it does not fit any more.
bool write(const std::filesystem::path& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary);
    file << content << std::flush;
    return file.good();
}

} // namespace

void enterPrivateMounts() {
    if (unshare(CLONE_NEWNS) == 0 || becomeRootOfOwn()) {
        // What is mounted here must not appear outside.
        static_cast<void>(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr));
    }
}

Mounted::Mounted(std::filesystem::path folder) : folder_(std::move(folder)) {}

Mounted::~Mounted() {
    // Programs may have files open there.
    umount2(folder_.c_str(), MNT_DETACH);
}

FullDisk::FullDisk(const std::filesystem::path& folder) : Mounted(folder) {
    std::filesystem::create_directories(folder);
    const auto files = filesIn(folder);
    if (mount("none", folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "size=64k,mode=0700") != 0) {
        refuse("no disk can be mounted");
    }
    for (const auto& [path, content] : files) {
        write(path, content);
    }
    constexpr std::size_t page = 4096;
    constexpr int morePagesThanThereAre = 64;
    bool fits = true;
    for (int number = 0; fits && number < morePagesThanThereAre; ++number) {
        fits = write(folder / ("filler" + std::to_string(number)), std::string(page, 'x'));
    }
    if (fits || write(folder / "probe", "one")) {
        throw std::runtime_error("the disk is not full");
    }
}

ReadOnly::ReadOnly(const std::filesystem::path& folder) : Mounted(folder) {
    std::filesystem::create_directories(folder);
    if (mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) != 0 ||
        mount(nullptr, folder.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
        refuse("nothing can be made read-only");
    }
    if (write(folder / "probe", "one")) {
        throw std::runtime_error("the folder is not read-only");
    }
}

} // namespace pelistra::testing

#pragma once

#include "platform/linux/programs/DesktopEntry.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::linux {

using DesktopEntryPtr = std::shared_ptr<const DesktopEntry>;

// Where desktop entries are looked for and in which language they are read.
struct DesktopEntryPlaces {
    // Folders called "applications", the most important one first.
    std::vector<std::filesystem::path> folders;
    // Empty: the user's.
    std::string locale = {};

    // As the environment says: XDG_DATA_HOME, XDG_DATA_DIRS.
    [[nodiscard]] static DesktopEntryPlaces ofEnvironment();
};

// The desktop entries of this machine. They are read when they are first needed and again when one
// of the folders has changed.
class DesktopEntries {
public:
    // However many files there are, no more than this are read, and no deeper.
    static constexpr int mostFiles = 10'000;
    static constexpr int deepestFolder = 4;

    explicit DesktopEntries(DesktopEntryPlaces places);

    // Each is null when there is no such entry. Hidden entries are never found.
    [[nodiscard]] DesktopEntryPtr withId(std::string_view id);
    // By StartupWMClass, or by an id that equals the class; upper and lower case are the same.
    [[nodiscard]] DesktopEntryPtr withWindowClass(std::string_view windowClass);
    // By the program that Exec starts, without its folder. An entry for menus comes first.
    [[nodiscard]] DesktopEntryPtr withProgram(std::string_view program);
    // By the file's path.
    [[nodiscard]] DesktopEntryPtr withFile(const std::filesystem::path& file);

private:
    using Index = std::map<std::string, DesktopEntryPtr, std::less<>>;

    void refresh();
    void load();
    void loadFolder(const std::filesystem::path& folder);
    void loadFile(const std::filesystem::path& folder, const std::filesystem::path& file);
    void addToIndexes(const DesktopEntryPtr& entry);
    [[nodiscard]] std::vector<std::filesystem::file_time_type> folderTimes() const;
    [[nodiscard]] static DesktopEntryPtr find(const Index& index, std::string_view key);

    DesktopEntryPlaces places_;
    std::vector<std::filesystem::file_time_type> times_;
    std::chrono::steady_clock::time_point nextCheck_;
    bool loaded_ = false;
    int files_ = 0;
    Index byId_;
    Index byWindowClass_;
    Index byLowerId_;
    Index byProgram_;
};

} // namespace pelistra::linux

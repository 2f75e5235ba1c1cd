#include "platform/linux/programs/DesktopEntries.h"

#include "platform/posix/PrivateFile.h"

#include <algorithm>

#include <glib.h>

namespace pelistra::linux {

namespace {

// How long a change of the folders may stay unnoticed.
constexpr std::chrono::seconds checkInterval{2};

std::string lower(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return result;
}

} // namespace

DesktopEntryPlaces DesktopEntryPlaces::ofEnvironment() {
    DesktopEntryPlaces places;
    const auto add = [&](const std::filesystem::path& folder) {
        // Relative folders are to be ignored.
        if (folder.is_absolute()) {
            places.folders.emplace_back(folder / "applications");
        }
    };
    add(g_get_user_data_dir());
    for (const char* const* folder = g_get_system_data_dirs(); *folder != nullptr; ++folder) {
        add(*folder);
    }
    return places;
}

DesktopEntries::DesktopEntries(DesktopEntryPlaces places) : places_(std::move(places)) {}

DesktopEntryPtr DesktopEntries::withId(std::string_view id) {
    refresh();
    return find(byId_, id);
}

DesktopEntryPtr DesktopEntries::withWindowClass(std::string_view windowClass) {
    refresh();
    const std::string key = lower(windowClass);
    const auto entry = find(byWindowClass_, key);
    return entry ? entry : find(byLowerId_, key);
}

DesktopEntryPtr DesktopEntries::withProgram(std::string_view program) {
    refresh();
    return find(byProgram_, program);
}

DesktopEntryPtr DesktopEntries::withFile(const std::filesystem::path& file) {
    refresh();
    const auto found = std::ranges::find_if(
        byId_, [&](const auto& pair) { return pair.second && pair.second->file == file; });
    return found == byId_.end() || found->second->hidden ? nullptr : found->second;
}

DesktopEntryPtr DesktopEntries::find(const Index& index, std::string_view key) {
    const auto found = key.empty() ? index.end() : index.find(key);
    return found == index.end() || found->second->hidden ? nullptr : found->second;
}

void DesktopEntries::refresh() {
    const auto now = std::chrono::steady_clock::now();
    if (loaded_ && now < nextCheck_) {
        return;
    }
    nextCheck_ = now + checkInterval;
    auto times = folderTimes();
    if (!loaded_ || times != times_) {
        times_ = std::move(times);
        load();
    }
}

std::vector<std::filesystem::file_time_type> DesktopEntries::folderTimes() const {
    std::vector<std::filesystem::file_time_type> times;
    for (const auto& folder : places_.folders) {
        std::error_code error;
        const auto time = std::filesystem::last_write_time(folder, error);
        times.push_back(error ? std::filesystem::file_time_type{} : time);
    }
    return times;
}

void DesktopEntries::load() {
    for (Index* index : {&byId_, &byWindowClass_, &byLowerId_, &byProgram_}) {
        index->clear();
    }
    files_ = 0;
    for (const auto& folder : places_.folders) {
        loadFolder(folder);
    }
    for (const bool displayed : {true, false}) {
        for (const auto& [id, entry] : byId_) {
            if (!entry->hidden && entry->noDisplay != displayed) {
                addToIndexes(entry);
            }
        }
    }
    loaded_ = true;
}

void DesktopEntries::loadFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::recursive_directory_iterator files(
        folder, std::filesystem::directory_options::skip_permission_denied, error);
    while (!error && files != std::filesystem::recursive_directory_iterator() &&
           files_ < mostFiles) {
        if (files.depth() >= deepestFolder) {
            files.disable_recursion_pending();
        }
        if (files->path().extension() == ".desktop") {
            loadFile(folder, files->path());
        }
        files.increment(error);
    }
}

void DesktopEntries::loadFile(const std::filesystem::path& folder,
                              const std::filesystem::path& file) {
    constexpr std::string_view extension = ".desktop";
    std::string id = file.lexically_relative(folder).string();
    id.resize(id.size() - extension.size());
    std::ranges::replace(id, '/', '-');
    if (byId_.contains(id)) {
        return;
    }
    ++files_;
    const auto text = posix::readFile(file, desktopEntryByteLimit);
    auto entry = text ? parseDesktopEntry(*text, places_.locale) : std::nullopt;
    if (entry) {
        entry->id = id;
        entry->file = file;
        byId_.emplace(std::move(id), std::make_shared<const DesktopEntry>(*std::move(entry)));
    }
}

void DesktopEntries::addToIndexes(const DesktopEntryPtr& entry) {
    const auto add = [&](Index& index, const std::string& key) {
        if (!key.empty()) {
            index.try_emplace(key, entry);
        }
    };
    add(byWindowClass_, lower(entry->startupWmClass));
    add(byLowerId_, lower(entry->id));
    // The last part of a reverse domain name is what such programs call their windows.
    add(byLowerId_, lower(std::string_view(entry->id).substr(entry->id.rfind('.') + 1)));
    add(byProgram_, programOf(*entry));
}

} // namespace pelistra::linux

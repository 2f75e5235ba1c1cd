#include "menubar/icons/IconTheme.h"

#include "platform/posix/Environment.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>
#include <memory>
#include <string_view>
#include <system_error>
#include <tuple>

#include <glib.h>

namespace pelistra::menubar {

namespace {

namespace fs = std::filesystem;

constexpr std::array extensions{".svg", ".png", ".xpm"};
// Everybody inherits from the first; the others help where no theme is set.
constexpr std::array lastThemes{"hicolor", "Adwaita", "breeze", "gnome"};
constexpr std::size_t mostThemes = 32;
constexpr std::string_view symbolicEnding = "-symbolic";

struct KeyFileDeleter {
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
    void operator()(char* text) const { g_free(text); }
    void operator()(char** list) const { g_strfreev(list); }
};
using KeyFilePtr = std::unique_ptr<GKeyFile, KeyFileDeleter>;
using ListPtr = std::unique_ptr<char*, KeyFileDeleter>;
using TextPtr = std::unique_ptr<char, KeyFileDeleter>;

std::vector<std::string> listIn(GKeyFile* file, const char* key) {
    std::vector<std::string> result;
    const ListPtr list(g_key_file_get_string_list(file, "Icon Theme", key, nullptr, nullptr));
    for (char** entry = list.get(); entry != nullptr && *entry != nullptr; ++entry) {
        result.emplace_back(*entry);
    }
    return result;
}

int numberIn(GKeyFile* file, const std::string& group, const char* key, int otherwise) {
    constexpr int most = 4096;
    const int number = g_key_file_get_integer(file, group.c_str(), key, nullptr);
    return number > 0 ? std::min(number, most) : otherwise;
}

bool isFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

std::optional<fs::path> fileNamed(const fs::path& folder, const std::string& name) {
    for (const char* const extension : extensions) {
        fs::path path = folder / (name + extension);
        if (isFile(path)) {
            return path;
        }
    }
    return std::nullopt;
}

// Themes and icons are named, not placed.
bool isName(std::string_view name) {
    return !name.empty() && name.find('/') == std::string_view::npos && name != "." && name != "..";
}

} // namespace

IconThemes::IconThemes() {
    const fs::path home = posix::environmentPath("HOME");
    const fs::path data = posix::environmentPath("XDG_DATA_HOME");
    if (!home.empty()) {
        bases_.push_back(home / ".icons");
    }
    if (!data.empty() || !home.empty()) {
        bases_.push_back((data.empty() ? home / ".local" / "share" : data) / "icons");
    }
    std::string folders = posix::environmentText("XDG_DATA_DIRS");
    if (folders.empty()) {
        folders = "/usr/local/share:/usr/share";
    }
    for (std::string_view rest = folders; !rest.empty();) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (const fs::path folder = rest.substr(0, end); folder.is_absolute()) {
            bases_.push_back(folder / "icons");
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    bases_.emplace_back("/usr/share/pixmaps");
}

IconThemes::Theme IconThemes::readTheme(const fs::path& index) {
    Theme theme;
    const KeyFilePtr file(g_key_file_new());
    g_key_file_set_list_separator(file.get(), ',');
    if (!isFile(index) ||
        g_key_file_load_from_file(file.get(), index.c_str(), G_KEY_FILE_NONE, nullptr) == 0) {
        return theme;
    }
    theme.inherits = listIn(file.get(), "Inherits");
    std::vector<std::string> folders = listIn(file.get(), "Directories");
    std::ranges::move(listIn(file.get(), "ScaledDirectories"), std::back_inserter(folders));
    for (const std::string& path : folders) {
        const int scale = numberIn(file.get(), path, "Scale", 1);
        const int size = numberIn(file.get(), path, "Size", 1);
        const TextPtr type(g_key_file_get_string(file.get(), path.c_str(), "Type", nullptr));
        const std::string_view kind = type ? type.get() : "Threshold";
        int least = size;
        int most = size;
        if (kind == "Scalable") {
            least = numberIn(file.get(), path, "MinSize", size);
            most = numberIn(file.get(), path, "MaxSize", size);
        } else if (kind == "Threshold") {
            const int threshold = numberIn(file.get(), path, "Threshold", 2);
            least = size - threshold;
            most = size + threshold;
        }
        theme.folders.push_back(
            {.path = path, .least = least * scale, .usual = size * scale, .most = most * scale});
    }
    return theme;
}

const IconThemes::Theme& IconThemes::themeNamed(const std::string& name) {
    const auto [entry, isNew] = themes_.try_emplace(name);
    if (isNew && isName(name)) {
        for (const fs::path& base : bases_) {
            const fs::path index = base / name / "index.theme";
            if (isFile(index)) {
                entry->second = readTheme(index);
                break;
            }
        }
    }
    return entry->second;
}

std::vector<std::string> IconThemes::chainFrom(const std::string& theme) {
    std::vector<std::string> chain;
    std::deque<std::string> ahead{theme};
    while (!ahead.empty() && chain.size() < mostThemes) {
        const std::string name = ahead.front();
        ahead.pop_front();
        if (!isName(name) || std::ranges::find(chain, name) != chain.end()) {
            continue;
        }
        chain.push_back(name);
        std::ranges::copy(themeNamed(name).inherits, std::back_inserter(ahead));
    }
    for (const char* const last : lastThemes) {
        std::erase(chain, last);
        chain.emplace_back(last);
    }
    return chain;
}

std::optional<fs::path> IconThemes::findInTheme(const std::string& name, int side,
                                                const std::string& theme,
                                                const std::vector<fs::path>& bases) {
    std::optional<fs::path> best;
    std::tuple<int, int> bestDistance;
    for (const Folder& folder : themeNamed(theme).folders) {
        const int beyond = std::max({folder.least - side, side - folder.most, 0});
        const std::tuple distance(beyond, std::abs(folder.usual - side));
        if (best && distance >= bestDistance) {
            continue;
        }
        for (const fs::path& base : bases) {
            if (auto file = fileNamed(base / theme / folder.path, name)) {
                best = std::move(file);
                bestDistance = distance;
                break;
            }
        }
    }
    return best;
}

std::optional<fs::path> IconThemes::findExactly(const std::string& name, int side,
                                                const std::string& theme, const fs::path& first) {
    std::vector<fs::path> bases = bases_;
    if (!first.empty()) {
        if (auto file = fileNamed(first, name)) {
            return file;
        }
        bases.insert(bases.begin(), first);
    }
    for (const std::string& candidate : chainFrom(theme)) {
        if (auto file = findInTheme(name, side, candidate, bases)) {
            return file;
        }
    }
    for (const fs::path& base : bases_) {
        if (auto file = fileNamed(base, name)) {
            return file;
        }
    }
    return std::nullopt;
}

std::optional<fs::path> IconThemes::find(const std::string& name, int side,
                                         const std::string& theme, const fs::path& first) {
    if (name.starts_with('/')) {
        return fs::path(name);
    }
    if (!isName(name)) {
        return std::nullopt;
    }
    auto file = findExactly(name, side, theme, first);
    if (!file) {
        const bool isSymbolic = name.ends_with(symbolicEnding);
        file = findExactly(isSymbolic ? name.substr(0, name.size() - symbolicEnding.size())
                                      : name + std::string(symbolicEnding),
                           side, theme, first);
    }
    return file;
}

} // namespace pelistra::menubar

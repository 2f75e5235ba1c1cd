#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::menubar {

// Finds the files of named icons by the rules of the freedesktop icon themes.
class IconThemes {
public:
    // Searches the folders that the environment names.
    IconThemes();
    // Searches these folders, the first one first.
    explicit IconThemes(std::vector<std::filesystem::path> bases) : bases_(std::move(bases)) {}

    // The file that looks best in a square of `side` device pixels: of the theme, of those that it
    // inherits from, of the theme that everybody has, and at last of any that is there. `first`, if
    // any, is searched before all others. Empty when there is none.
    [[nodiscard]] std::optional<std::filesystem::path>
    find(const std::string& name, int side, const std::string& theme,
         const std::filesystem::path& first = {});

private:
    struct Folder {
        std::string path;
        // The sizes that its pictures are made for, in device pixels.
        int least = 0;
        int usual = 0;
        int most = 0;
    };
    struct Theme {
        std::vector<Folder> folders;
        std::vector<std::string> inherits;
    };

    [[nodiscard]] const Theme& themeNamed(const std::string& name);
    [[nodiscard]] static Theme readTheme(const std::filesystem::path& index);
    [[nodiscard]] std::vector<std::string> chainFrom(const std::string& theme);
    [[nodiscard]] std::optional<std::filesystem::path>
    findInTheme(const std::string& name, int side, const std::string& theme,
                const std::vector<std::filesystem::path>& bases);
    [[nodiscard]] std::optional<std::filesystem::path>
    findExactly(const std::string& name, int side, const std::string& theme,
                const std::filesystem::path& first);

    std::vector<std::filesystem::path> bases_;
    std::map<std::string, Theme> themes_;
};

} // namespace pelistra::menubar

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// GKeyFile; GLib's headers are for KeyFile.cpp alone.
struct _GKeyFile; // NOLINT(bugprone-reserved-identifier): GLib's name

namespace pelistra::linux {

// Groups of keys with values, as desktop entries and the user defaults are written. Comments
// survive a change. Nothing here is ever looked up in another file.
class KeyFile {
public:
    // Without any group.
    KeyFile();

    // Empty for a text of another form; then `fault` says where it goes wrong.
    [[nodiscard]] static std::optional<KeyFile> parse(std::string_view text, std::string& fault);

    [[nodiscard]] bool has(const char* group, const std::string& key) const;
    // The value, its escapes undone; empty without one and for one that is no UTF-8.
    [[nodiscard]] std::string text(const char* group, const std::string& key) const;
    // The same in the language of that locale where there is such a value; in the user's language
    // when the locale is empty.
    [[nodiscard]] std::string localText(const char* group, const std::string& key,
                                        const std::string& locale) const;
    // The texts of a list, which has a semicolon behind each.
    [[nodiscard]] std::vector<std::string> list(const char* group, const std::string& key) const;

    // A name as a key that can be written: what has a meaning for such files is escaped.
    [[nodiscard]] static std::string keyFor(std::string_view name);
    // Replaces the value or adds the key, and the group if need be.
    void setText(const char* group, const std::string& key, const std::string& value);

    [[nodiscard]] std::string wholeText() const;

private:
    struct Deleter {
        void operator()(_GKeyFile* file) const;
    };
    std::unique_ptr<_GKeyFile, Deleter> file_;
};

} // namespace pelistra::linux

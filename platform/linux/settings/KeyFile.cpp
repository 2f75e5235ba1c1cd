#include "platform/linux/settings/KeyFile.h"

#include <algorithm>

#include <glib.h>

namespace pelistra::linux {

namespace {

struct Freeing {
    void operator()(char* text) const { g_free(text); }
    void operator()(char** texts) const { g_strfreev(texts); }
    void operator()(GError* error) const { g_error_free(error); }
};

std::string taken(char* text) {
    const std::unique_ptr<char, Freeing> owned(text);
    return text != nullptr ? text : "";
}

// Any number of them belongs to the end of its line. GLib takes one for that, leaves the others to
// the value and writes them unescaped: each change of the file would cost it one more.
std::string withoutCarriageReturns(std::string_view text) {
    std::string lines;
    lines.reserve(text.size());
    for (const char byte : text) {
        if (byte == '\n') {
            lines.erase(lines.find_last_not_of('\r') + 1);
        }
        lines += byte;
    }
    lines.erase(lines.find_last_not_of('\r') + 1);
    return lines;
}

// What no escape is stays as it stands; newer versions of GLib read no value then.
std::string unescaped(std::string_view text) {
    constexpr std::string_view escapes = "sntr\\";
    constexpr std::string_view meanings = " \n\t\r\\";
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t escape = text[i] == '\\' && i + 1 < text.size()
                                       ? escapes.find(text[i + 1])
                                       : std::string_view::npos;
        const bool isEscape = escape != std::string_view::npos;
        result += isEscape ? meanings[escape] : text[i];
        i += isEscape ? 1 : 0;
    }
    return result;
}

} // namespace

void KeyFile::Deleter::operator()(GKeyFile* file) const {
    g_key_file_free(file);
}

KeyFile::KeyFile() : file_(g_key_file_new()) {}

std::optional<KeyFile> KeyFile::parse(std::string_view text, std::string& fault) {
    if (text.find('\0') != std::string_view::npos) {
        // No text. What is read of it and what is executed could be two things.
        fault = "it has zero bytes";
        return std::nullopt;
    }
    const std::string lines = withoutCarriageReturns(text);
    KeyFile result;
    constexpr auto flags =
        static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    GError* raw = nullptr;
    if (g_key_file_load_from_data(result.file_.get(), lines.data(), lines.size(), flags, &raw) ==
        FALSE) {
        const std::unique_ptr<GError, Freeing> error(raw);
        fault = error->message;
        return std::nullopt;
    }
    return result;
}

bool KeyFile::has(const char* group, const std::string& key) const {
    return g_key_file_has_key(file_.get(), group, key.c_str(), nullptr) == TRUE;
}

std::string KeyFile::text(const char* group, const std::string& key) const {
    const std::string value = taken(g_key_file_get_value(file_.get(), group, key.c_str(), nullptr));
    const bool isText =
        g_utf8_validate(value.data(), static_cast<gssize>(value.size()), nullptr) == TRUE;
    return isText ? unescaped(value) : "";
}

std::string KeyFile::localText(const char* group, const std::string& key,
                               const std::string& locale) const {
    const std::string found = taken(g_key_file_get_locale_for_key(
        file_.get(), group, key.c_str(), locale.empty() ? nullptr : locale.c_str()));
    // Newer versions of GLib name the locale C where the value of no locale is meant.
    const std::string localKey = key + "[" + found + "]";
    return text(group, has(group, localKey) ? localKey : key);
}

std::vector<std::string> KeyFile::list(const char* group, const std::string& key) const {
    std::size_t count = 0;
    const std::unique_ptr<char*, Freeing> texts(
        g_key_file_get_string_list(file_.get(), group, key.c_str(), &count, nullptr));
    std::vector<std::string> result(texts.get(), texts.get() + count);
    std::erase(result, "");
    return result;
}

std::string KeyFile::keyFor(std::string_view name) {
    const bool hasOuterBlank = name.starts_with(' ') || name.ends_with(' ');
    return taken(
        g_uri_escape_string(std::string(name).c_str(), hasOuterBlank ? nullptr : " ", TRUE));
}

void KeyFile::setText(const char* group, const std::string& key, const std::string& value) {
    g_key_file_set_string(file_.get(), group, key.c_str(), value.c_str());
}

std::string KeyFile::wholeText() const {
    return taken(g_key_file_to_data(file_.get(), nullptr, nullptr));
}

} // namespace pelistra::linux

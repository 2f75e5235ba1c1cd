#include "platform/posix/Translation.h"

#include "platform/posix/OwnProgram.h"

#include <clocale>

#include <libintl.h>

namespace pelistra::posix {

namespace {

constexpr auto domain = "pelistra";

// The user's language for messages, in force for this thread while it lives.
class UserLocale {
public:
    UserLocale() : locale_(newlocale(LC_MESSAGES_MASK, "", nullptr)), before_(uselocale(locale_)) {}
    UserLocale(const UserLocale&) = delete;
    UserLocale& operator=(const UserLocale&) = delete;
    ~UserLocale() {
        uselocale(before_);
        if (locale_ != nullptr) {
            freelocale(locale_);
        }
    }

private:
    // Null where the system does not have it: then nothing changes.
    locale_t locale_;
    locale_t before_;
};

} // namespace

std::string translated(const char* english, std::initializer_list<std::string_view> values) {
    const auto folder = ownProgram().parent_path().parent_path() / "share" / "locale";
    const UserLocale locale;
    bindtextdomain(domain, folder.c_str());
    bind_textdomain_codeset(domain, "UTF-8");
    std::string text = dgettext(domain, english);
    for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at)) {
        const std::size_t place = static_cast<std::size_t>(text[at + 1]) - '1';
        if (place >= values.size()) {
            ++at;
            continue;
        }
        const std::string_view value = *(values.begin() + place);
        text.replace(at, 2, value);
        at += value.size();
    }
    return text;
}

} // namespace pelistra::posix

// Titles and names that other programs chose, on their way to the screen and to the log.

#include "menubar/ForeignText.h"
#include "platform/linux/application/LogLine.h"
#include "platform/linux/icons/PresentableText.h"
#include "tests/fuzz/Check.h"

namespace pelistra::fuzz {
namespace {

constexpr std::size_t characterLimit = 64;

// What is no character is shown as one that says so; it neither goes nor becomes another.
void checkReplaced(const std::string& text, const std::string& shown) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    const bool isCut = text.size() > characterLimit;
    check(isCut || isUtf8(text) || shown.find(replacement) != std::string::npos);
}

void checkOrganiser(const std::string& text) {
    const std::string shown = linux::presentableText(text);
    check(isClean(shown));
    check(shown.size() <= linux::presentableTextByteLimit);
    check(linux::presentableText(shown) == shown);
    checkReplaced(text, shown);
    check(!isClean(text) || text.size() > linux::presentableTextByteLimit || shown == text);

    const std::string latin = linux::presentableLatin1(text);
    check(isClean(latin));
    check(latin.size() <= linux::presentableTextByteLimit);
    check(linux::presentableText(latin) == latin);
}

void checkBar(const std::string& text) {
    const std::string shown = menubar::cleanText(text, characterLimit);
    check(isClean(shown));
    check(cleanLength(shown) <= static_cast<long>(characterLimit));
    check(menubar::cleanText(shown, characterLimit) == shown);
    checkReplaced(text, shown);
    check(!isClean(text) || cleanLength(text) > static_cast<long>(characterLimit) || shown == text);

    const std::string latin = menubar::cleanLatinText(text, characterLimit);
    check(isClean(latin));
    check(cleanLength(latin) <= static_cast<long>(characterLimit));
}

// Whatever is logged is one line.
void checkLog(const std::string& text) {
    const std::string category = text.substr(0, text.size() / 2);
    for (const LogLevel level : {LogLevel::Info, LogLevel::Error, LogLevel::Fault}) {
        const std::string line = linux::logLine(category, level, text);
        check(line.starts_with("pelistra: ["));
        check(line.ends_with('\n'));
        check(isClean(std::string_view(line).substr(0, line.size() - 1)));
    }
    const std::string harmless = linux::withoutControlCharacters(text);
    check(!isClean(text) || harmless == text);
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    const std::string text = input.restAsText();
    checkOrganiser(text);
    checkBar(text);
    checkLog(text);
}

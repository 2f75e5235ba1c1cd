// Desktop entries as anybody can install them, and the command line that comes of them. Input: a
// line with a locale, then the entry.

#include "platform/linux/DesktopEntry.h"
#include "tests/fuzz/Check.h"

#include <algorithm>

namespace pelistra::fuzz {
namespace {

using desktop::DesktopEntry;

void checkCommand(const DesktopEntry& entry) {
    const auto command = desktop::commandOf(entry);
    for (const std::string& argument : command) {
        // exec() would see the argument end there.
        check(argument.find('\0') == std::string::npos);
    }
    check(command.empty() ||
          (!command.front().empty() && command.front().find('=') == std::string::npos));
    check(desktop::programOf(entry).find('/') == std::string::npos);
}

void checkEntry(const DesktopEntry& entry) {
    check(entry.hidden || !entry.name.empty());
    check(isClean(entry.name));
    // An icon is a file by its whole path or a name in a theme, never a way through folders.
    check(entry.icon.empty() || entry.icon.front() == '/' ||
          entry.icon.find('/') == std::string::npos);
    check(isClean(entry.icon));
    for (const auto* list : {&entry.onlyShowIn, &entry.notShowIn}) {
        check(std::ranges::none_of(*list, [](const std::string& text) {
            return text.empty() || text.find(';') != std::string::npos;
        }));
    }
    checkCommand(entry);
}

// Any argument survives being written into an entry and read back.
void checkQuoting(std::string argument) {
    std::erase(argument, '\0');
    const std::string quoted = desktop::quotedForExec(argument);
    check(quoted.find('\n') == std::string::npos);
    const std::string text =
        "[Desktop Entry]\nType=Application\nName=x\nExec=/bin/program " + quoted + " --last\n";
    const auto entry = desktop::parseDesktopEntry(text, {});
    check(entry.has_value());
    check(desktop::commandOf(*entry) ==
          std::vector<std::string>{"/bin/program", argument, "--last"});
}

void checkLocale(const std::string& locale) {
    const auto keys = desktop::localeKeys(locale);
    check(keys.size() <= 4);
    for (auto key = keys.begin(); key != keys.end(); ++key) {
        check(key->size() <= locale.size());
        check(key == keys.begin() || *key != *std::prev(key));
    }
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    const std::string locale = input.line();
    const std::string text = input.restAsText();
    checkLocale(locale);
    if (const auto entry = desktop::parseDesktopEntry(text, desktop::localeKeys(locale))) {
        checkEntry(*entry);
    }
    checkQuoting(text);
    // Exec alone, so that the inputs need not find the key first.
    desktop::DesktopEntry bare;
    bare.name = "name";
    bare.exec = text.substr(0, text.find('\0'));
    checkCommand(bare);
    // A quote that nobody closes makes no command.
    const bool isOpen = std::ranges::count(bare.exec, '"') % 2 == 1;
    const bool hasEscapes = bare.exec.find('\\') != std::string::npos;
    check(!isOpen || hasEscapes || desktop::commandOf(bare).empty());
}

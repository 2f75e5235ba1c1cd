// Desktop entries as anybody can install them, and the command line that comes of them. Input: a
// line with a locale, then the entry.

#include "platform/linux/programs/DesktopEntry.h"
#include "platform/linux/settings/KeyFile.h"
#include "tests/fuzz/Check.h"

#include <algorithm>

namespace pelistra::fuzz {
namespace {

using linux::DesktopEntry;

void checkCommand(const DesktopEntry& entry) {
    const auto command = linux::commandOf(entry);
    for (const std::string& argument : command) {
        // exec() would see the argument end there.
        check(argument.find('\0') == std::string::npos);
    }
    check(command.empty() ||
          (!command.front().empty() && command.front().find('=') == std::string::npos));
    check(linux::programOf(entry).find('/') == std::string::npos);
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

// Any argument that is a text survives being written into an entry and read back.
void checkQuoting(std::string argument) {
    std::erase(argument, '\0');
    linux::KeyFile file;
    file.setText("Desktop Entry", "Type", "Application");
    file.setText("Desktop Entry", "Name", "x");
    file.setText("Desktop Entry", "Exec",
                 "/bin/program " + linux::quotedForExec(argument) + " --last");
    const auto entry = linux::parseDesktopEntry(file.wholeText());
    check(entry.has_value());
    check(!isUtf8(argument) ||
          linux::commandOf(*entry) == std::vector<std::string>{"/bin/program", argument, "--last"});
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    const std::string locale = input.line();
    const std::string text = input.restAsText();
    if (const auto entry = linux::parseDesktopEntry(text, locale)) {
        checkEntry(*entry);
    }
    checkQuoting(text);
    // Exec alone, so that the inputs need not find the key first.
    linux::DesktopEntry bare;
    bare.name = "name";
    bare.exec = text.substr(0, text.find('\0'));
    checkCommand(bare);
    // A quote that nobody closes makes no command.
    const bool isOpen = std::ranges::count(bare.exec, '"') % 2 == 1;
    const bool isPlain = bare.exec.find_first_of("\\'#") == std::string::npos;
    check(!isOpen || !isPlain || linux::commandOf(bare).empty());
}

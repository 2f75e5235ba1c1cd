// What /proc says of a process: its command line, its control groups and what its sandbox claims to
// be are for the program itself to choose. Any of them can become a name on the screen or a key in
// a look-up.

#include "platform/linux/programs/ProcessFacts.h"
#include "tests/fuzz/Check.h"

void pelistra::fuzz::tryInput(Input input) {
    const std::string text = input.restAsText();

    const std::string name = linux::invokedNameIn(text);
    check(name.find('/') == std::string::npos && name.find('\0') == std::string::npos);
    check(name.size() <= text.size());

    const std::string snap = linux::snapIdIn(text);
    check(snap.find_first_of("/\n") == std::string::npos);
    check(snap.empty() || snap.find('_') != std::string::npos);

    const std::string flatpak = linux::flatpakIdIn(text);
    check(flatpak.find('\n') == std::string::npos);
    check(text.find(flatpak) != std::string::npos);

    const linux::ProcessFacts facts{.executable = "program",
                                    .invokedAs = name,
                                    .shortName = text,
                                    .flatpakId = flatpak,
                                    .snapId = snap};
    check(isClean(facts.displayName()));
    check(!name.empty() || facts.displayName() == facts.executable);
}

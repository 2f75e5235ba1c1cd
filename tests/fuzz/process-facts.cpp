// What /proc says of a process: its command line, its control groups and what its sandbox claims to
// be are for the program itself to choose. Any of them can become a name on the screen or a key in
// a look-up.

#include "platform/linux/X11RunningApplicationsProcess.h"
#include "tests/fuzz/Check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace pelistra;
    const std::string text = fuzz::Input(data, size).restAsText();

    const std::string name = desktop::invokedNameIn(text);
    fuzz::check(name.find('/') == std::string::npos && name.find('\0') == std::string::npos);
    fuzz::check(name.size() <= text.size());

    const std::string snap = desktop::snapIdIn(text);
    fuzz::check(snap.find_first_of("/\n") == std::string::npos);
    fuzz::check(snap.empty() || snap.find('_') != std::string::npos);

    const std::string flatpak = desktop::flatpakIdIn(text);
    fuzz::check(flatpak.find('\n') == std::string::npos);
    fuzz::check(text.find(flatpak) != std::string::npos);

    const desktop::ProcessFacts facts{.executable = "program",
                                      .invokedAs = name,
                                      .shortName = text,
                                      .flatpakId = flatpak,
                                      .snapId = snap};
    fuzz::check(fuzz::isClean(facts.displayName()));
    fuzz::check(facts.displayName().empty() == (name == "" && facts.executable.empty()) ||
                !name.empty());
    return 0;
}

#pragma once

#include "platform/Application.h"

#include <optional>
#include <string>
#include <vector>

namespace pelistra::desktop {

// What /proc says about a process. Every value may be missing: the process may have ended, or
// belong to somebody else.
struct ProcessFacts {
    // The executable's name without its folder.
    std::string executable;
    // argv[0] without its folder; for a script its interpreter's first argument without its folder.
    std::string invokedAs;
    // The kernel's short name.
    std::string shortName;
    // The application id of a Flatpak sandbox.
    std::string flatpakId;
    // The desktop id of a snap, "name_application".
    std::string snapId;

    // What people call the program when nothing better is known; empty for a process that is gone.
    [[nodiscard]] std::string displayName() const;
};

// Whether such a process runs; one that has ended and waits for its parent does not.
[[nodiscard]] bool processRuns(ProcessId process);
[[nodiscard]] ProcessFacts factsOf(ProcessId process);
// When the process started, in the kernel's ticks since boot: with the id it names one process,
// even when ids are used again. Empty when no such process runs.
[[nodiscard]] std::optional<std::string> startTimeOf(ProcessId process);
// Every process that runs.
[[nodiscard]] std::vector<ProcessId> runningProcesses();

// Pure halves of the above.
// The desktop id of a snap in the text of a process's cgroup file; empty for any other process.
[[nodiscard]] std::string snapIdIn(const std::string& cgroups);
// The application's id in the text of a sandbox's .flatpak-info; empty when there is none.
[[nodiscard]] std::string flatpakIdIn(const std::string& info);
// argv as /proc/<pid>/cmdline has it -> the program's name, see ProcessFacts::invokedAs.
[[nodiscard]] std::string invokedNameIn(const std::string& commandLine);

} // namespace pelistra::desktop

#pragma once

#include "platform/Application.h"

#include <optional>
#include <string>
#include <vector>

namespace pelistra::linux {

// What /proc says about a process. Every value may be missing: the process may have ended, or
// belong to somebody else.
struct ProcessFacts {
    // The executable's name without its folder; empty for a script, which is not its interpreter.
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

// Reads them now; all are empty for a process that is not there.
[[nodiscard]] ProcessFacts factsOf(ProcessId process);
// When the process started, in the kernel's ticks since boot: with the id it names one process,
// even when ids are used again. Empty when no such process runs; one that has ended and waits for
// its parent does not.
[[nodiscard]] std::optional<std::string> startTimeOf(ProcessId process);
// Every process there is, also those that have ended and wait for their parent: a list of names,
// and nothing is asked about each.
[[nodiscard]] std::vector<ProcessId> listedProcesses();

// Holds on to one process: another one that gets its id later is never taken for it, and asking
// whether it runs costs next to nothing. Takes a file descriptor.
class ProcessHold {
public:
    // Holds nothing when there is no such process, or no descriptor for it.
    explicit ProcessHold(ProcessId process);
    ProcessHold(const ProcessHold&) = delete;
    ProcessHold& operator=(const ProcessHold&) = delete;
    ProcessHold(ProcessHold&& other) noexcept;
    ProcessHold& operator=(ProcessHold&& other) noexcept;
    ~ProcessHold();

    [[nodiscard]] bool holds() const { return descriptor_ >= 0; }
    // Of a process that is held; one that has ended and waits for its parent does not run.
    [[nodiscard]] bool runs() const;

private:
    int descriptor_;
};

// Pure halves of the above.
// The desktop id of a snap in the text of a process's cgroup file; empty for any other process.
[[nodiscard]] std::string snapIdIn(const std::string& cgroups);
// The application's id in the text of a sandbox's .flatpak-info; empty when there is none.
[[nodiscard]] std::string flatpakIdIn(const std::string& info);
// argv as /proc/<pid>/cmdline has it -> the program's name, see ProcessFacts::invokedAs.
[[nodiscard]] std::string invokedNameIn(const std::string& commandLine);

} // namespace pelistra::linux

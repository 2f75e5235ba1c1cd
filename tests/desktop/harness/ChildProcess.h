#pragma once

#include "tests/desktop/harness/WaitFor.h"

#include <chrono>
#include <filesystem>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace pelistra::testing {

using Environment = std::map<std::string, std::string>;

// How a process ended: its exit status, or the signal that killed it.
struct ExitStatus {
    std::optional<int> status;
    int killedBySignal = 0;

    bool operator==(const ExitStatus&) const = default;
};

void PrintTo(const ExitStatus& status, std::ostream* stream);

// A program that runs in a process group of its own, its standard output and error in one file.
// The kernel kills it when this process dies; the destructor kills its whole group.
class ChildProcess {
public:
    // Starts command[0], searched in PATH, with exactly the given environment. Throws
    // std::system_error when the system refuses; a program that cannot be executed ends with
    // status 127.
    ChildProcess(std::vector<std::string> command, const Environment& environment,
                 std::filesystem::path outputFile);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return pid_; }
    [[nodiscard]] const std::string& name() const { return command_.front(); }
    [[nodiscard]] bool isRunning();
    // Empty when the process still runs after `bound`.
    [[nodiscard]] std::optional<ExitStatus> waitForExit(std::chrono::milliseconds bound = patience);
    // Everything that the program has written so far.
    [[nodiscard]] std::string output() const;
    // How often `text` occurs in the output so far.
    [[nodiscard]] std::size_t occurrencesOf(std::string_view text) const;
    // Waits until `text` occurs in the output.
    [[nodiscard]] bool waitForOutput(const std::string& text,
                                     std::chrono::milliseconds bound = patience) const;

    // Sends a signal to the process alone.
    void signal(int number) const;
    // Kills the process and its group at once and reaps it.
    void kill();
    // Asks it to end (SIGTERM), kills it after `bound`; returns how it ended.
    ExitStatus terminate(std::chrono::milliseconds bound = patience);

private:
    void reap(int options);

    std::vector<std::string> command_;
    std::filesystem::path outputFile_;
    pid_t pid_ = -1;
    std::optional<ExitStatus> exit_;
};

// The proportional memory of a process in KiB; empty when it is gone.
[[nodiscard]] std::optional<long> proportionalMemory(pid_t pid);

// The memory in KiB that a process has for itself alone and that no file could give back: heap,
// stacks, changed pages of libraries. Unlike the proportional memory it does not depend on what
// else runs. Empty when the process is gone.
[[nodiscard]] std::optional<long> ownMemory(pid_t pid);

// By how many KiB the memory that a process is in, shared or not, is less than it has ever been.
// Empty when the process is gone.
[[nodiscard]] std::optional<long> memoryGivenBack(pid_t pid);

// How often the threads of a process have gone to sleep and been woken since it started. An idle
// process that makes no system call at all leaves it unchanged.
[[nodiscard]] std::optional<long> wakeUps(pid_t pid);

} // namespace pelistra::testing

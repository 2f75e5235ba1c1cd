#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace pelistra::testing {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// How thorough a run is.
struct Effort {
    // Repetitions of a measurement, and of one that needs a program started anew.
    int rounds = 21;
    int starts = 7;
    // How often the row, and the settings window, are opened to see whether memory grows.
    int openings = 1000;
    int settingsOpenings = 100;
    // How long idling is watched.
    std::chrono::seconds idleTime{60};
    // How many icons the comparison grows to.
    std::vector<int> iconCounts{10, 100, 1000};

    // A look in between, for someone who changes the code.
    [[nodiscard]] static Effort quick();
};

// Throws std::runtime_error with that message unless the condition holds: a figure that could not
// be taken is no figure.
void require(bool condition, const std::string& otherwise);

// What a process has cost so far.
struct Cost {
    // All its threads.
    double processorMilliseconds = 0;
    double wakeUps = 0;
};

// Of a program and everything it has started in its process group.
[[nodiscard]] Cost costOfGroup(pid_t group);

// MiB.
struct Memory {
    // With its part of what it shares.
    double proportional = 0;
    // What only this process has, and no file.
    double own = 0;
};

[[nodiscard]] Memory memoryOfGroup(pid_t group);

// Throws std::runtime_error when the process is gone.
[[nodiscard]] Memory memoryOf(pid_t pid);

// The memory of a process once its own no longer changes.
[[nodiscard]] Memory settledMemoryOf(pid_t pid);

// The time that the calling thread has spent on a processor.
[[nodiscard]] Milliseconds ownProcessorTime();

// The arrow ignores clicks that come within 0.3 s; desktops take two clicks within 0.4 s for one
// double click.
inline constexpr std::chrono::milliseconds longerThanLatch{350};

} // namespace pelistra::testing

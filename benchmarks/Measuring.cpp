#include "benchmarks/Measuring.h"

#include "tests/desktop/harness/ChildProcess.h"

#include <cmath>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include <unistd.h>

namespace pelistra::testing {

namespace {

constexpr double kibibytesOfMebibyte = 1024;
constexpr double nanosecondsOfMillisecond = 1e6;
constexpr double millisecondsOfSecond = 1e3;

std::vector<pid_t> processesOfGroup(pid_t group) {
    std::vector<pid_t> processes;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        const pid_t pid = std::stoi(name);
        if (::getpgid(pid) == group) {
            processes.push_back(pid);
        }
    }
    return processes;
}

// Empty folders for a process that has ended meanwhile.
double processorTimeOf(pid_t pid) {
    std::error_code gone;
    double nanoseconds = 0;
    const std::filesystem::path tasks = "/proc/" + std::to_string(pid) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks, gone)) {
        double spent = 0;
        std::ifstream(task.path() / "schedstat") >> spent;
        nanoseconds += spent;
    }
    return nanoseconds / nanosecondsOfMillisecond;
}

double mebibytes(long kibibytes) {
    return static_cast<double>(kibibytes) / kibibytesOfMebibyte;
}

} // namespace

Effort Effort::quick() {
    return {.rounds = 7,
            .starts = 3,
            .openings = 60,
            .settingsOpenings = 20,
            .idleTime = std::chrono::seconds(10),
            .iconCounts = {10, 100}};
}

void require(bool condition, const std::string& otherwise) {
    if (!condition) {
        throw std::runtime_error(otherwise);
    }
}

Cost costOfGroup(pid_t group) {
    Cost cost;
    for (const pid_t pid : processesOfGroup(group)) {
        cost.processorMilliseconds += processorTimeOf(pid);
        cost.wakeUps += static_cast<double>(wakeUps(pid).value_or(0));
    }
    return cost;
}

Memory memoryOfGroup(pid_t group) {
    Memory memory;
    for (const pid_t pid : processesOfGroup(group)) {
        memory.proportional += mebibytes(proportionalMemory(pid).value_or(0));
        memory.own += mebibytes(ownMemory(pid).value_or(0));
    }
    return memory;
}

Memory memoryOf(pid_t pid) {
    constexpr long unknown = -1;
    const long proportional = proportionalMemory(pid).value_or(unknown);
    const long own = ownMemory(pid).value_or(unknown);
    require(proportional >= 0 && own >= 0, "the process whose memory is asked for is gone");
    return {.proportional = mebibytes(proportional), .own = mebibytes(own)};
}

Memory settledMemoryOf(pid_t pid) {
    // Programs give back what they no longer need a while after its use.
    constexpr std::chrono::seconds whileAfterUse{4};
    std::this_thread::sleep_for(whileAfterUse);
    constexpr int mostLooks = 20;
    constexpr std::chrono::milliseconds between{500};
    constexpr double unchanged = 0.05;
    Memory before = memoryOf(pid);
    for (int look = 0; look < mostLooks; ++look) {
        std::this_thread::sleep_for(between);
        const Memory now = memoryOf(pid);
        if (std::abs(now.own - before.own) < unchanged) {
            return now;
        }
        before = now;
    }
    return before;
}

Milliseconds ownProcessorTime() {
    timespec spent{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
    return Milliseconds(static_cast<double>(spent.tv_sec) * millisecondsOfSecond +
                        static_cast<double>(spent.tv_nsec) / nanosecondsOfMillisecond);
}

} // namespace pelistra::testing

#include "benchmarks/Measuring.h"

#include "tests/desktop/harness/ChildProcess.h"

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

double memoryOfGroup(pid_t group) {
    double memory = 0;
    for (const pid_t pid : processesOfGroup(group)) {
        memory += static_cast<double>(proportionalMemory(pid).value_or(0)) / kibibytesOfMebibyte;
    }
    return memory;
}

double memoryOf(pid_t pid) {
    const auto memory = proportionalMemory(pid);
    require(memory.has_value(), "the process whose memory is asked for is gone");
    return static_cast<double>(*memory) / kibibytesOfMebibyte;
}

double settledMemoryOf(pid_t pid) {
    constexpr int mostLooks = 20;
    constexpr std::chrono::milliseconds between{500};
    constexpr double unchanged = 0.05;
    double before = memoryOf(pid);
    for (int look = 0; look < mostLooks; ++look) {
        std::this_thread::sleep_for(between);
        const double now = memoryOf(pid);
        if (now > before - unchanged && now < before + unchanged) {
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

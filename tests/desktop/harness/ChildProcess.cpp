#include "tests/desktop/harness/ChildProcess.h"
#include "tests/desktop/harness/FileContent.h"

#include <cerrno>
#include <csignal>
#include <fstream>
#include <ostream>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

constexpr int cannotExecute = 127;
constexpr mode_t privateFile = 0600;

// Texts as the null-terminated array that exec wants; points into `texts`.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> assignments(const Environment& environment) {
    std::vector<std::string> result;
    result.reserve(environment.size());
    for (const auto& [name, value] : environment) {
        result.push_back(std::string(name).append("=").append(value));
    }
    return result;
}

// Between fork and exec: only calls that are safe there.
[[noreturn]] void becomeProgram(char* const* arguments, char* const* environment, int output,
                                pid_t parent) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(cannotExecute);
    }
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    sigset_t none{};
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execvpe(arguments[0], arguments, environment);
    constexpr std::string_view message = "cannot be executed\n";
    static_cast<void>(!write(STDERR_FILENO, message.data(), message.size()));
    _exit(cannotExecute);
}

std::optional<long> numberAfter(const std::filesystem::path& file, std::string_view label) {
    std::ifstream stream(file);
    std::string line;
    while (std::getline(stream, line)) {
        if (line.starts_with(label)) {
            return std::stol(line.substr(label.size()));
        }
    }
    return std::nullopt;
}

// The System V shared memory that a process has made and nobody uses outlives it. Some programs
// take what one of them has left in a crash for another one that runs, and do not start; and by
// their keys, which are made of the numbers of files, the rest of one display is in the way on
// another.
void removeSharedMemoryOf(pid_t maker) {
    shmid_ds segment{};
    shm_info all{};
    // The call's own way.
    const int last = shmctl(0, SHM_INFO, reinterpret_cast<shmid_ds*>(&all));
    for (int index = 0; index <= last; ++index) {
        const int id = shmctl(index, SHM_STAT, &segment);
        if (id >= 0 && segment.shm_cpid == maker && segment.shm_nattch == 0) {
            shmctl(id, IPC_RMID, nullptr);
        }
    }
}

} // namespace

void PrintTo(const ExitStatus& status, std::ostream* stream) {
    if (status.status) {
        *stream << "ended with status " << *status.status;
    } else {
        *stream << "killed by signal " << status.killedBySignal;
    }
}

ChildProcess::ChildProcess(std::vector<std::string> command, const Environment& environment,
                           std::filesystem::path outputFile)
    : command_(std::move(command)), outputFile_(std::move(outputFile)) {
    const int output =
        open(outputFile_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, privateFile);
    if (output < 0) {
        throw std::system_error(errno, std::generic_category(), outputFile_.string());
    }
    std::vector<std::string> arguments = command_;
    std::vector<std::string> variables = assignments(environment);
    const std::vector<char*> argumentPointers = pointersTo(arguments);
    const std::vector<char*> variablePointers = pointersTo(variables);
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) {
        becomeProgram(argumentPointers.data(), variablePointers.data(), output, parent);
    }
    const int failure = errno;
    close(output);
    if (pid_ < 0) {
        throw std::system_error(failure, std::generic_category(), name());
    }
    // Also here, so that the group exists before anybody signals it.
    setpgid(pid_, pid_);
}

ChildProcess::~ChildProcess() {
    kill();
}

bool ChildProcess::isRunning() {
    reap(WNOHANG);
    return !exit_;
}

std::optional<ExitStatus> ChildProcess::waitForExit(std::chrono::milliseconds bound) {
    static_cast<void>(waitFor([this] { return !isRunning(); }, bound));
    return exit_;
}

std::string ChildProcess::output() const {
    return contentOf(outputFile_);
}

std::size_t ChildProcess::occurrencesOf(std::string_view text) const {
    const std::string all = output();
    std::size_t count = 0;
    for (auto at = all.find(text); at != std::string::npos; at = all.find(text, at + text.size())) {
        ++count;
    }
    return count;
}

bool ChildProcess::waitForOutput(const std::string& text, std::chrono::milliseconds bound) const {
    return waitFor([&] { return output().find(text) != std::string::npos; }, bound);
}

void ChildProcess::signal(int number) const {
    if (!exit_) {
        ::kill(pid_, number);
    }
}

void ChildProcess::kill() {
    // While the leader is not reaped its id, and so the group's, cannot belong to anybody else.
    if (!exit_) {
        ::kill(-pid_, SIGKILL);
        reap(0);
    }
}

ExitStatus ChildProcess::terminate(std::chrono::milliseconds bound) {
    signal(SIGTERM);
    if (!waitForExit(bound)) {
        kill();
    }
    return *exit_;
}

void ChildProcess::reap(int options) {
    int status = 0;
    if (exit_ || waitpid(pid_, &status, options) != pid_) {
        return;
    }
    removeSharedMemoryOf(pid_);
    exit_ = WIFSIGNALED(status) ? ExitStatus{.status = {}, .killedBySignal = WTERMSIG(status)}
                                : ExitStatus{.status = WEXITSTATUS(status)};
}

std::optional<long> proportionalMemory(pid_t pid) {
    return numberAfter(std::filesystem::path("/proc") / std::to_string(pid) / "smaps_rollup",
                       "Pss:");
}

std::optional<long> ownMemory(pid_t pid) {
    return numberAfter(std::filesystem::path("/proc") / std::to_string(pid) / "smaps_rollup",
                       "Anonymous:");
}

std::optional<long> memoryGivenBack(pid_t pid) {
    const auto status = std::filesystem::path("/proc") / std::to_string(pid) / "status";
    const auto most = numberAfter(status, "VmHWM:");
    const auto now = numberAfter(status, "VmRSS:");
    return most && now ? std::optional(*most - *now) : std::nullopt;
}

std::optional<long> wakeUps(pid_t pid) {
    std::error_code failure;
    const std::filesystem::directory_iterator tasks(
        std::filesystem::path("/proc") / std::to_string(pid) / "task", failure);
    if (failure) {
        return std::nullopt;
    }
    long sum = 0;
    for (const auto& task : tasks) {
        sum += numberAfter(task.path() / "status", "voluntary_ctxt_switches:").value_or(0);
    }
    return sum;
}

} // namespace pelistra::testing

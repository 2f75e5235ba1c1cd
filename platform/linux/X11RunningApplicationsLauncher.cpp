#include "platform/linux/X11RunningApplicationsLauncher.h"

#include "platform/posix/Environment.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <memory>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace pelistra::desktop {

namespace {

constexpr const char* terminalProgram = "x-terminal-emulator";

bool isExecutable(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
}

struct MessageReleaser {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, MessageReleaser>;

// Empty when the bus does not answer.
std::optional<bool> isListed(sd_bus& bus, const char* method, const std::string& name) {
    sd_bus_message* raw = nullptr;
    const int result = sd_bus_call_method(&bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                          "org.freedesktop.DBus", method, nullptr, &raw, "");
    const Message message(raw);
    if (result < 0 || sd_bus_message_enter_container(raw, 'a', "s") < 0) {
        return std::nullopt;
    }
    const char* listed = nullptr;
    while (sd_bus_message_read_basic(raw, 's', static_cast<void*>(&listed)) > 0) {
        if (name == listed) {
            return true;
        }
    }
    return false;
}

// Whether a message to that name would reach a program; empty when the bus does not answer.
std::optional<bool> reaches(sd_bus& bus, const std::string& name) {
    const auto startable = isListed(bus, "ListActivatableNames", name);
    return startable == false ? isListed(bus, "ListNames", name) : startable;
}

bool sendActivate(sd_bus& bus, const std::string& id, const std::string& path) {
    // The answer comes when the program is up; nobody waits for that.
    sd_bus_message* raw = nullptr;
    if (sd_bus_message_new_method_call(&bus, &raw, id.c_str(), path.c_str(),
                                       "org.freedesktop.Application", "Activate") < 0) {
        return false;
    }
    const Message message(raw);
    return sd_bus_message_append(raw, "a{sv}", 0) >= 0 &&
           sd_bus_message_set_expect_reply(raw, 0) >= 0 && sd_bus_send(&bus, raw, nullptr) >= 0 &&
           sd_bus_flush(&bus) >= 0;
}

// Everything that the new process needs, made before it exists: between fork and exec only a few
// calls are safe.
struct Start {
    std::vector<char*> arguments;
    const char* folder;
    int failurePipe;
};

[[noreturn]] void becomeProgram(const Start& start) {
    ::setsid();
    const pid_t second = ::fork();
    if (second != 0) {
        ::_exit(second < 0 ? 1 : 0);
    }
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    const int result = ::chdir(start.folder);
    if (result == 0) {
        ::execv(start.arguments.front(), start.arguments.data());
    }
    const char failed = 1;
    const ssize_t written = ::write(start.failurePipe, &failed, 1);
    ::_exit(written == 1 ? 127 : 126);
}

// A pipe that closes by itself when the program is executed: what can be read from it says that it
// was not.
class FailurePipe {
public:
    FailurePipe() : open_(::pipe2(ends_.data(), O_CLOEXEC) == 0) {}
    FailurePipe(const FailurePipe&) = delete;
    FailurePipe& operator=(const FailurePipe&) = delete;
    ~FailurePipe() {
        closeEnd(0);
        closeEnd(1);
    }

    [[nodiscard]] bool isOpen() const { return open_; }
    [[nodiscard]] int writeEnd() const { return ends_[1]; }
    [[nodiscard]] bool saysFailed() {
        closeEnd(1);
        char byte = 0;
        ssize_t count = 0;
        do {
            count = ::read(ends_[0], &byte, 1);
        } while (count < 0 && errno == EINTR);
        return count != 0;
    }

private:
    void closeEnd(std::size_t end) {
        if (open_ && ends_.at(end) >= 0) {
            ::close(ends_.at(end));
            ends_.at(end) = -1;
        }
    }

    std::array<int, 2> ends_{-1, -1};
    bool open_;
};

} // namespace

std::optional<std::filesystem::path> findProgram(const std::string& program) {
    if (program.empty()) {
        return std::nullopt;
    }
    if (program.find('/') != std::string::npos) {
        return isExecutable(program) && program.starts_with('/')
                   ? std::optional(std::filesystem::path(program))
                   : std::nullopt;
    }
    const std::string path = posix::environmentText("PATH");
    std::string_view rest = path.empty() ? "/usr/local/bin:/usr/bin:/bin" : std::string_view(path);
    while (!rest.empty()) {
        const std::size_t colon = rest.find(':');
        std::filesystem::path candidate = std::filesystem::path(rest.substr(0, colon)) / program;
        if (candidate.is_absolute() && isExecutable(candidate)) {
            return candidate;
        }
        rest.remove_prefix(colon == std::string_view::npos ? rest.size() : colon + 1);
    }
    return std::nullopt;
}

std::vector<std::string> startCommandOf(const DesktopEntry& entry) {
    std::vector<std::string> command = commandOf(entry);
    if (command.empty() || (!entry.tryExec.empty() && !findProgram(entry.tryExec))) {
        return {};
    }
    const auto program = findProgram(command.front());
    if (!program) {
        return {};
    }
    command.front() = program->string();
    if (entry.terminal) {
        const auto terminal = findProgram(terminalProgram);
        if (!terminal) {
            return {};
        }
        command.insert(command.begin(), {terminal->string(), "-e"});
    }
    return command;
}

bool startDetached(const std::vector<std::string>& command, const std::filesystem::path& folder) {
    FailurePipe pipe;
    if (command.empty() || !pipe.isOpen()) {
        return false;
    }
    std::vector<std::string> texts = command;
    const std::string home = posix::environmentText("HOME");
    const std::string start = !folder.empty() ? folder.string() : (home.empty() ? "/" : home);
    Start program{.arguments = {}, .folder = start.c_str(), .failurePipe = pipe.writeEnd()};
    for (std::string& text : texts) {
        program.arguments.push_back(text.data());
    }
    program.arguments.push_back(nullptr);
    const pid_t first = ::fork();
    if (first == 0) {
        becomeProgram(program);
    }
    if (first < 0) {
        return false;
    }
    int status = 0;
    while (::waitpid(first, &status, 0) < 0 && errno == EINTR) {
    }
    const bool forked = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return forked && !pipe.saysFailed();
}

void Launcher::BusCloser::operator()(sd_bus* bus) const {
    sd_bus_flush_close_unref(bus);
}

Launcher::Bus Launcher::openSessionBus() {
    constexpr std::uint64_t patienceInMicroseconds = 1'000'000;
    sd_bus* bus = nullptr;
    if (sd_bus_open_user(&bus) < 0) {
        return nullptr;
    }
    Bus owned(bus);
    return sd_bus_set_method_call_timeout(bus, patienceInMicroseconds) < 0 ? nullptr
                                                                           : std::move(owned);
}

bool Launcher::activateOnBus(const std::string& id) {
    const std::string path = busPathOf(id);
    if (path.empty()) {
        return false;
    }
    const bool isKept = bus_ != nullptr;
    if (!isKept) {
        bus_ = openSessionBus();
    }
    auto reached = bus_ ? reaches(*bus_, id) : std::nullopt;
    if (!reached && isKept) {
        // The bus has been started anew.
        bus_ = openSessionBus();
        reached = bus_ ? reaches(*bus_, id) : std::nullopt;
    }
    if (!reached) {
        bus_.reset();
    }
    return reached == true && sendActivate(*bus_, id, path);
}

bool Launcher::launch(const DesktopEntry& entry) {
    if (entry.hidden) {
        return false;
    }
    return (entry.dbusActivatable && activateOnBus(entry.id)) ||
           startDetached(startCommandOf(entry), entry.workingFolder);
}

std::string busPathOf(const std::string& id) {
    std::string path = "/" + id;
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    return sd_bus_service_name_is_valid(id.c_str()) > 0 &&
                   sd_bus_object_path_is_valid(path.c_str()) > 0
               ? path
               : std::string();
}

} // namespace pelistra::desktop

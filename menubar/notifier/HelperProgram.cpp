#include "menubar/notifier/HelperProgram.h"

#include "platform/posix/OwnProgram.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <spawn.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pelistra::menubar {

namespace {

std::filesystem::path pathOf(const std::string& name) {
    std::error_code error;
    const std::filesystem::path folder = posix::ownProgram().parent_path();
    const bool isBeside = std::filesystem::exists(folder / name, error);
    return isBeside ? folder / name : folder.parent_path() / "libexec" / "pelistra" / name;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& variables) {
    std::vector<std::string> result = variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::string_view name = text.substr(0, text.find('=') + 1);
        if (std::ranges::none_of(variables, [&](const std::string& variable) {
                return variable.starts_with(name);
            })) {
            result.emplace_back(text);
        }
    }
    return result;
}

// As a program expects it that was started by nobody in particular.
struct Attributes {
    Attributes() {
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&value);
        posix_spawnattr_setsigmask(&value, &none);
        posix_spawnattr_setsigdefault(&value, &all);
        posix_spawnattr_setflags(&value, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&value); }

    posix_spawnattr_t value{};
};

struct Actions {
    explicit Actions(int input) {
        posix_spawn_file_actions_init(&value);
        posix_spawn_file_actions_adddup2(&value, input, STDIN_FILENO);
    }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;
    ~Actions() { posix_spawn_file_actions_destroy(&value); }

    posix_spawn_file_actions_t value{};
};

} // namespace

bool HelperProgram::start(const std::string& name, const std::vector<std::string>& variables) {
    close();
    // The system clears away those that have ended.
    struct sigaction ignore{};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGCHLD, &ignore, nullptr);
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return false;
    }
    std::string path = pathOf(name);
    const std::array<char*, 2> arguments{path.data(), nullptr};
    std::vector<std::string> environment = environmentWith(variables);
    std::vector<char*> entries;
    entries.reserve(environment.size() + 1);
    for (std::string& entry : environment) {
        entries.push_back(entry.data());
    }
    entries.push_back(nullptr);
    const Attributes attributes;
    const Actions actions(ends[1]);
    pid_t process = 0;
    const int result = ::posix_spawn(&process, path.c_str(), &actions.value, &attributes.value,
                                     arguments.data(), entries.data());
    ::close(ends[1]);
    socket_ = ends[0];
    if (result != 0) {
        close();
    }
    return result == 0;
}

void HelperProgram::close() {
    if (const int socket = std::exchange(socket_, -1); socket >= 0) {
        ::close(socket);
    }
}

bool HelperProgram::send(const std::string& message) const {
    return isRunning() &&
           ::send(socket_, message.data(), message.size(), MSG_NOSIGNAL | MSG_DONTWAIT) ==
               static_cast<ssize_t>(message.size());
}

} // namespace pelistra::menubar

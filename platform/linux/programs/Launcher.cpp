#include "platform/linux/programs/Launcher.h"

#include <algorithm>
#include <csignal>
#include <memory>
#include <utility>

#include <glib.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace pelistra::linux {

namespace {

constexpr const char* terminalProgram = "x-terminal-emulator";

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

// In the new process, before it becomes the program.
void standAlone(void* /*unused*/) {
    ::setsid();
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace

std::optional<std::filesystem::path> findProgram(const std::string& program) {
    const std::unique_ptr<char, decltype(&g_free)> found(g_find_program_in_path(program.c_str()),
                                                         g_free);
    // A folder of $PATH that is not named as a whole would depend on where we were started.
    return found && *found == '/' ? std::optional<std::filesystem::path>(found.get())
                                  : std::nullopt;
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
    if (command.empty()) {
        return false;
    }
    std::vector<std::string> texts = command;
    std::vector<char*> arguments;
    arguments.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    arguments.push_back(nullptr);
    const char* const start = folder.empty() ? g_get_home_dir() : folder.c_str();
    return g_spawn_async(start, arguments.data(), nullptr, G_SPAWN_DEFAULT, standAlone, nullptr,
                         nullptr, nullptr) == TRUE;
}

// Not by GDBus: it opens its connection without a bound, so that a bus that hangs would hold us.
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

} // namespace pelistra::linux

#include "menubar/notifier/ProgramName.h"

#include "menubar/ForeignText.h"
#include "menubar/OrderMemory.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <string_view>

namespace pelistra::menubar {

namespace {

constexpr std::size_t byteLimit = 4096;
constexpr std::array<std::string_view, 13> interpreters{
    "python", "java", "node", "electron", "perl",           "ruby", "wine",
    "bash",   "sh",   "gjs",  "mono",     "xdg-dbus-proxy", "bwrap"};

bool isInterpreter(std::string_view name) {
    return std::ranges::any_of(interpreters, [&](std::string_view interpreter) {
        // python3.11, wine64-preloader
        return name.starts_with(interpreter) &&
               (name.size() == interpreter.size() || interpreter != "sh");
    });
}

std::string read(pid_t process, const char* file) {
    // What the kernel makes has no size of its own, so that it cannot be read as a file is.
    std::array<char, byteLimit> bytes{};
    const std::string path = "/proc/" + std::to_string(process) + "/" + file;
    std::FILE* const stream = std::fopen(path.c_str(), "re"); // NOLINT(*-owning-memory)
    if (stream == nullptr) {
        return {};
    }
    const std::size_t length = std::fread(bytes.data(), 1, bytes.size(), stream);
    std::fclose(stream); // NOLINT(*-owning-memory)
    return {bytes.data(), length};
}

} // namespace

std::string programName(pid_t process) {
    std::string name = read(process, "comm");
    name.resize(std::min(name.find('\n'), name.size()));
    // The kernel keeps 15 bytes of it only; a script's name stands there, but not in the command.
    const std::string commandLine = read(process, "cmdline");
    const std::string command =
        std::filesystem::path(commandLine.substr(0, commandLine.find('\0'))).filename();
    if (command.starts_with(name)) {
        name = command;
    }
    return isInterpreter(name) ? std::string() : cleanText(name, identityCharacterLimit);
}

} // namespace pelistra::menubar

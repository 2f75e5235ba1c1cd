#include "platform/linux/programs/ProcessFacts.h"

#include "platform/linux/icons/PresentableText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace pelistra::linux {

namespace {

constexpr std::size_t fileByteLimit = std::size_t{64} * 1024;

std::filesystem::path folderOf(ProcessId process) {
    return std::filesystem::path("/proc") / std::to_string(process);
}

struct FileCloser {
    int descriptor;

    explicit FileCloser(int file) : descriptor(file) {}
    FileCloser(const FileCloser&) = delete;
    FileCloser& operator=(const FileCloser&) = delete;
    ~FileCloser() {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }
};

// Files of /proc say that they are empty, so they are read until they end.
std::string contentOf(const std::filesystem::path& file) {
    const FileCloser open(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::string content;
    std::array<char, 4096> part{};
    while (open.descriptor >= 0 && content.size() < fileByteLimit) {
        const ssize_t count = ::read(open.descriptor, part.data(), part.size());
        if (count <= 0) {
            break;
        }
        content.append(part.data(), static_cast<std::size_t>(count));
    }
    return content;
}

std::string nameOf(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

std::string executableOf(ProcessId process) {
    std::error_code error;
    const std::string path =
        std::filesystem::read_symlink(folderOf(process) / "exe", error).string();
    constexpr std::string_view deleted = " (deleted)";
    std::string_view name = path;
    if (name.ends_with(deleted)) {
        name.remove_suffix(deleted.size());
    }
    return nameOf(name);
}

// The fields of /proc/<pid>/stat behind the name, which may contain anything.
std::string_view fieldsBehindName(std::string_view stat) {
    const std::size_t end = stat.rfind(')');
    return end == std::string_view::npos ? std::string_view() : stat.substr(end + 1);
}

std::string_view field(std::string_view fields, int number) {
    for (int i = 0;; ++i) {
        const std::size_t begin = fields.find_first_not_of(' ');
        if (begin == std::string_view::npos) {
            return {};
        }
        fields.remove_prefix(begin);
        const std::size_t end = fields.find_first_of(" \n");
        if (i == number) {
            return fields.substr(0, end);
        }
        fields.remove_prefix(std::min(end, fields.size()));
    }
}

bool isInterpreter(std::string_view name) {
    constexpr std::array<std::string_view, 8> interpreters{"python", "perl", "ruby", "wish",
                                                           "tclsh",  "bash", "sh",   "gjs"};
    const std::size_t version = name.find_first_of("0123456789");
    return std::ranges::find(interpreters, name.substr(0, version)) != interpreters.end();
}

} // namespace

std::string invokedNameIn(const std::string& commandLine) {
    std::string_view rest = commandLine;
    const auto next = [&] {
        const std::size_t end = rest.find('\0');
        const std::string_view argument = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        return argument;
    };
    std::string program = nameOf(next());
    if (!isInterpreter(program)) {
        return program;
    }
    while (!rest.empty()) {
        const std::string_view argument = next();
        if (!argument.starts_with('-')) {
            const std::string script = nameOf(argument);
            return script.empty() ? program : script;
        }
    }
    return program;
}

std::string snapIdIn(const std::string& cgroups) {
    // ".../snap.<name>.<application>-<id>.scope" or ".../snap.<name>.<application>.service"
    constexpr std::string_view marker = "/snap.";
    const std::size_t at = cgroups.find(marker);
    if (at == std::string::npos) {
        return {};
    }
    const std::string_view unit =
        std::string_view(cgroups).substr(at + marker.size()).substr(0, fileByteLimit);
    const std::string_view parts = unit.substr(0, unit.find_first_of("/\n"));
    const std::size_t dot = parts.find('.');
    if (dot == std::string_view::npos) {
        return {};
    }
    std::string_view application = parts.substr(dot + 1);
    application = application.substr(0, application.find('.'));
    // The id behind the name is a UUID of 36 characters with its hyphen in front.
    constexpr std::size_t uuidLength = 37;
    if (parts.ends_with(".scope") && application.size() > uuidLength &&
        application[application.size() - uuidLength] == '-') {
        application.remove_suffix(uuidLength);
    }
    return std::string(parts.substr(0, dot)) + "_" + std::string(application);
}

std::string flatpakIdIn(const std::string& info) {
    const std::size_t group = info.find("[Application]\n");
    constexpr std::string_view key = "\nname=";
    const std::size_t at = group == std::string::npos ? group : info.find(key, group);
    if (at == std::string::npos) {
        return {};
    }
    const std::size_t begin = at + key.size();
    return info.substr(begin, info.find('\n', begin) - begin);
}

std::string ProcessFacts::displayName() const {
    for (const std::string* name : {&invokedAs, &executable, &shortName}) {
        if (!name->empty()) {
            return presentableText(*name);
        }
    }
    return {};
}

std::optional<std::string> startTimeOf(ProcessId process) {
    // The 3rd and the 22nd field of the file, counted here from behind the name.
    constexpr int stateField = 0;
    constexpr int startTimeField = 19;
    const std::string stat = process < 1 ? std::string() : contentOf(folderOf(process) / "stat");
    const std::string_view fields = fieldsBehindName(stat);
    const std::string_view state = field(fields, stateField);
    if (state.empty() || state == "Z" || state == "X") {
        return std::nullopt;
    }
    return std::string(field(fields, startTimeField));
}

ProcessFacts factsOf(ProcessId process) {
    const auto folder = folderOf(process);
    std::string shortName = contentOf(folder / "comm");
    shortName = shortName.substr(0, shortName.find('\n'));
    std::string executable = executableOf(process);
    std::string invokedAs = invokedNameIn(contentOf(folder / "cmdline"));
    if (isInterpreter(executable) && !isInterpreter(invokedAs)) {
        executable.clear();
    }
    return {.executable = std::move(executable),
            .invokedAs = std::move(invokedAs),
            .shortName = std::move(shortName),
            .flatpakId = flatpakIdIn(contentOf(folder / "root" / ".flatpak-info")),
            .snapId = snapIdIn(contentOf(folder / "cgroup"))};
}

std::vector<ProcessId> listedProcesses() {
    std::vector<ProcessId> processes;
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string& path = entry->path().native();
        const char* const last = path.data() + path.size();
        ProcessId process = 0;
        const auto [rest, failure] =
            std::from_chars(path.data() + path.rfind('/') + 1, last, process);
        if (failure == std::errc() && rest == last) {
            processes.push_back(process);
        }
    }
    return processes;
}

// Not every C library that has the call in its headers can be linked to it from C++.
ProcessHold::ProcessHold(ProcessId process)
    : descriptor_(process < 1 ? -1 : static_cast<int>(::syscall(SYS_pidfd_open, process, 0))) {}

ProcessHold::ProcessHold(ProcessHold&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

ProcessHold& ProcessHold::operator=(ProcessHold&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

ProcessHold::~ProcessHold() {
    if (holds()) {
        ::close(descriptor_);
    }
}

bool ProcessHold::runs() const {
    pollfd ended{.fd = descriptor_, .events = POLLIN, .revents = 0};
    return ::poll(&ended, 1, 0) == 0;
}

} // namespace pelistra::linux

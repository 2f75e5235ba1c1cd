#include "platform/posix/PrivateFile.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pelistra::posix {

namespace {

constexpr mode_t privateFolder = 0700;

std::string reason(int error) {
    return std::generic_category().message(error);
}

class Descriptor {
public:
    explicit Descriptor(int value) : value_(value) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (value_ >= 0) {
            ::close(value_);
        }
    }
    [[nodiscard]] bool isOpen() const { return value_ >= 0; }
    [[nodiscard]] int get() const { return value_; }

private:
    int value_;
};

void syncFolder(const std::filesystem::path& folder) {
    const Descriptor directory(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.isOpen()) {
        ::fsync(directory.get());
    }
}

// Makes one folder, its entry in the folder above synced.
int makeFolder(const std::filesystem::path& folder) {
    if (::mkdir(folder.c_str(), privateFolder) != 0) {
        return errno;
    }
    syncFolder(folder.parent_path());
    return 0;
}

// Makes the folder and its missing parents.
int makeFolders(const std::filesystem::path& folder) {
    if (folder.empty()) {
        return 0;
    }
    int error = makeFolder(folder);
    if (error == ENOENT && folder.has_parent_path() && folder.parent_path() != folder) {
        error = makeFolders(folder.parent_path());
        if (error == 0) {
            error = makeFolder(folder);
        }
    }
    return error == EEXIST ? 0 : error;
}

int writeAll(int descriptor, std::string_view content, Worth worth) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            return errno;
        }
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return worth == Worth::OutlivesProcess || ::fsync(descriptor) == 0 ? 0 : errno;
}

// StopSignals ends the program only once the file is written.
class NoDeadline {
public:
    NoDeadline() {
        sigset_t deadline;
        sigemptyset(&deadline);
        sigaddset(&deadline, SIGALRM);
        ::pthread_sigmask(SIG_BLOCK, &deadline, &before_);
    }
    NoDeadline(const NoDeadline&) = delete;
    NoDeadline& operator=(const NoDeadline&) = delete;
    ~NoDeadline() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

} // namespace

std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t byteLimit) {
    // Not blocking, so that a pipe in the file's place cannot hold us.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status{};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    std::string content;
    constexpr std::size_t chunk = 16384;
    std::vector<char> buffer(chunk);
    while (true) {
        const ssize_t got = ::read(file.get(), buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            return content;
        }
        content.append(buffer.data(), static_cast<std::size_t>(got));
        if (content.size() > byteLimit) {
            return std::nullopt;
        }
    }
}

std::string writeFileAtomically(const std::filesystem::path& path, std::string_view content,
                                Worth worth) {
    const NoDeadline noDeadline;
    if (const int error = makeFolders(path.parent_path()); error != 0) {
        return reason(error);
    }
    std::string temporary = path.string() + ".XXXXXX";
    int error = 0;
    {
        // mkostemp makes the file with mode 0600.
        const Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
        if (!file.isOpen()) {
            return reason(errno);
        }
        error = writeAll(file.get(), content, worth);
    }
    if (error == 0 && ::rename(temporary.c_str(), path.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        ::unlink(temporary.c_str());
        return reason(error);
    }
    if (worth == Worth::OutlivesPowerCut) {
        syncFolder(path.parent_path());
    }
    return {};
}

} // namespace pelistra::posix

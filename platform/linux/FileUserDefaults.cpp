#include "platform/linux/FileUserDefaults.h"

#include "platform/posix/Environment.h"
#include "platform/posix/PrivateFile.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <pwd.h>
#include <unistd.h>

namespace pelistra::desktop {

namespace {

std::filesystem::path homeFolder() {
    if (auto home = posix::environmentPath("HOME"); !home.empty()) {
        return home;
    }
    constexpr std::size_t bufferSize = 4096;
    std::array<char, bufferSize> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr) {
        return found->pw_dir;
    }
    return "/";
}

// Where a write has to go: the file itself when the path is a symbolic link to it.
std::filesystem::path writableTarget(const std::filesystem::path& path) {
    std::error_code error;
    auto target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target;
}

std::string describeDamage(const std::filesystem::path& path,
                           const std::vector<std::size_t>& lines) {
    if (lines.size() == 1) {
        return "Ignoring damaged line " + std::to_string(lines.front()) + " of " + path.string();
    }
    return "Ignoring " + std::to_string(lines.size()) + " damaged lines of " + path.string() +
           ", the first is line " + std::to_string(lines.front());
}

} // namespace

std::filesystem::path defaultsPath() {
    auto folder = posix::environmentPath("XDG_CONFIG_HOME");
    if (folder.empty()) {
        folder = homeFolder() / ".config";
    }
    return folder / "pelistra" / "defaults";
}

FileUserDefaults::FileUserDefaults(std::filesystem::path path, MainQueue& mainQueue, LogSink& log)
    : path_(std::move(path)), mainQueue_(mainQueue), logger_(log, "user-defaults") {
    std::string failure;
    if (const auto text = read(failure)) {
        text_ = DefaultsText(*text);
    } else {
        reportFailure("Cannot read " + path_.string() + ": " + failure);
    }
    if (!text_.damagedLines().empty()) {
        logger_.error(describeDamage(path_, text_.damagedLines()));
    }
}

FileUserDefaults::~FileUserDefaults() {
    synchronize();
}

bool FileUserDefaults::hasObject(std::string_view key) const {
    return value(key).has_value();
}

bool FileUserDefaults::boolForKey(std::string_view key) const {
    const auto found = value(key);
    // As on the other system, a number counts as true when it is not 0.
    const bool* flag = found ? std::get_if<bool>(&*found) : nullptr;
    return flag != nullptr ? *flag : numberForKey(key).value_or(0) != 0;
}

std::optional<double> FileUserDefaults::numberForKey(std::string_view key) const {
    const auto found = value(key);
    const double* number = found ? std::get_if<double>(&*found) : nullptr;
    return number != nullptr ? std::optional(*number) : std::nullopt;
}

void FileUserDefaults::setBool(bool value, std::string_view key) {
    set(key, value);
}

void FileUserDefaults::setNumber(double value, std::string_view key) {
    set(key, value);
}

std::optional<DefaultsValue> FileUserDefaults::value(std::string_view key) const {
    return text_.value(key);
}

void FileUserDefaults::set(std::string_view key, const DefaultsValue& value) {
    if (!DefaultsText::canHold(value) || text_.value(key) == value) {
        return;
    }
    text_.setValue(key, value);
    unwritten_.insert_or_assign(std::string(key), value);
    if (!writeIsScheduled_) {
        writeIsScheduled_ = true;
        mainQueue_.async(lifetime_.guard([this] {
            writeIsScheduled_ = false;
            synchronize();
        }));
    }
}

void FileUserDefaults::synchronize() {
    if (unwritten_.empty()) {
        return;
    }
    std::string failure;
    const auto present = read(failure);
    if (present) {
        DefaultsText fresh(*present);
        for (const auto& [key, value] : unwritten_) {
            fresh.setValue(key, value);
        }
        failure = posix::writeFileAtomically(writableTarget(path_), fresh.text());
        if (failure.empty()) {
            text_ = std::move(fresh);
            unwritten_.clear();
            reportedFailure_.clear();
            return;
        }
    }
    reportFailure("Cannot write " + path_.string() + ": " + failure);
}

std::optional<std::string> FileUserDefaults::read(std::string& failure) const {
    if (auto content = posix::readFile(path_, byteLimit)) {
        return content;
    }
    std::error_code error;
    const auto status = std::filesystem::status(path_, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        return std::string();
    }
    if (error) {
        failure = error.message();
    } else if (!std::filesystem::is_regular_file(status)) {
        failure = "it is not a regular file";
    } else if (::access(path_.c_str(), R_OK) != 0) {
        failure = std::generic_category().message(errno);
    } else {
        failure = "it is larger than " + std::to_string(byteLimit) + " bytes";
    }
    return std::nullopt;
}

void FileUserDefaults::reportFailure(const std::string& what) {
    if (std::exchange(reportedFailure_, what) != what) {
        logger_.error(what);
    }
}

} // namespace pelistra::desktop

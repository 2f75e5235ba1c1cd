#include "platform/linux/settings/FileUserDefaults.h"

#include "platform/linux/settings/FirstDefaultsForm.h"
#include "platform/posix/Environment.h"
#include "platform/posix/PrivateFile.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

#include <pwd.h>
#include <unistd.h>

namespace pelistra::linux {

namespace {

constexpr const char* defaultsGroup = "Defaults";

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

std::optional<double> numberIn(const std::string& text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    const bool isNumber =
        parsed.ec == std::errc() && parsed.ptr == end && std::isfinite(number) && !text.empty();
    return isNumber ? std::optional(number) : std::nullopt;
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
    if (auto file = read(failure)) {
        file_ = *std::move(file);
    } else {
        reportFailure("Cannot read " + path_.string() + ": " + failure);
    }
}

FileUserDefaults::~FileUserDefaults() {
    synchronize();
}

bool FileUserDefaults::hasObject(std::string_view key) const {
    return file_.has(defaultsGroup, KeyFile::keyFor(key));
}

bool FileUserDefaults::boolForKey(std::string_view key) const {
    // As on the other system, a number counts as true when it is not 0.
    const std::string value = file_.text(defaultsGroup, KeyFile::keyFor(key));
    return value == "true" || numberIn(value).value_or(0) != 0;
}

std::optional<double> FileUserDefaults::numberForKey(std::string_view key) const {
    return numberIn(file_.text(defaultsGroup, KeyFile::keyFor(key)));
}

void FileUserDefaults::setBool(bool value, std::string_view key) {
    set(key, value ? "true" : "false");
}

void FileUserDefaults::setNumber(double value, std::string_view key) {
    if (!std::isfinite(value)) {
        return;
    }
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.begin(), digits.end(), value);
    set(key, std::string(digits.begin(), written.ptr));
}

void FileUserDefaults::set(std::string_view key, const std::string& value) {
    const std::string name = KeyFile::keyFor(key);
    if (file_.text(defaultsGroup, name) == value) {
        return;
    }
    file_.setText(defaultsGroup, name, value);
    unwritten_.insert_or_assign(name, value);
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
    if (auto fresh = read(failure)) {
        for (const auto& [key, value] : unwritten_) {
            fresh->setText(defaultsGroup, key, value);
        }
        failure = posix::writeFileAtomically(writableTarget(path_), fresh->wholeText());
        if (failure.empty()) {
            file_ = *std::move(fresh);
            unwritten_.clear();
            reportedFailure_.clear();
            return;
        }
    }
    reportFailure("Cannot write " + path_.string() + ": " + failure);
}

std::optional<KeyFile> FileUserDefaults::read(std::string& failure) {
    const auto text = readText(failure);
    if (!text) {
        return std::nullopt;
    }
    std::string fault;
    if (auto file = KeyFile::parse(*text, fault)) {
        return file;
    }
    if (auto file = fromFirstDefaultsForm(*text, defaultsGroup)) {
        return file;
    }
    const auto file = writableTarget(path_);
    const std::string aside = file.string() + ".damaged";
    std::error_code error;
    std::filesystem::rename(file, aside, error);
    if (error) {
        failure = fault;
        return std::nullopt;
    }
    logger_.error(path_.string() + " is damaged and now kept as " + aside + ": " + fault);
    return KeyFile();
}

std::optional<std::string> FileUserDefaults::readText(std::string& failure) const {
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

} // namespace pelistra::linux

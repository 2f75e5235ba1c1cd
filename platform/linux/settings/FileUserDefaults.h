#pragma once

#include "base/Lifetime.h"
#include "base/Logger.h"
#include "platform/MainQueue.h"
#include "platform/UserDefaults.h"
#include "platform/linux/settings/KeyFile.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace pelistra::linux {

// Where the user's configuration of this program lies: pelistra/defaults under $XDG_CONFIG_HOME, or
// under ~/.config when that is unset or no absolute path.
[[nodiscard]] std::filesystem::path defaultsPath();

// The user defaults in one file: one value a line, true, false, a number or a text. Values are read
// once; what is set is written on the next turn of the queue and at the latest by the destructor. A
// write reads the file again and changes only what was set, so that what the user or another
// program wrote into it meanwhile stays. A file of version 0.1.0 is read, and takes the present
// form with the next write. One that cannot be understood is kept beside it, as "defaults.damaged".
class FileUserDefaults final : public UserDefaults {
public:
    // A file larger than this is none of ours.
    static constexpr std::size_t byteLimit = std::size_t{1024} * 1024;

    FileUserDefaults(std::filesystem::path path, MainQueue& mainQueue, LogSink& log);
    FileUserDefaults(const FileUserDefaults&) = delete;
    FileUserDefaults& operator=(const FileUserDefaults&) = delete;
    ~FileUserDefaults() override;

    [[nodiscard]] bool hasObject(std::string_view key) const override;
    [[nodiscard]] bool boolForKey(std::string_view key) const override;
    void setBool(bool value, std::string_view key) override;
    void setNumber(double value, std::string_view key) override;

    // The number under the key; empty when there is none or it is not one.
    [[nodiscard]] std::optional<double> numberForKey(std::string_view key) const;

    // Writes what is still unwritten now.
    void synchronize();

private:
    void set(std::string_view key, const std::string& value);
    // What is in the file; nothing in a missing or damaged one. No value when it is there and can
    // neither be read nor kept aside, with the reason in `failure`.
    [[nodiscard]] std::optional<KeyFile> read(std::string& failure);
    [[nodiscard]] std::optional<std::string> readText(std::string& failure) const;
    void reportFailure(const std::string& what);

    std::filesystem::path path_;
    MainQueue& mainQueue_;
    Logger logger_;
    KeyFile file_;
    std::map<std::string, std::string, std::less<>> unwritten_;
    bool writeIsScheduled_ = false;
    // The failure that has been logged; a lasting one is logged once.
    std::string reportedFailure_;
    Lifetime lifetime_;
};

} // namespace pelistra::linux

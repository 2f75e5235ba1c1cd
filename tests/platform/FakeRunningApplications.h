#pragma once

#include "platform/RunningApplications.h"
#include "tests/platform/Journal.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// What a running application is made of.
struct FakeRunningApplicationRecord {
    std::optional<std::string> localizedName;
    std::optional<std::string> bundleIdentifier;
    ImagePtr icon;
    std::optional<FileUrl> bundleUrl;
    bool refusesActivation = false;
};

// Journal: "runningApplication <pid>", "localizedName <pid>", "runningApplications",
// "open <path>", "activate <pid> <options>".
class FakeRunningApplications final : public RunningApplications {
public:
    explicit FakeRunningApplications(Journal& journal) : journal_(journal) {}

    [[nodiscard]] RunningApplicationPtr runningApplication(ProcessId processIdentifier) override;
    [[nodiscard]] std::vector<ProcessId> processIdentifiers() override;
    [[nodiscard]] bool open(const FileUrl& url) override;

    // By process id.
    std::map<ProcessId, FakeRunningApplicationRecord> running;
    bool refusesOpen = false;

private:
    Journal& journal_;
};

} // namespace pelistra::testing

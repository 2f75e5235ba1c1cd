#include "tests/platform/FakeRunningApplications.h"

#include <utility>

namespace pelistra::testing {

namespace {

class FakeRunningApplication final : public RunningApplication {
public:
    FakeRunningApplication(Journal& journal, ProcessId pid, FakeRunningApplicationRecord record)
        : journal_(journal), pid_(pid), record_(std::move(record)) {}

    [[nodiscard]] std::optional<std::string> localizedName() const override {
        journal_.note("localizedName " + std::to_string(pid_));
        return record_.localizedName;
    }
    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override {
        return record_.bundleIdentifier;
    }
    [[nodiscard]] ImagePtr icon() const override { return record_.icon; }
    [[nodiscard]] std::optional<FileUrl> bundleUrl() const override { return record_.bundleUrl; }
    [[nodiscard]] bool activate(ActivationOptions options) override {
        journal_.note("activate " + std::to_string(pid_) + " " + std::to_string(options));
        return !record_.refusesActivation;
    }

private:
    Journal& journal_;
    ProcessId pid_;
    FakeRunningApplicationRecord record_;
};

} // namespace

RunningApplicationPtr FakeRunningApplications::runningApplication(ProcessId processIdentifier) {
    journal_.note("runningApplication " + std::to_string(processIdentifier));
    const auto found = running.find(processIdentifier);
    if (found == running.end()) {
        return nullptr;
    }
    return std::make_shared<FakeRunningApplication>(journal_, processIdentifier, found->second);
}

std::vector<ProcessId> FakeRunningApplications::processIdentifiers() {
    journal_.note("runningApplications");
    std::vector<ProcessId> pids;
    for (const auto& [pid, record] : running) {
        pids.push_back(pid);
    }
    return pids;
}

bool FakeRunningApplications::open(const FileUrl& url) {
    journal_.note("open " + url.path);
    return !refusesOpen;
}

} // namespace pelistra::testing

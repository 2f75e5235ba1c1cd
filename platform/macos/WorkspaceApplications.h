#pragma once

#include "platform/RunningApplications.h"

namespace pelistra::macos {

// The running applications, by NSRunningApplication and the shared workspace.
class WorkspaceApplications final : public RunningApplications {
public:
    [[nodiscard]] RunningApplicationPtr runningApplication(ProcessId processIdentifier) override;
    [[nodiscard]] std::vector<ProcessId> processIdentifiers() override;
    [[nodiscard]] bool open(const FileUrl& url) override;
};

} // namespace pelistra::macos

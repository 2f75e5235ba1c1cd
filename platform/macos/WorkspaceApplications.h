#pragma once

#include "platform/RunningApplications.h"
#include "platform/macos/Owned.h"

#import <AppKit/AppKit.h>

#include <map>
#include <memory>

namespace pelistra::appkit {

// The running applications, by NSRunningApplication and the shared workspace.
class WorkspaceApplications final : public RunningApplications {
public:
    WorkspaceApplications();

    [[nodiscard]] RunningApplicationPtr runningApplication(ProcessId processIdentifier) override;
    [[nodiscard]] std::vector<ProcessId> processIdentifiers() override;
    [[nodiscard]] bool open(const FileUrl& url) override;

    // Keeps one picture object for each application as long as that runs.
    class Icons {
    public:
        [[nodiscard]] ImagePtr iconOf(NSRunningApplication* application);
        // Forgets the applications that no longer run.
        void keepOnly(const std::vector<ProcessId>& running);

    private:
        struct Entry {
            Owned<NSRunningApplication*> application;
            ImagePtr icon;
        };
        std::map<ProcessId, Entry> entries_;
    };

private:
    std::shared_ptr<Icons> icons_;
};

} // namespace pelistra::appkit

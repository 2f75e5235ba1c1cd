#include "platform/macos/WorkspaceApplications.h"

#include "platform/macos/AppKitImages.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/Owned.h"

#import <AppKit/AppKit.h>

namespace pelistra::macos {

namespace {

static_assert(activateAllWindows == NSApplicationActivateAllWindows);

class WorkspaceApplication final : public RunningApplication {
  public:
    explicit WorkspaceApplication(NSRunningApplication* application)
        : application_(Owned<NSRunningApplication*>::share(application)) {}

    [[nodiscard]] std::optional<std::string> localizedName() const override {
        return textOf([application_.get() localizedName]);
    }

    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override {
        return textOf([application_.get() bundleIdentifier]);
    }

    [[nodiscard]] ImagePtr icon() const override {
        NSImage* icon = [application_.get() icon];
        return icon == nil ? nullptr : std::make_shared<AppKitImage>(Owned<NSImage*>::share(icon));
    }

    [[nodiscard]] std::optional<FileUrl> bundleUrl() const override {
        const auto path = textOf([[application_.get() bundleURL] path]);
        return path ? std::optional(FileUrl{.path = *path}) : std::nullopt;
    }

    [[nodiscard]] bool activate(ActivationOptions options) override {
        return [application_.get()
                   activateWithOptions:static_cast<NSApplicationActivationOptions>(options)] == YES;
    }

  private:
    Owned<NSRunningApplication*> application_;
};

} // namespace

RunningApplicationPtr WorkspaceApplications::runningApplication(ProcessId processIdentifier) {
    NSRunningApplication* application =
        [NSRunningApplication runningApplicationWithProcessIdentifier:processIdentifier];
    return application == nil ? nullptr : std::make_shared<WorkspaceApplication>(application);
}

std::vector<ProcessId> WorkspaceApplications::processIdentifiers() {
    std::vector<ProcessId> result;
    for (NSRunningApplication* application in [[NSWorkspace sharedWorkspace] runningApplications]) {
        result.push_back([application processIdentifier]);
    }
    return result;
}

bool WorkspaceApplications::open(const FileUrl& url) {
    return
        [[NSWorkspace sharedWorkspace] openURL:[NSURL fileURLWithPath:nsString(url.path)]] == YES;
}

} // namespace pelistra::macos

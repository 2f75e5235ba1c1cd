#include "platform/macos/WorkspaceApplications.h"

#include "platform/macos/AppKitImages.h"
#include "platform/macos/Conversions.h"

#include <algorithm>
#include <utility>

namespace pelistra::appkit {

namespace {

static_assert(activateAllWindows == NSApplicationActivateAllWindows);

class WorkspaceApplication final : public RunningApplication {
  public:
    WorkspaceApplication(NSRunningApplication* application,
                         std::weak_ptr<WorkspaceApplications::Icons> icons)
        : application_(Owned<NSRunningApplication*>::share(application)), icons_(std::move(icons)) {
    }

    [[nodiscard]] std::optional<std::string> localizedName() const override {
        return textOf([application_.get() localizedName]);
    }

    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override {
        return textOf([application_.get() bundleIdentifier]);
    }

    [[nodiscard]] ImagePtr icon() const override {
        const auto icons = icons_.lock();
        return icons ? icons->iconOf(application_.get()) : nullptr;
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
    std::weak_ptr<WorkspaceApplications::Icons> icons_;
};

} // namespace

ImagePtr WorkspaceApplications::Icons::iconOf(NSRunningApplication* application) {
    Entry& entry = entries_[[application processIdentifier]];
    if (!entry.application || ![entry.application.get() isEqual:application]) {
        NSImage* icon = [application icon];
        entry = {.application = Owned<NSRunningApplication*>::share(application),
                 .icon = icon == nil ? nullptr
                                     : std::make_shared<AppKitImage>(Owned<NSImage*>::share(icon))};
    }
    return entry.icon;
}

void WorkspaceApplications::Icons::keepOnly(const std::vector<ProcessId>& running) {
    std::erase_if(entries_, [&running](const auto& entry) {
        return std::ranges::find(running, entry.first) == running.end();
    });
}

WorkspaceApplications::WorkspaceApplications() : icons_(std::make_shared<Icons>()) {}

RunningApplicationPtr WorkspaceApplications::runningApplication(ProcessId processIdentifier) {
    NSRunningApplication* application =
        [NSRunningApplication runningApplicationWithProcessIdentifier:processIdentifier];
    return application == nil ? nullptr
                              : std::make_shared<WorkspaceApplication>(application, icons_);
}

std::vector<ProcessId> WorkspaceApplications::processIdentifiers() {
    std::vector<ProcessId> result;
    for (NSRunningApplication* application in [[NSWorkspace sharedWorkspace] runningApplications]) {
        result.push_back([application processIdentifier]);
    }
    icons_->keepOnly(result);
    return result;
}

bool WorkspaceApplications::open(const FileUrl& url) {
    return
        [[NSWorkspace sharedWorkspace] openURL:[NSURL fileURLWithPath:nsString(url.path)]] == YES;
}

} // namespace pelistra::appkit

#pragma once

#include "platform/RunningApplications.h"
#include "platform/linux/icons/TrayView.h"
#include "platform/linux/programs/DesktopEntries.h"
#include "platform/linux/programs/Launcher.h"
#include "platform/linux/programs/ProcessFacts.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace pelistra::linux {

class ThemeIcon;

// Running applications on Linux: every process is one, and its desktop entry, where one is found,
// gives it the name in the user's language, the icon and the identifier (the desktop id).
//
// An entry is found by the id of the sandbox (Flatpak, snap), else by the class of the process's
// tray icon (StartupWMClass, or an entry of that name), else by the program that was started.
//
// The bundle URL is the path of the entry's file. No part of it is called "*.app", so whoever wants
// to open the bundle around a process finds none and asks to activate the process instead. That is
// where Linux does both: it raises the application's windows, and only when it has none it launches
// its entry.
class X11RunningApplications final : public RunningApplications {
public:
    // `display` is the name of the X display, empty for $DISPLAY.
    explicit X11RunningApplications(
        std::string display = {}, DesktopEntryPlaces places = DesktopEntryPlaces::ofEnvironment());
    X11RunningApplications(const X11RunningApplications&) = delete;
    X11RunningApplications& operator=(const X11RunningApplications&) = delete;
    ~X11RunningApplications() override;

    // The application must not be used after this object has died.
    [[nodiscard]] RunningApplicationPtr runningApplication(ProcessId processIdentifier) override;
    // Of processes that nobody has asked about, those that have ended and wait for their parent are
    // listed as well.
    [[nodiscard]] std::vector<ProcessId> processIdentifiers() override;
    // Launches the desktop entry that the URL names; any other URL is refused.
    [[nodiscard]] bool open(const FileUrl& url) override;

    // The name of the process behind a tray icon; empty when there is no such process. Remembers
    // the icon's class, by which the entry may be found.
    [[nodiscard]] std::optional<std::string> ownerName(const TrayIcon& icon);

private:
    class Application;
    // What is known of one process; outlived by the process or thrown away.
    struct Known {
        ProcessHold hold;
        // What tells it from others where it could not be held.
        std::optional<std::string> startTime;
        std::string name;
        DesktopEntryPtr entry;
        // When it was last seen to be the same process.
        std::chrono::steady_clock::time_point checked;

        // Whether the id is still that process, and it runs.
        [[nodiscard]] bool isStill(ProcessId process) const;
    };
    struct WindowClass {
        std::string instanceName;
        std::string className;
    };

    [[nodiscard]] const Known* lookUp(ProcessId process);
    // Null when there is no such process.
    [[nodiscard]] const Known* meet(ProcessId process);
    // Gives back the descriptors of those that have ended.
    void forgetEnded();
    [[nodiscard]] bool mayHoldAnother() const;
    [[nodiscard]] DesktopEntryPtr findEntry(ProcessId process, const ProcessFacts& facts);
    [[nodiscard]] ImagePtr icon(const std::string& name);
    [[nodiscard]] bool activate(ProcessId process);

    std::string display_;
    DesktopEntries entries_;
    std::unordered_map<ProcessId, Known> known_;
    std::unordered_map<ProcessId, WindowClass> classes_;
    std::map<std::string, std::shared_ptr<const ThemeIcon>> icons_;
    Launcher launcher_;
};

} // namespace pelistra::linux

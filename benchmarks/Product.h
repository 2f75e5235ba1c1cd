#pragma once

#include "benchmarks/Measuring.h"
#include "tests/desktop/harness/Desktop.h"

#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace pelistra::testing {

// A program, or two, that shows the tray icons of a desktop: ours, or what a user would pick
// instead.
struct Product {
    std::string name;
    // The Debian package; empty for ours.
    std::string package;
    // In the home of a private display.
    std::vector<SettingsFile> settings;
    std::vector<std::string> command;
    // What makes it hide every icon behind a button of its own; empty where there is no such thing.
    std::vector<SettingsFile> settingsForHiding = {};
    // What makes it show icons of the session bus as well.
    std::vector<SettingsFile> settingsForNotifiers = {};
    enum class Icons { Windows, Notifiers, Both };
    Icons icons = Icons::Windows;

    [[nodiscard]] bool isOurs() const { return package.empty(); }
    [[nodiscard]] bool canHide() const { return isOurs() || !settingsForHiding.empty(); }
    [[nodiscard]] bool showsWindows() const { return icons != Icons::Notifiers; }
    [[nodiscard]] bool showsNotifiers() const { return icons != Icons::Windows; }
    // Whether its package is installed.
    [[nodiscard]] bool isInstalled() const;
    // With the package's version, where there is one.
    [[nodiscard]] std::string fullName() const;
};

// Ours first.
[[nodiscard]] const std::vector<Product>& products();

// A product at work on a desktop.
class RunningProduct {
public:
    enum class Purpose {
        Show,
        // With its settings for hiding.
        Hide,
        // Like Show, without waiting for what it puts into the tray itself.
        Start,
        // With icons of the session bus; what it does with windows is not waited for.
        Notifiers
    };

    // Starts it and waits until somebody owns the tray; throws std::runtime_error otherwise. The
    // desktop must outlive this object.
    RunningProduct(Desktop& desktop, const Product& product, Purpose purpose = Purpose::Show);

    // The process groups that belong to it.
    [[nodiscard]] std::vector<pid_t> groups();
    [[nodiscard]] Memory memory();
    // What its processes have cost so far, wake-ups and milliseconds.
    [[nodiscard]] double wakeUps();
    [[nodiscard]] double processorMilliseconds();

    // Points at the button that hides and shows, and presses it; the release is what counts.
    // `endOfTray` is where a panel's part for icons ends.
    void press(bool toHide, int endOfTray);
    void release(bool toHide);

private:
    Desktop& desktop_;
    const Product& product_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace pelistra::testing

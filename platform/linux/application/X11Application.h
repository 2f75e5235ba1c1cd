#pragma once

#include "platform/Application.h"
#include "platform/x11/Connection.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <glib.h>

namespace pelistra::linux {

class X11Screens;

// The application as an X client, and its main loop.
class X11Application final : public Application {
public:
    X11Application(x11::Connection& connection, const X11Screens& screens,
                   std::vector<std::string> arguments);

    // There is no such policy: no window of this program asks for a taskbar entry.
    void setActivationPolicy(ActivationPolicy /*policy*/) override {}
    // A window that is shown is active and in front of all others already. On X11 an application is
    // not more than its windows: to raise the others as well would put one of them above that one.
    void activateIgnoringOtherApps() override {}
    void terminate() override;
    // Runs GLib's default main context until the application is terminated.
    void run();
    [[nodiscard]] std::optional<Event> currentEvent() const override { return currentEvent_; }
    [[nodiscard]] const std::vector<std::string>& arguments() const override { return arguments_; }
    // CFBundleName, CFBundleIdentifier and CFBundleShortVersionString.
    [[nodiscard]] std::optional<std::string> infoText(std::string_view key) const override;
    [[nodiscard]] ProcessId processIdentifier() const override;
    // The last known place when the server does not answer.
    [[nodiscard]] ScreenPoint mouseLocation() const override;

    // Runs the block with that event as the current one.
    void handleEvent(const Event& event, const std::function<void()>& block);

private:
    x11::Connection& connection_;
    const X11Screens& screens_;
    std::vector<std::string> arguments_;
    std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> loop_;
    std::optional<Event> currentEvent_;
    mutable ScreenPoint lastMouseLocation_;
};

} // namespace pelistra::linux

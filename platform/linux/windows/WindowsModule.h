#pragma once

#include "base/Subscription.h"
#include "platform/Application.h"
#include "platform/MainQueue.h"
#include "platform/Panel.h"
#include "platform/Window.h"
#include "platform/linux/screens/Coordinates.h"
#include "platform/x11/Connection.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::linux {

// What shows windows is a module of its own, loaded when the first one is asked for: nothing else
// of this program needs a toolkit. This is all that the two know of each other.

// What the module needs of the process; all of it outlives the module's objects.
struct WindowServices {
    const x11::Connection& connection;
    // Calls the handler for every event of the connection until the token dies.
    std::function<SubscriptionPtr(std::function<void(const xcb_generic_event_t&)>)> observeEvents;
    // Calls the handler when the server answers again after it was stalled, until the token dies.
    std::function<SubscriptionPtr(std::function<void()>)> observeRecoveries;
    // Whether our own menu bar is dark; empty under any other tray. And what calls the handler
    // after each change of the tray, until the token dies.
    std::function<std::optional<bool>()> barIsDark;
    std::function<SubscriptionPtr(std::function<void()>)> observeBar;
    MainQueue& mainQueue;
    // The application that views of the core's own making ask for the event being handled.
    const Application& application;
    // Runs the block with that event as the application's current one.
    std::function<void(const Event& event, const std::function<void()>& block)> handleEvent;
    // The translation between root pixels and points that holds now.
    std::function<Coordinates()> coordinates;
    // How much larger windows are than the user's resource database says; 1 as a rule.
    std::function<double()> scaleBeyondResources;
};

class WindowsModule {
public:
    WindowsModule() = default;
    WindowsModule(const WindowsModule&) = delete;
    WindowsModule& operator=(const WindowsModule&) = delete;
    virtual ~WindowsModule() = default;

    [[nodiscard]] virtual Windows& windows() = 0;
    [[nodiscard]] virtual Panels& panels() = 0;

    // Shows a plain text beside the item, whose frame is in root pixels; the item stands on a dark
    // bar or on a bright one. There is one tooltip at most.
    virtual void showToolTip(std::string_view text, const RootRect& item, bool onDark) = 0;
    virtual void hideToolTip() = 0;

    // Whether the module's own connection has made that window.
    [[nodiscard]] virtual bool hasMade(xcb_window_t window) const = 0;
    // The windows on the screen.
    [[nodiscard]] virtual std::vector<xcb_window_t> shownWindows() const = 0;
};

// The function through which the module is entered, by its name and its type: a new module, which
// the caller owns. Null when no window can be shown, with the reason in `failure`.
inline constexpr const char* windowsModuleEntry = "pelistraWindowsModule";
using WindowsModuleEntry = WindowsModule* (*)(const WindowServices& services, std::string& failure);
extern "C" WindowsModule* pelistraWindowsModule(const WindowServices& services,
                                                std::string& failure);

} // namespace pelistra::linux

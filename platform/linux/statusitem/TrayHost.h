#pragma once

#include "base/HandlerList.h"
#include "base/Logger.h"
#include "platform/linux/loop/EventPump.h"
#include "platform/linux/screens/Coordinates.h"
#include "platform/linux/screens/ScreenLayout.h"
#include "platform/x11/Connection.h"
#include "ui/Color.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace pelistra::linux {

// The system tray that is there now, as far as a program with icons in it needs to know it.
struct Tray {
    // The owner of the tray selection.
    xcb_window_t owner = XCB_WINDOW_NONE;
    // The visual that icons should have.
    x11::Connection::Visual visual;
    // The colour of texts and symbols.
    std::optional<ui::Rgb> foreground;
    // What only our own menu bar says: its window, the height of that, its scale, its strut, the
    // areas beside the camera housing.
    xcb_window_t barWindow = XCB_WINDOW_NONE;
    std::optional<int> barHeight;
    std::optional<double> scale;
    std::optional<Strut> strut;
    std::optional<std::array<RootRect, 2>> auxiliaryAreas;
};

// Whether that foreground is one of a dark bar.
[[nodiscard]] bool isLight(const ui::Rgb& foreground);

// Watches the system tray come, change and go.
class TrayHost {
public:
    enum class Change { Arrived, Changed, Left };

    // Selects the events of the root window that the front end needs (its structure); nobody else
    // may select events on the root through this connection.
    TrayHost(x11::Connection& connection, EventPump& pump, LogSink& log);
    TrayHost(const TrayHost&) = delete;
    TrayHost& operator=(const TrayHost&) = delete;
    ~TrayHost() = default;

    // Looks for the tray for the first time; says so in the log when there is none.
    void start();

    [[nodiscard]] const std::optional<Tray>& tray() const { return tray_; }
    // Whether our menu bar is dark; empty under any other tray.
    [[nodiscard]] std::optional<bool> barIsDark() const;
    // Device pixels per point: what the menu bar says, else the resolution of the user's resource
    // database (96 dpi = 1), else 1.
    [[nodiscard]] double scale() const;
    // The windows that our menu bar has docked, asked afresh; empty under any other tray.
    [[nodiscard]] std::optional<std::vector<std::uint32_t>> dockedWindows() const;
    // How often that owner, or what its place depends on, has changed since it is the tray, as far
    // as the server has said until now; empty when its changes are not heard (yet), or when the
    // server says too much at once. Two equal answers: nothing has changed in between.
    [[nodiscard]] std::optional<std::uint64_t> changesOf(xcb_window_t owner) const;
    // Asks the tray to take the window.
    void requestDock(xcb_window_t window) const;

    // Calls the handler after each change, with tray() as it is then, until the token dies.
    [[nodiscard]] SubscriptionPtr observe(std::function<void(Change)> handler);

private:
    enum Name : std::uint8_t {
        Selection,
        Manager,
        Opcode,
        VisualProperty,
        Colors,
        BarWindow,
        BarItems,
        BarDetails,
        BarSerial,
        BarScale,
        BarAreas,
        StrutPartial,
        NameCount
    };

    void noteChange(const xcb_generic_event_t& event);
    void handle(const xcb_generic_event_t& event);
    void handleMessage(const xcb_client_message_event_t& message);
    void look();
    void lose();
    // Describes the tray of that owner and tells of it; leaves things as they are when the server
    // does not answer.
    void update(xcb_window_t owner, Change change);
    void recover();
    [[nodiscard]] Tray describe(xcb_window_t owner) const;
    void describeBar(Tray& tray) const;

    x11::Connection& connection_;
    EventPump& pump_;
    Logger logger_;
    std::array<xcb_atom_t, NameCount> atoms_{};
    std::optional<Tray> tray_;
    // What the resource database said last.
    mutable double resourceScale_ = 1;
    std::uint64_t changes_ = 0;
    HandlerList<Change> observers_;
    SubscriptionPtr earlyEvents_;
    SubscriptionPtr events_;
    SubscriptionPtr recoveries_;
};

} // namespace pelistra::linux

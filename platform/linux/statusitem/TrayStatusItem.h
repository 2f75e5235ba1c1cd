#pragma once

#include "platform/MainQueue.h"
#include "platform/StatusBar.h"
#include "platform/linux/screens/Coordinates.h"
#include "platform/linux/statusitem/StatusItemPicture.h"
#include "platform/linux/statusitem/TrayIconWindow.h"
#include "platform/linux/statusitem/TrayStatusButton.h"

#include <memory>
#include <optional>
#include <string>

namespace pelistra::linux {

class FileUserDefaults;
class X11Application;
class StatusToolTip;
class TrayHost;
class WindowCanvas;
class X11Screens;

// What every status item uses; all of it outlives the items.
struct StatusItemServices {
    x11::Connection& connection;
    TrayHost& trayHost;
    const X11Screens& screens;
    X11Application& application;
    FileUserDefaults& defaults;
    const TrayIconAtoms& atoms;
    const WindowCanvas& canvas;
    StatusToolTip& toolTip;
};

// A status item: while it is wanted and a tray is there, an icon in the tray; what it is to show
// lives on without one.
class TrayStatusItem final : public StatusItem {
public:
    // What the item asks of its status bar.
    struct Callbacks {
        // It is to be docked on the next turn.
        std::function<void()> scheduleDocking;
        // The tray has thrown it out.
        std::function<void(TrayStatusItem&)> ejected;
        // It has asked the tray for more length than it had.
        std::function<void(TrayStatusItem&)> grown;
        std::function<void(TrayStatusItem&)> destroyed;
    };

    TrayStatusItem(const StatusItemServices& services, Callbacks callbacks, double length);
    TrayStatusItem(const TrayStatusItem&) = delete;
    TrayStatusItem& operator=(const TrayStatusItem&) = delete;
    ~TrayStatusItem() override;

    void setAutosaveName(std::string_view name) override;
    void setVisible(bool visible) override;
    void setLength(double length) override;
    [[nodiscard]] double length() const override { return length_; }
    [[nodiscard]] std::shared_ptr<StatusButton> button() const override { return button_; }

    // Asks the tray to take the item, if it is wanted and is not in a tray; with a rank, under a
    // name that puts it right of those with a lower one where a tray sorts by names.
    void dock(std::optional<int> rank);
    // Takes it out of the tray, if it is in one.
    void undock();
    // In the tray and mapped.
    [[nodiscard]] bool isDocked() const { return embedded_ && mapped_; }
    [[nodiscard]] bool isWanted() const { return visible_; }
    // XCB_WINDOW_NONE while there is no window.
    [[nodiscard]] xcb_window_t window() const;
    // Where it is in the tray, in root pixels; empty while it is in none.
    [[nodiscard]] std::optional<RootRect> rootFrame() const;
    // It is longer than icons are, and in a tray.
    [[nodiscard]] bool needsRoom() const;
    // The tray gives it much less length than it needs.
    [[nodiscard]] bool lacksRoom() const;
    // Takes no more length than an icon until it is docked anew.
    void holdBack();
    // The tray looks different now, or its scale has changed.
    void refreshLook();
    // Writes down the place that the tray has given it, if the tray says so.
    void savePosition();

    void handle(const xcb_generic_event_t& event);

private:
    void handleReparent(const xcb_reparent_notify_event_t& event);
    void handleConfigure(const xcb_configure_notify_event_t& event);
    void handlePress(const xcb_button_press_event_t& event);
    void handleRelease(const xcb_button_release_event_t& event);
    void handleProperty(const xcb_property_notify_event_t& event);
    void handleCrossing(const xcb_enter_notify_event_t& event, bool enters);
    void setHovered(bool hovered);
    void trigger(EventType type, std::uint16_t state);
    void requestLength();
    void requestSize(int width, int height);
    void redraw();
    [[nodiscard]] ui::Rgb foreground() const;
    [[nodiscard]] int pixelHeight() const;
    [[nodiscard]] int pixelLength() const;
    [[nodiscard]] std::optional<ScreenRect> frame() const;
    [[nodiscard]] std::string positionKey() const;

    StatusItemServices services_;
    Callbacks callbacks_;
    std::shared_ptr<TrayStatusButton> button_;
    std::string name_;
    bool visible_ = true;
    double length_;

    std::unique_ptr<TrayIconWindow> window_;
    bool embedded_ = false;
    bool mapped_ = false;
    // What the tray has given it, in device pixels.
    int width_ = 0;
    int height_ = 0;
    // What it has asked for last, in device pixels.
    int askedWidth_ = 0;
    int askedHeight_ = 0;
    bool heldBack_ = false;
    bool hovered_ = false;
    // The button that went down on the item and is still down; 0 for none.
    xcb_button_t pressed_ = 0;
    // An Alt-click that somebody else's grab has taken has begun on the item.
    bool altClickIsElsewhere_ = false;
};

} // namespace pelistra::linux

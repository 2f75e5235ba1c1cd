#pragma once

#include "menubar/ActiveWindow.h"
#include "menubar/BarWindow.h"
#include "menubar/Docking.h"
#include "menubar/DragInput.h"
#include "menubar/ItemList.h"
#include "menubar/Metrics.h"
#include "menubar/Monitors.h"
#include "menubar/Options.h"
#include "menubar/OrderFile.h"
#include "menubar/Painter.h"
#include "menubar/Publisher.h"
#include "menubar/Server.h"
#include "menubar/TraySelection.h"
#include "menubar/XSettingsWatch.h"
#include "menubar/notifier/NotifierDocking.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::menubar {

// The running bar: takes events, and after each batch of them does once what they ask for.
class MenuBar {
public:
    // `server` must outlive this; `tray` is owned from now on.
    MenuBar(const Server& server, std::unique_ptr<TraySelection> tray, Options options,
            OrderFile orderFile);

    // How run() came to its end.
    enum class End { Stopped, TrayTaken, ServerGone };

    // Serves until `stopDescriptor` becomes readable, another tray takes over, or the server goes.
    // Every icon is told to go home before it returns, unless the server is gone.
    End run(int stopDescriptor);

private:
    // An item that the user drags, from the press of the button on.
    struct Drag {
        xcb_window_t client = XCB_NONE;
        int pressX = 0;
        int pointerX = 0;
        // From the item's left edge to the pointer.
        int grip = 0;
        // The pointer went far enough to mean it.
        bool lifted = false;
    };

    // Sleeps until something comes, or something is due.
    void sleep(int stopDescriptor);
    // Handles what has come; returns whether anything had.
    bool drain();
    void handle(xcb_generic_event_t& event);
    void handleClientMessage(const xcb_client_message_event_t& event);
    void handleProperty(const xcb_property_notify_event_t& event);
    void handleConfigureRequest(const xcb_configure_request_event_t& event);
    // `sequence`: of the last request of ours that the server had handled by then.
    void handleConfigured(const xcb_configure_notify_event_t& event, std::uint32_t sequence);
    void handleReparent(const xcb_reparent_notify_event_t& event);
    void handleDestroy(const xcb_destroy_notify_event_t& event);
    void handleMapped(const xcb_map_notify_event_t& event);
    void handleUnmapped(const xcb_unmap_notify_event_t& event);
    void handleDamage(xcb_drawable_t drawable);
    void handlePress(const xcb_button_press_event_t& event);
    void handleMotion(const xcb_motion_notify_event_t& event);
    void handleRelease(const xcb_button_release_event_t& event);
    void handleKey(const xcb_key_press_event_t& event);

    // Does what the events of a batch left to be done, and shows it.
    void settle();
    // Writes down the order of the items, then tells others.
    void keepOrder();
    void publishItems();
    void followScreen();
    void followDesktop();
    void followDrag();
    void layOutItems();
    // Moves and resizes what the layout changed; tells the client.
    void placeItem(DockedItem& item, int x, int width);
    void tellPlace(const DockedItem& item) const;
    void showTitle();
    void endDrag(bool keep);
    // The item is about to go: a drag of it ends, what it covered is painted again.
    void clearPlace(const DockedItem& item);
    [[nodiscard]] DockedItem* lifted() const;

    const Server* server_;
    Options options_;
    OrderFile orderFile_;
    OrderMemory order_;
    std::unique_ptr<TraySelection> tray_;
    BarWindow window_;
    ItemList items_;
    Docking docking_;
    Painter painter_;
    NotifierDocking notifiers_;
    Publisher publisher_;
    DragInput dragInput_;
    ActiveWindow activeWindow_;
    XSettingsWatch settings_;

    Metrics metrics_;
    // The bar's height that the window manager has agreed to.
    int heightGiven_ = 0;
    DesktopThemes desktopThemes_;
    std::optional<Gap> housing_;
    std::optional<Drag> drag_;
    std::optional<End> end_;

    // What the events of one batch left to be done.
    bool monitorsStale_ = true;
    bool settingsStale_ = true;
    bool resourcesStale_ = true;
    bool activeWindowStale_ = true;
    // Something about the items that others can see may be new.
    bool itemsChanged_ = true;
    // A drag has ended: items are to be told their positions.
    bool positionsDue_ = false;
};

} // namespace pelistra::menubar

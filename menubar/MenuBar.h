#pragma once

#include "menubar/ActiveWindow.h"
#include "menubar/BarGeometry.h"
#include "menubar/BarWindow.h"
#include "menubar/Docking.h"
#include "menubar/ItemDrag.h"
#include "menubar/ItemEvents.h"
#include "menubar/ItemList.h"
#include "menubar/ItemPlacing.h"
#include "menubar/Options.h"
#include "menubar/OrderFile.h"
#include "menubar/Painter.h"
#include "menubar/Publisher.h"
#include "menubar/Server.h"
#include "menubar/Surroundings.h"
#include "menubar/TraySelection.h"
#include "menubar/notifier/NotifierDocking.h"

#include <chrono>
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
    // Sleeps until something comes, or something is due.
    void sleep(int stopDescriptor);
    // Handles what has come; returns whether anything had.
    bool drain();
    void handle(xcb_generic_event_t& event);
    void handleClientMessage(const xcb_client_message_event_t& event);
    void handleMapped(xcb_window_t window);
    void handleConfigured(const xcb_configure_notify_event_t& event);
    void handlePress(const xcb_button_press_event_t& event);
    void handleRelease(const xcb_button_release_event_t& event);

    // Does what the events of a batch left to be done, and shows it.
    void settle();
    // Writes down the order of the items, then tells others.
    void keepOrder();
    void publishItems();
    // Takes over what is new around the bar.
    void followSurroundings();
    // The camera housing as it is drawn, in device pixels from the bar's left edge.
    [[nodiscard]] std::optional<Gap> drawnHousing() const;

    const Server* server_;
    Options options_;
    OrderFile orderFile_;
    OrderMemory order_;
    std::unique_ptr<TraySelection> tray_;
    BarWindow window_;
    BarGeometry geometry_;
    ItemList items_;
    Docking docking_;
    Painter painter_;
    ItemDrag drag_;
    ItemPlacing placing_;
    ItemEvents itemEvents_;
    NotifierDocking notifiers_;
    Publisher publisher_;
    ActiveWindow activeWindow_;
    Surroundings surroundings_;

    // The bar's height that the window manager has agreed to.
    int heightGiven_ = 0;
    std::optional<End> end_;
    // When to tidy up after the start; empty once that is done.
    std::optional<std::chrono::steady_clock::time_point> tidyingDue_;

    // What the events of one batch left to be done.
    bool activeWindowStale_ = true;
    // Something about the items that others can see may be new.
    bool itemsChanged_ = true;
};

} // namespace pelistra::menubar

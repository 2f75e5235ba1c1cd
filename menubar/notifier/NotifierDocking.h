#pragma once

#include "menubar/ItemList.h"
#include "menubar/Metrics.h"
#include "menubar/Monitors.h"
#include "menubar/OrderMemory.h"
#include "menubar/Painter.h"
#include "menubar/Server.h"
#include "menubar/Theme.h"
#include "menubar/notifier/IconReader.h"
#include "menubar/notifier/MenuProgram.h"
#include "menubar/notifier/NotifierHost.h"
#include "menubar/notifier/ToolTip.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::menubar {

// Gives each icon of the session bus a window in the bar, which to everybody else is a docked
// window like any other, and passes on what the user does with it.
class NotifierDocking {
public:
    using Clock = NotifierHost::Clock;

    // What icons look like depends on.
    struct Look {
        Metrics metrics;
        Palette palette;
        std::string iconTheme;
        // Of the X server; empty for $DISPLAY.
        std::string display;

        bool operator==(const Look&) const = default;
    };

    // All must outlive this. `bar` is the window that the icons' containers become children of.
    NotifierDocking(const Server& server, xcb_window_t bar, ItemList& items, OrderMemory& order,
                    Painter& painter);
    NotifierDocking(const NotifierDocking&) = delete;
    NotifierDocking& operator=(const NotifierDocking&) = delete;
    ~NotifierDocking();

    // From now on there are icons of the session bus.
    void start(RememberedItems memory);

    // What to wait for, and when process() is to be called although nothing came.
    [[nodiscard]] std::vector<pollfd> descriptors() const;
    [[nodiscard]] std::optional<Clock::time_point> due() const;
    // Handles what has come. Returns whether anything had.
    bool process();

    // Brings the bar's items up to date. Returns whether anything about them has changed.
    bool settle(const Look& look);
    // Writes down which icons there are.
    void remember();

    // The user's deeds, if the event is about one of these icons; `bar` is the bar's frame in root
    // coordinates.
    void press(const xcb_button_press_event_t& event, const PixelRect& bar);
    void release(const xcb_button_release_event_t& event, const PixelRect& bar);
    void enter(const xcb_enter_notify_event_t& event, const PixelRect& bar);
    void leave(const xcb_leave_notify_event_t& event);

private:
    struct Icon;

    void update(Icon& icon, NotifierItem& source);
    void dock(Icon& icon, const NotifierItem& source);
    void ask(Icon& icon, const ItemProperties& properties);
    void show(Icon& icon, const ItemProperties& properties);
    void undock(const Icon& icon);
    void takeAnswers();
    // Opens the item's menu under its icon, or has its program open one.
    void openMenu(const Icon& icon, NotifierItem& source, const PixelRect& bar);
    void showToolTip();
    [[nodiscard]] IconRequest requestFor(const std::string& name,
                                         const ItemProperties& properties) const;
    // Null when the window is none of ours.
    [[nodiscard]] Icon* find(xcb_window_t window) const;
    // Null without an icon, and when its item is no longer known.
    [[nodiscard]] NotifierItem* sourceOf(const Icon* icon) const;

    const Server* server_;
    xcb_window_t bar_;
    ItemList* items_;
    OrderMemory* order_;
    Painter* painter_;
    std::unique_ptr<NotifierHost> host_;
    IconReader reader_;
    MenuProgram menus_;
    Look look_;
    ColormapHandle colormap_;
    ToolTip toolTip_;
    // Where the bar was when the pointer came to that icon.
    PixelRect toolTipBar_;
    std::vector<std::unique_ptr<Icon>> icons_;
    bool changed_ = false;
};

} // namespace pelistra::menubar

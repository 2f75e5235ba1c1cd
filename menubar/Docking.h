#pragma once

#include "menubar/Complaints.h"
#include "menubar/ItemList.h"
#include "menubar/Metrics.h"
#include "menubar/OrderMemory.h"
#include "menubar/Server.h"

#include <string>
#include <vector>

namespace pelistra::menubar {

// Brings windows into the bar and out of it, and keeps what is known of them up to date.
class Docking {
public:
    // More than any desktop has; a program that docks without end is refused beyond it.
    static constexpr std::size_t itemLimit = 2'000;

    // All must outlive this. `bar` is the window that containers become children of.
    Docking(const Server& server, xcb_window_t bar, ItemList& items, OrderMemory& order)
        : server_(&server), bar_(bar), items_(&items), order_(&order) {}

    // A window asks to be docked; it happens at the next settle(). One that is docked already is
    // not docked again, the root and the bar's own windows never.
    void request(xcb_window_t client);

    // Does what the events of a batch left to be done: docks, reads again what changed, maps and
    // unmaps. A fixed number of round trips whatever the number of items.
    void settle(const Metrics& metrics);

    // The server says that the client lives in its container now.
    void arrived(DockedItem& item);
    // The client asks to be mapped, or unmapped itself.
    void mappingChanged(DockedItem& item) const;
    // The client is destroyed.
    void forget(xcb_window_t client);
    // The client lives elsewhere now, by its own wish or because somebody took it. When it has only
    // just come, the next settle() fetches it back, a bounded number of times.
    void letGo(xcb_window_t client, xcb_window_t newParent);
    // An error answered a request about an item. Returns whether it was about one.
    bool fail(const xcb_generic_error_t& error);

    // Hands every client back to the root window, unmapped and alive.
    void releaseAll();

private:
    struct Arrival;
    struct Question;
    struct Request {
        xcb_window_t client = XCB_NONE;
        Retrieval retrieval;
    };

    void dockRequested(const Metrics& metrics);
    // Why a window cannot be docked; empty when it can.
    [[nodiscard]] std::string faultOf(const Arrival& arrival) const;
    void dock(const Arrival& arrival, const Retrieval& retrieval, const Metrics& metrics);
    [[nodiscard]] std::unique_ptr<DockedItem> itemFor(const Arrival& arrival,
                                                      const Metrics& metrics) const;
    // Takes the client into a container of its own.
    void embed(DockedItem& item, const xcb_get_window_attributes_reply_t& attributes) const;
    // Stops listening to a client that lives on outside the bar.
    void disown(const DockedItem& item) const;
    void readStale();
    // The server says that there is no such window.
    void lose(DockedItem& item);
    void applyMapping(DockedItem& item) const;
    void release(DockedItem& item) const;

    const Server* server_;
    xcb_window_t bar_;
    ItemList* items_;
    OrderMemory* order_;
    std::vector<Request> requested_;
    Complaints complaints_;
};

} // namespace pelistra::menubar

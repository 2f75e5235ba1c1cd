#pragma once

#include "menubar/BarGeometry.h"
#include "menubar/ItemDrag.h"
#include "menubar/ItemList.h"
#include "menubar/Painter.h"
#include "menubar/Server.h"

namespace pelistra::menubar {

// Brings every item to the place that the layout gives it, and tells its program.
class ItemPlacing {
public:
    // All must outlive this; `geometry` is the bar's as it is at any time.
    ItemPlacing(const Server& server, const BarGeometry& geometry, ItemList& items, ItemDrag& drag,
                Painter& painter);

    // Returns whether an item has another place or size than before.
    bool layOut();

    // How far the bar's title may reach, in device pixels from the bar's left edge: to the leftmost
    // item or to the camera housing.
    [[nodiscard]] int titleLimit() const;

private:
    // Moves and resizes what the layout changed.
    bool place(DockedItem& item, int x, int width);
    void tellPlace(const DockedItem& item) const;

    const Server* server_;
    const BarGeometry* geometry_;
    ItemList* items_;
    ItemDrag* drag_;
    Painter* painter_;
};

} // namespace pelistra::menubar

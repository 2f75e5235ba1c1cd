#pragma once

#include "menubar/Artwork.h"
#include "menubar/DockedItem.h"
#include "menubar/Layout.h"
#include "menubar/Metrics.h"
#include "menubar/Server.h"
#include "menubar/Theme.h"
#include "menubar/XResource.h"

#include <optional>
#include <span>
#include <vector>

namespace pelistra::menubar {

// Paints the bar's window: background, title, camera housing, and the docked windows' own pictures
// over it. Everything is composed beside the screen first and then shown at once.
class Painter {
public:
    // What the whole picture depends on.
    struct Look {
        int width = 0;
        Metrics metrics;
        Palette palette;
        // In device pixels from the bar's left edge.
        std::optional<Gap> housing;

        bool operator==(const Look&) const = default;
    };

    // `bar` has the root window's visual and must outlive this.
    Painter(const Server& server, xcb_window_t bar);

    // Everything is painted anew when the look has changed. Returns whether it has.
    bool setLook(const Look& look);
    // The title is shown from the left, up to `limit` device pixels.
    void setTitle(const BarTitle& title, int limit);

    // Gives a container the background that shows through its client.
    void setBackground(const DockedItem& item) const;

    // Gives a window of our own, of that depth, that picture; what shows through it is the bar.
    void fill(xcb_window_t window, std::uint8_t depth, const ArgbImage& image) const;

    // [begin, end) device pixels of the bar are to be composed anew.
    void invalidate(int begin, int end);
    void invalidate(const DockedItem& item) { invalidate(item.x, item.x + item.width); }
    // The window lost what it showed; it is still composed.
    void expose() { exposed_ = true; }

    // Brings the window up to date. `lifted`, if any, is drawn above the others on a plate.
    void paint(std::span<DockedItem* const> items, const DockedItem* lifted);

    // How far to both sides of an item its plate reaches.
    [[nodiscard]] int plateReach() const { return plateMargin(look_.metrics); }

private:
    // A picture of ours on the server.
    struct Layer {
        PixmapHandle pixmap;
        PictureHandle picture;
        int width = 0;
        int height = 0;
    };

    [[nodiscard]] Layer makeLayer(std::uint8_t depth, xcb_render_pictformat_t format, int width,
                                  int height) const;
    [[nodiscard]] Layer upload(const ArgbImage& image) const;
    void composeBackdrop();
    void composeItem(DockedItem& item);
    void composePlate(const DockedItem& item);
    [[nodiscard]] bool isInvalid(const DockedItem& item) const;
    [[nodiscard]] int height() const { return look_.metrics.barHeight(); }

    const Server* server_;
    xcb_window_t bar_;
    ContextHandle context_;
    Look look_;
    BarTitle title_;
    int titleLimit_ = 0;

    Layer column_;
    Layer columnTile_;
    Layer titleLayer_;
    Layer housing_;
    // Background, title and housing.
    Layer backdrop_;
    // What the window shows.
    Layer composed_;
    Layer plate_;
    int plateWidth_ = 0;

    std::vector<Gap> invalid_;
    bool backdropStale_ = true;
    bool exposed_ = false;
};

} // namespace pelistra::menubar

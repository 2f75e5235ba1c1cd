#include "menubar/Publisher.h"

#include "menubar/Options.h"
#include "platform/x11/Properties.h"
#include "platform/x11/PublishedItems.h"

#include <algorithm>
#include <array>
#include <random>
#include <unordered_map>

namespace pelistra::menubar {

namespace {

constexpr std::uint32_t horizontal = 0;

std::uint32_t word(int value) {
    return static_cast<std::uint32_t>(std::max(value, 0));
}

x11::PublishedItem detailsOf(const DockedItem& item, const PixelRect& bar) {
    return {.window = item.client,
            .x = bar.x + item.x,
            .y = bar.y,
            .width = item.width,
            .height = item.height,
            .title = item.texts.title,
            .instance = item.texts.instance,
            .className = item.texts.className,
            .process = item.isOwn() ? std::optional(item.process) : std::nullopt};
}

} // namespace

Publisher::Publisher(const Server& server, xcb_window_t owner)
    : server_(&server), owner_(owner), serial_(std::random_device()()) {
    const x11::Connection& connection = server.connection();
    x11::setWords(connection, owner, server.atom(Atom::NetSystemTrayOrientation), XCB_ATOM_CARDINAL,
                  std::array{horizontal});
    // Icons with alpha are welcome where the server has such a visual: the bar composes them
    // itself.
    const x11::Connection::Visual alpha = connection.alphaVisual();
    const xcb_visualid_t visual =
        alpha.type != nullptr ? alpha.type->visual_id : connection.screen().root_visual;
    x11::setWords(connection, owner, server.atom(Atom::NetSystemTrayVisual), XCB_ATOM_VISUALID,
                  std::array{visual});
    x11::setText(connection, owner, server.atom(Atom::PelistraMenubarVersion),
                 server.atom(Atom::Utf8String), versionNumber());
}

void Publisher::publish(std::vector<std::uint32_t>& last, std::vector<std::uint32_t> words,
                        xcb_atom_t property, xcb_atom_t type) {
    if (words != last) {
        last = std::move(words);
        x11::setWords(server_->connection(), owner_, property, type, last);
    }
}

void Publisher::publishColors(const Palette& palette) {
    const auto words = trayColors(palette);
    publish(colors_, {words.begin(), words.end()}, server_->atom(Atom::NetSystemTrayColors),
            XCB_ATOM_CARDINAL);
}

void Publisher::publishWindow(xcb_window_t bar) {
    publish(window_, {bar}, server_->atom(Atom::PelistraMenubarWindow), XCB_ATOM_WINDOW);
}

void Publisher::repeatScale() const {
    x11::setWords(server_->connection(), owner_, server_->atom(Atom::PelistraMenubarScale),
                  XCB_ATOM_CARDINAL, scale_);
}

void Publisher::publishScale(const Metrics& metrics) {
    publish(scale_, {word(metrics.scaleHundredths())}, server_->atom(Atom::PelistraMenubarScale),
            XCB_ATOM_CARDINAL);
    publishChange();
}

void Publisher::publishAreas(const PixelRect& bar, const std::optional<Gap>& gap) {
    if (!gap) {
        return;
    }
    publish(areas_,
            {word(bar.x), word(bar.y), word(gap->begin), word(bar.height), word(bar.x + gap->end),
             word(bar.y), word(bar.width - gap->end), word(bar.height)},
            server_->atom(Atom::PelistraMenubarAuxiliaryAreas), XCB_ATOM_CARDINAL);
}

bool Publisher::publishItems(const ItemList& items) {
    std::vector<std::uint32_t> windows;
    windows.reserve(items.size());
    for (const DockedItem* item : items.shown()) {
        windows.push_back(item->client);
    }
    if (windows == items_ && itemsPublished_) {
        return false;
    }
    itemsPublished_ = true;
    items_ = std::move(windows);
    x11::setWords(server_->connection(), owner_, server_->atom(Atom::PelistraMenubarItems),
                  XCB_ATOM_WINDOW, items_);
    return true;
}

void Publisher::publishDetails(const ItemList& items, const PixelRect& bar) {
    std::unordered_map<xcb_window_t, const DockedItem*> docked;
    for (const auto& item : items.all()) {
        docked.emplace(item->client, item.get());
    }
    std::vector<x11::PublishedItem> published;
    published.reserve(items_.size());
    for (const xcb_window_t window : items_) {
        if (const auto item = docked.find(window); item != docked.end()) {
            published.push_back(detailsOf(*item->second, bar));
        }
    }
    auto details = x11::publishedText(published);
    if (details == details_) {
        return;
    }
    details_ = std::move(details);
    const xcb_atom_t property = server_->atom(Atom::PelistraMenubarItemDetails);
    if (details_) {
        x11::setText(server_->connection(), owner_, property, server_->atom(Atom::Utf8String),
                     *details_);
    } else {
        xcb_delete_property(server_->xcb(), owner_, property);
    }
}

void Publisher::publishChange() {
    ++serial_;
    x11::setWords(server_->connection(), owner_, server_->atom(Atom::PelistraMenubarSerial),
                  XCB_ATOM_CARDINAL, std::array{serial_});
}

void Publisher::publishPositions(const ItemList& items) const {
    for (const auto& item : items.all()) {
        if (item->wish.exact) {
            x11::setWords(server_->connection(), item->client,
                          server_->atom(Atom::PelistraMenubarPosition), XCB_ATOM_CARDINAL,
                          std::array{static_cast<std::uint32_t>(items.shownRightOf(*item))});
        }
    }
}

} // namespace pelistra::menubar

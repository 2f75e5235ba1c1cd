#include "menubar/Publisher.h"

#include "menubar/Options.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>
#include <random>

namespace pelistra::menubar {

namespace {

constexpr std::uint32_t horizontal = 0;

std::uint32_t word(int value) {
    return static_cast<std::uint32_t>(std::max(value, 0));
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

void Publisher::publishItems(const ItemList& items) {
    std::vector<std::uint32_t> windows;
    windows.reserve(items.size());
    for (const DockedItem* item : items.shown()) {
        windows.push_back(item->client);
    }
    if (windows != items_ || !itemsPublished_) {
        itemsPublished_ = true;
        items_ = std::move(windows);
        x11::setWords(server_->connection(), owner_, server_->atom(Atom::PelistraMenubarItems),
                      XCB_ATOM_WINDOW, items_);
        publishChange();
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

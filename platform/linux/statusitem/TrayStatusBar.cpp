#include "platform/linux/statusitem/TrayStatusBar.h"

#include "platform/linux/screens/RootFrame.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace pelistra::linux {

TrayStatusBar::TrayStatusBar(const StatusItemServices& services, EventPump& pump,
                             MainQueue& mainQueue, std::function<void()> roomIsLacking)
    : services_(services), pump_(pump), mainQueue_(mainQueue),
      roomIsLacking_(std::move(roomIsLacking)),
      events_(pump.addHandler([this](const auto& event) { handle(event); })),
      recoveries_(pump.addRecoveryHandler(
          [this] { std::ranges::for_each(items_, &TrayStatusItem::savePosition); })),
      trayChanges_(
          services.trayHost.observe([this](TrayHost::Change change) { handleTray(change); })) {}

std::unique_ptr<StatusItem> TrayStatusBar::statusItem(double withLength) {
    const auto forget = [this](TrayStatusItem& item) { std::erase(items_, &item); };
    auto item = std::make_unique<TrayStatusItem>(
        services_,
        TrayStatusItem::Callbacks{.scheduleDocking = [this] { scheduleDocking(); },
                                  .ejected = [this](TrayStatusItem&) { itemWasEjected(); },
                                  .grown = [this](TrayStatusItem&) { scheduleCheck(); },
                                  .destroyed = forget},
        withLength);
    items_.push_back(item.get());
    scheduleDocking();
    return item;
}

void TrayStatusBar::handle(const xcb_generic_event_t& event) {
    const auto items = items_;
    for (TrayStatusItem* item : items) {
        // An action may have ended an item.
        if (std::ranges::find(items_, item) != items_.end()) {
            item->handle(event);
        }
    }
}

void TrayStatusBar::handleTray(TrayHost::Change change) {
    switch (change) {
    case TrayHost::Change::Arrived:
        ejections_ = 0;
        isReversed_ = false;
        scheduleDocking();
        break;
    case TrayHost::Change::Changed:
        std::ranges::for_each(items_, &TrayStatusItem::refreshLook);
        break;
    case TrayHost::Change::Left:
        std::ranges::for_each(items_, &TrayStatusItem::undock);
        services_.connection.flush();
        break;
    }
}

void TrayStatusBar::scheduleDocking() {
    if (!std::exchange(dockingIsScheduled_, true)) {
        mainQueue_.async(lifetime_.guard([this] { dockItems(); }));
    }
}

void TrayStatusBar::dockItems() {
    dockingIsScheduled_ = false;
    if (!services_.trayHost.tray()) {
        return;
    }
    requestDocking();
    scheduleCheck();
    if (!std::exchange(firstDockingIsOver_, true)) {
        pump_.waitUntil([this] { return itemsAreLaidOut(); }, layoutPatience);
    }
}

void TrayStatusBar::requestDocking() {
    if (isReversed_) {
        int rank = 0;
        for (TrayStatusItem* item : items_ | std::views::reverse) {
            item->dock(++rank);
        }
    } else {
        std::ranges::for_each(items_, [](TrayStatusItem* item) { item->dock(std::nullopt); });
    }
    services_.connection.flush();
}

void TrayStatusBar::scheduleCheck() {
    mainQueue_.asyncAfter(layoutTime, lifetime_.guard([this] { checkLayout(); }));
}

void TrayStatusBar::checkLayout() {
    const auto& tray = services_.trayHost.tray();
    if (!tray || tray->barWindow != XCB_WINDOW_NONE) {
        return;
    }
    const bool isWrong = areOutOfOrder();
    if (isWrong && dockReversed()) {
        return;
    }
    if (isWrong || lackRoom()) {
        std::ranges::for_each(items_, &TrayStatusItem::holdBack);
        roomIsLacking_();
    }
}

bool TrayStatusBar::dockReversed() {
    if (std::exchange(isReversed_, true)) {
        return false;
    }
    std::ranges::for_each(items_, &TrayStatusItem::undock);
    scheduleDocking();
    return true;
}

bool TrayStatusBar::areOutOfOrder() const {
    std::optional<int> earlier;
    for (const TrayStatusItem* item : items_) {
        const auto frame = item->isDocked() ? item->rootFrame() : std::nullopt;
        if (frame && earlier && frame->x >= *earlier) {
            return true;
        }
        earlier = frame ? std::optional(frame->x) : earlier;
    }
    return false;
}

bool TrayStatusBar::lackRoom() const {
    const auto& connection = services_.connection;
    const auto screen = rootFrameOf(connection, connection.root());
    const auto isOffScreen = [&screen](const TrayStatusItem* item) {
        const auto frame = item->rootFrame();
        return frame && screen && (frame->right() <= 0 || frame->x >= screen->width);
    };
    return std::ranges::any_of(items_, &TrayStatusItem::lacksRoom) ||
           (std::ranges::any_of(items_, &TrayStatusItem::needsRoom) &&
            std::ranges::any_of(items_, isOffScreen));
}

void TrayStatusBar::itemWasEjected() {
    if (++ejections_ <= mostEjections) {
        mainQueue_.asyncAfter(ejectionPause, lifetime_.guard([this] { scheduleDocking(); }));
    }
}

bool TrayStatusBar::itemsAreLaidOut() const {
    const auto isReady = [](const TrayStatusItem* item) {
        return !item->isWanted() || item->isDocked();
    };
    if (!std::ranges::all_of(items_, isReady)) {
        return false;
    }
    const auto docked = services_.trayHost.dockedWindows();
    return !docked || std::ranges::all_of(items_, [&docked](const TrayStatusItem* item) {
        return !item->isWanted() || std::ranges::find(*docked, item->window()) != docked->end();
    });
}

} // namespace pelistra::linux

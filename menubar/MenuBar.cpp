#include "menubar/MenuBar.h"

#include "menubar/DockRequest.h"
#include "menubar/Log.h"
#include "platform/posix/UnusedMemory.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include <poll.h>

namespace pelistra::menubar {

namespace {

// Events handled before what they ask for is done once: many enough that a flood is merged, few
// enough that it holds nobody up.
constexpr int batchLimit = 1000;
// Items keep this far away from the camera housing.
constexpr double housingMarginInPoints = 4;

template <class Event>
Event& mutableEventAs(xcb_generic_event_t& event) {
    return reinterpret_cast<Event&>(event);
}

// A disk takes longer than all the rest, so it waits until no event does; a flood of events delays
// it for this many rounds at most.
constexpr int mostPostponed = 8;

using Due = std::optional<std::chrono::steady_clock::time_point>;

Due earlier(const Due& one, const Due& other) {
    return one && other ? std::min(one, other) : std::max(one, other);
}

// For poll(): negative for ever.
int millisecondsUntil(const Due& time) {
    if (!time) {
        return -1;
    }
    using Milliseconds = std::chrono::milliseconds;
    const auto left = std::chrono::ceil<Milliseconds>(*time - std::chrono::steady_clock::now());
    return static_cast<int>(
        std::clamp(left, Milliseconds::zero(), Milliseconds(std::chrono::hours(1))).count());
}

} // namespace

MenuBar::MenuBar(const Server& server, std::unique_ptr<TraySelection> tray, Options options,
                 OrderFile orderFile)
    : server_(&server), options_(std::move(options)), orderFile_(std::move(orderFile)),
      order_(orderFile_.read()), tray_(std::move(tray)), window_(server),
      docking_(server, window_.id(), items_, order_), painter_(server, window_.id()),
      drag_(server, window_.id(), geometry_, items_, order_, painter_),
      placing_(server, geometry_, items_, drag_, painter_),
      itemEvents_(server, items_, docking_, drag_, painter_),
      notifiers_(server, window_.id(), items_, order_, painter_),
      publisher_(server, tray_->owner()), activeWindow_(server, items_),
      surroundings_(server, options_) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(server.xcb(), server.root(), XCB_CW_EVENT_MASK, &events);
    if (options_.statusNotifier) {
        notifiers_.start(RememberedItems(RememberedItems::defaultPath()));
    }
}

MenuBar::End MenuBar::run(int stopDescriptor) {
    settle();
    keepOrder();
    window_.show();
    tray_->announce();
    server_->connection().flush();
    tidyingDue_ = std::chrono::steady_clock::now() + posix::afterStart;
    int postponed = 0;
    while (!end_) {
        const bool heard = notifiers_.process();
        if (drain() || heard) {
            // A tray that has taken over must not have its icons taken back.
            if (!end_) {
                settle();
                ++postponed;
            }
            if (postponed < mostPostponed) {
                continue;
            }
        }
        if (!end_ && std::exchange(postponed, 0) > 0) {
            keepOrder();
            continue;
        }
        if (!server_->connection().isAlive()) {
            return End::ServerGone;
        }
        sleep(stopDescriptor);
    }
    orderFile_.write(order_);
    docking_.releaseAll();
    return *end_;
}

void MenuBar::sleep(int stopDescriptor) {
    std::vector<pollfd> descriptors{
        {.fd = server_->connection().fileDescriptor(), .events = POLLIN, .revents = 0},
        {.fd = stopDescriptor, .events = POLLIN, .revents = 0}};
    std::ranges::copy(notifiers_.descriptors(), std::back_inserter(descriptors));
    ::poll(descriptors.data(), descriptors.size(),
           millisecondsUntil(earlier(notifiers_.due(), tidyingDue_)));
    if (tidyingDue_ && *tidyingDue_ <= std::chrono::steady_clock::now()) {
        posix::giveBackUnusedMemory();
        tidyingDue_.reset();
    }
    if (descriptors[1].revents != 0) {
        end_ = End::Stopped;
    }
}

bool MenuBar::drain() {
    int handled = 0;
    while (handled < batchLimit) {
        const x11::EventPtr event = server_->connection().pollEvent();
        if (!event) {
            break;
        }
        handle(*event);
        ++handled;
    }
    return handled > 0;
}

void MenuBar::handle(xcb_generic_event_t& event) {
    surroundings_.note(event);
    itemsChanged_ = itemEvents_.handle(event) || itemsChanged_;
    switch (x11::typeOf(event)) {
    case 0:
        docking_.fail(x11::eventAs<xcb_generic_error_t>(event));
        break;
    case XCB_CLIENT_MESSAGE:
        handleClientMessage(x11::eventAs<xcb_client_message_event_t>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
        activeWindowStale_ =
            activeWindowStale_ ||
            activeWindow_.concerns(x11::eventAs<xcb_property_notify_event_t>(event));
        break;
    case XCB_MAP_NOTIFY:
        handleMapped(x11::eventAs<xcb_map_notify_event_t>(event).window);
        break;
    case XCB_CONFIGURE_NOTIFY:
        handleConfigured(x11::eventAs<xcb_configure_notify_event_t>(event));
        break;
    case XCB_EXPOSE:
        painter_.expose();
        break;
    case XCB_BUTTON_PRESS:
        handlePress(x11::eventAs<xcb_button_press_event_t>(event));
        break;
    case XCB_ENTER_NOTIFY:
        notifiers_.enter(x11::eventAs<xcb_enter_notify_event_t>(event), window_.frame());
        break;
    case XCB_LEAVE_NOTIFY:
        notifiers_.leave(x11::eventAs<xcb_leave_notify_event_t>(event));
        break;
    case XCB_MOTION_NOTIFY:
        drag_.move(x11::eventAs<xcb_motion_notify_event_t>(event));
        break;
    case XCB_BUTTON_RELEASE:
        handleRelease(x11::eventAs<xcb_button_release_event_t>(event));
        break;
    case XCB_KEY_PRESS:
        drag_.key(x11::eventAs<xcb_key_press_event_t>(event));
        break;
    case XCB_MAPPING_NOTIFY:
        drag_.refreshKeys(mutableEventAs<xcb_mapping_notify_event_t>(event));
        break;
    case XCB_SELECTION_CLEAR:
        if (tray_->isLoss(x11::eventAs<xcb_selection_clear_event_t>(event))) {
            end_ = End::TrayTaken;
        }
        break;
    default:
        break;
    }
}

void MenuBar::handleMapped(xcb_window_t window) {
    if (window != window_.id()) {
        return;
    }
    // Only now the docked windows have pixmaps, or new ones when a window manager has come.
    for (const auto& item : items_.all()) {
        item->picture.renew();
    }
    painter_.expose();
}

void MenuBar::handleConfigured(const xcb_configure_notify_event_t& event) {
    if (event.window == window_.id() && std::exchange(heightGiven_, event.height) != event.height) {
        publisher_.repeatScale();
    }
}

void MenuBar::handleClientMessage(const xcb_client_message_event_t& event) {
    if (const auto client =
            requestedDock(event, tray_->owner(), server_->atom(Atom::NetSystemTrayOpcode))) {
        docking_.request(*client);
    }
}

void MenuBar::handlePress(const xcb_button_press_event_t& event) {
    if (event.event != window_.id()) {
        notifiers_.press(event, window_.frame());
        return;
    }
    drag_.press(event);
}

void MenuBar::handleRelease(const xcb_button_release_event_t& event) {
    if (event.event != window_.id()) {
        notifiers_.release(event, window_.frame());
        return;
    }
    drag_.release(event);
}

void MenuBar::settle() {
    followSurroundings();
    docking_.settle(geometry_.metrics);
    itemsChanged_ = notifiers_.settle({.metrics = geometry_.metrics,
                                       .palette = surroundings_.palette(),
                                       .iconTheme = surroundings_.iconTheme(),
                                       .display = options_.display}) ||
                    itemsChanged_;
    itemsChanged_ = placing_.layOut() || itemsChanged_;
    if (std::exchange(activeWindowStale_, false)) {
        activeWindow_.refresh();
    }
    painter_.setTitle(activeWindow_.title(), placing_.titleLimit());
    painter_.paint(items_.shown(), drag_.lifted());
    server_->connection().flush();
}

void MenuBar::keepOrder() {
    // What others are told of the order is safe on disk by then.
    orderFile_.write(order_);
    notifiers_.remember();
    publishItems();
    server_->connection().flush();
}

void MenuBar::publishItems() {
    bool changed = std::exchange(itemsChanged_, false);
    // The order of an item in the user's hand is not decided yet.
    if (drag_.lifted() == nullptr || publisher_.publishedItems() != items_.shown().size()) {
        changed = publisher_.publishItems(items_) || changed;
    }
    if (changed) {
        publisher_.publishDetails(items_, window_.frame());
        publisher_.publishChange();
    }
    if (drag_.takePositionsDue()) {
        publisher_.publishPositions(items_);
    }
}

void MenuBar::followSurroundings() {
    if (surroundings_.refresh()) {
        window_.place(surroundings_.place(), surroundings_.canReserve());
        itemsChanged_ = true;
    }
    geometry_.metrics = surroundings_.metrics();
    geometry_.frame = window_.frame();
    const std::optional<Gap> drawn = drawnHousing();
    geometry_.housing = drawn;
    if (drawn) {
        const int margin = geometry_.metrics.pixels(housingMarginInPoints);
        geometry_.housing->begin -= margin;
        geometry_.housing->end += margin;
    }
    const Palette& palette = surroundings_.palette();
    if (painter_.setLook({.width = geometry_.frame.width,
                          .metrics = geometry_.metrics,
                          .palette = palette,
                          .housing = drawn})) {
        publisher_.publishColors(palette);
        publisher_.publishScale(geometry_.metrics);
        publisher_.publishAreas(geometry_.frame, drawn);
        publisher_.publishWindow(window_.id());
        for (const auto& item : items_.all()) {
            painter_.setBackground(*item);
        }
    }
}

std::optional<Gap> MenuBar::drawnHousing() const {
    if (!options_.housing) {
        return std::nullopt;
    }
    const auto edge = [this](double points) {
        return std::clamp(geometry_.metrics.pixels(points), 0, geometry_.frame.width);
    };
    const Gap housing{.begin = edge(options_.housing->x),
                      .end = edge(options_.housing->x + options_.housing->width)};
    return housing.begin == housing.end ? std::nullopt : std::optional(housing);
}

} // namespace pelistra::menubar

#include "menubar/MenuBar.h"

#include "menubar/DockRequest.h"
#include "menubar/Drag.h"
#include "menubar/Log.h"
#include "menubar/Sequence.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <utility>

#include <poll.h>

#include <xcb/damage.h>
#include <xcb/randr.h>

namespace pelistra::menubar {

namespace {

// Events handled before what they ask for is done once: many enough that a flood is merged, few
// enough that it holds nobody up.
constexpr int batchLimit = 1000;
// The pointer moves this far before a press becomes a drag.
constexpr double dragThresholdInPoints = 3;
// Items keep this far away from the camera housing.
constexpr double housingMarginInPoints = 4;
// X keeps coordinates in 16 bits.
constexpr int leastX = INT16_MIN + 1;

template <class Event>
Event& mutableEventAs(xcb_generic_event_t& event) {
    return reinterpret_cast<Event&>(event); // NOLINT(*-reinterpret-cast)
}

// A disk takes longer than all the rest, so it waits until no event does; a flood of events delays
// it for this many rounds at most.
constexpr int mostPostponed = 8;

// For poll(): negative for ever.
int millisecondsUntil(std::optional<std::chrono::steady_clock::time_point> time) {
    if (!time) {
        return -1;
    }
    using Milliseconds = std::chrono::milliseconds;
    const auto left = std::chrono::ceil<Milliseconds>(*time - std::chrono::steady_clock::now());
    return static_cast<int>(
        std::clamp(left, Milliseconds::zero(), Milliseconds(std::chrono::hours(1))).count());
}

// Windows come, go, or take another place.
bool concernsStructure(int eventType) {
    switch (eventType) {
    case XCB_CONFIGURE_REQUEST:
    case XCB_CONFIGURE_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_DESTROY_NOTIFY:
    case XCB_MAP_REQUEST:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
        return true;
    default:
        return false;
    }
}

} // namespace

MenuBar::MenuBar(const Server& server, std::unique_ptr<TraySelection> tray, Options options,
                 OrderFile orderFile)
    : server_(&server), options_(std::move(options)), orderFile_(std::move(orderFile)),
      order_(orderFile_.read()), tray_(std::move(tray)), window_(server),
      docking_(server, window_.id(), items_, order_), painter_(server, window_.id()),
      notifiers_(server, window_.id(), items_, order_, painter_),
      publisher_(server, tray_->owner()), dragInput_(server, window_.id()),
      activeWindow_(server, items_), settings_(server) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(server.xcb(), server.root(), XCB_CW_EVENT_MASK, &events);
    watchMonitors(server);
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
    ::poll(descriptors.data(), descriptors.size(), millisecondsUntil(notifiers_.due()));
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
    const int type = x11::typeOf(event);
    if (type == server_->damageEvent()) {
        handleDamage(x11::eventAs<xcb_damage_notify_event_t>(event).drawable);
        return;
    }
    if (server_->randrEvent() != 0 &&
        (type == server_->randrEvent() + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
         type == server_->randrEvent() + XCB_RANDR_NOTIFY)) {
        monitorsStale_ = true;
        return;
    }
    itemsChanged_ = itemsChanged_ || concernsStructure(type);
    switch (type) {
    case 0:
        docking_.fail(x11::eventAs<xcb_generic_error_t>(event));
        break;
    case XCB_CLIENT_MESSAGE:
        handleClientMessage(x11::eventAs<xcb_client_message_event_t>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
        handleProperty(x11::eventAs<xcb_property_notify_event_t>(event));
        break;
    case XCB_CONFIGURE_REQUEST:
        handleConfigureRequest(x11::eventAs<xcb_configure_request_event_t>(event));
        break;
    case XCB_REPARENT_NOTIFY:
        handleReparent(x11::eventAs<xcb_reparent_notify_event_t>(event));
        break;
    case XCB_DESTROY_NOTIFY:
        handleDestroy(x11::eventAs<xcb_destroy_notify_event_t>(event));
        break;
    case XCB_MAP_NOTIFY:
        handleMapped(x11::eventAs<xcb_map_notify_event_t>(event));
        break;
    case XCB_UNMAP_NOTIFY:
        handleUnmapped(x11::eventAs<xcb_unmap_notify_event_t>(event));
        break;
    case XCB_MAP_REQUEST:
        if (DockedItem* item = items_.find(x11::eventAs<xcb_map_request_event_t>(event).window)) {
            docking_.mappingChanged(*item);
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
        handleConfigured(x11::eventAs<xcb_configure_notify_event_t>(event), event.full_sequence);
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
        handleMotion(x11::eventAs<xcb_motion_notify_event_t>(event));
        break;
    case XCB_BUTTON_RELEASE:
        handleRelease(x11::eventAs<xcb_button_release_event_t>(event));
        break;
    case XCB_KEY_PRESS:
        handleKey(x11::eventAs<xcb_key_press_event_t>(event));
        break;
    case XCB_MAPPING_NOTIFY:
        dragInput_.refresh(mutableEventAs<xcb_mapping_notify_event_t>(event));
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

void MenuBar::handleClientMessage(const xcb_client_message_event_t& event) {
    if (settings_.isManagerMessage(event)) {
        settingsStale_ = true;
    } else if (const auto client =
                   requestedDock(event, tray_->owner(), server_->atom(Atom::NetSystemTrayOpcode))) {
        docking_.request(*client);
    }
}

void MenuBar::handleProperty(const xcb_property_notify_event_t& event) {
    if (activeWindow_.concerns(event)) {
        activeWindowStale_ = true;
    }
    if (settings_.isManagerWindow(event.window)) {
        settingsStale_ = true;
    }
    if (event.window == server_->root() && event.atom == XCB_ATOM_RESOURCE_MANAGER) {
        resourcesStale_ = true;
    }
    if (DockedItem* item = items_.find(event.window)) {
        // A new title, for example.
        itemsChanged_ = true;
        item->textsStale = item->textsStale || isText(*server_, event.atom);
        item->hintsStale = item->hintsStale || event.atom == XCB_ATOM_WM_NORMAL_HINTS;
        if (event.atom == server_->atom(Atom::XEmbedInfo)) {
            item->embedInfoStale = true;
        }
    }
}

void MenuBar::handleConfigureRequest(const xcb_configure_request_event_t& event) {
    DockedItem* item = items_.find(event.window);
    if (item == nullptr) {
        return;
    }
    item->replyDue = true;
    PixelSize wanted{.width = item->width, .height = item->height};
    const bool sized =
        (event.value_mask & (XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT)) != 0;
    if ((event.value_mask & XCB_CONFIG_WINDOW_WIDTH) != 0) {
        wanted.width = event.width;
    }
    if ((event.value_mask & XCB_CONFIG_WINDOW_HEIGHT) != 0) {
        wanted.height = event.height;
    }
    if (sized) {
        item->wish.source = WishSource::ResizeRequest;
        item->wish.size = wanted;
    }
}

void MenuBar::handleConfigured(const xcb_configure_notify_event_t& event, std::uint32_t sequence) {
    if (event.window == server_->root()) {
        monitorsStale_ = true;
        return;
    }
    if (event.window == window_.id() && std::exchange(heightGiven_, event.height) != event.height) {
        publisher_.repeatScale();
        return;
    }
    DockedItem* item = items_.find(event.window);
    if (item == nullptr || event.event != item->container.id() ||
        !isSince(sequence, item->placeSequence)) {
        return;
    }
    // A window with override-redirect need not ask: it changed its size by itself.
    const PixelSize size{.width = event.width, .height = event.height};
    const bool resized = size != PixelSize{.width = item->width, .height = item->height};
    if (resized) {
        item->wish.source = WishSource::ResizeRequest;
        item->wish.size = size;
        item->picture.renew();
        painter_.invalidate(*item);
    }
    if ((resized || event.x != 0 || event.y != 0) && item->straying.putBack()) {
        item->strayed = true;
    }
}

void MenuBar::handleReparent(const xcb_reparent_notify_event_t& event) {
    DockedItem* item = items_.find(event.window);
    if (item == nullptr) {
        return;
    }
    if (event.parent == item->container.id()) {
        docking_.arrived(*item);
        painter_.setBackground(*item);
    } else if (event.event == item->container.id()) {
        clearPlace(*item);
        docking_.letGo(event.window, event.parent);
    }
}

void MenuBar::handleDestroy(const xcb_destroy_notify_event_t& event) {
    if (settings_.isManagerWindow(event.window)) {
        settingsStale_ = true;
    }
    if (const DockedItem* item = items_.find(event.window)) {
        clearPlace(*item);
        docking_.forget(event.window);
    }
}

void MenuBar::clearPlace(const DockedItem& item) {
    if (drag_ && drag_->client == item.client) {
        endDrag(false);
    }
    painter_.invalidate(item);
}

void MenuBar::handleMapped(const xcb_map_notify_event_t& event) {
    if (event.window == window_.id()) {
        // Only now the docked windows have pixmaps, or new ones when a window manager has come.
        for (const auto& item : items_.all()) {
            item->picture.renew();
        }
        painter_.expose();
        return;
    }
    DockedItem* item = items_.find(event.window);
    if (item != nullptr && event.event == item->container.id()) {
        item->picture.renew();
        painter_.invalidate(*item);
    }
}

void MenuBar::handleUnmapped(const xcb_unmap_notify_event_t& event) {
    DockedItem* item = items_.find(event.window);
    if (item != nullptr && event.event == item->container.id()) {
        docking_.mappingChanged(*item);
    }
}

void MenuBar::handleDamage(xcb_drawable_t drawable) {
    if (DockedItem* item = items_.findByContainer(drawable)) {
        item->picture.noteDamage();
        painter_.invalidate(*item);
    }
}

void MenuBar::handlePress(const xcb_button_press_event_t& event) {
    if (event.event != window_.id()) {
        notifiers_.press(event, window_.frame());
        return;
    }
    if (drag_ || event.detail != XCB_BUTTON_INDEX_1) {
        return;
    }
    for (const DockedItem* item : items_.shown()) {
        if (event.event_x >= item->x && event.event_x < item->x + item->width) {
            drag_ = Drag{.client = item->client,
                         .pressX = event.event_x,
                         .pointerX = event.event_x,
                         .grip = event.event_x - item->x};
            dragInput_.begin(event.time);
            return;
        }
    }
}

void MenuBar::handleMotion(const xcb_motion_notify_event_t& event) {
    if (!drag_) {
        return;
    }
    drag_->pointerX = event.event_x;
    if (std::abs(drag_->pointerX - drag_->pressX) >= metrics_.pixels(dragThresholdInPoints)) {
        drag_->lifted = true;
    }
}

void MenuBar::handleRelease(const xcb_button_release_event_t& event) {
    if (event.event != window_.id()) {
        notifiers_.release(event, window_.frame());
        return;
    }
    if (!drag_ || event.detail != XCB_BUTTON_INDEX_1) {
        return;
    }
    drag_->pointerX = event.event_x;
    endDrag(true);
}

void MenuBar::handleKey(const xcb_key_press_event_t& event) {
    if (drag_ && dragInput_.isEscape(event)) {
        endDrag(false);
    }
}

DockedItem* MenuBar::lifted() const {
    return drag_ && drag_->lifted ? items_.find(drag_->client) : nullptr;
}

void MenuBar::followDrag() {
    const DockedItem* item = lifted();
    if (!drag_ || item == nullptr) {
        return;
    }
    std::vector<int> others;
    for (const DockedItem* other : items_.shown()) {
        if (other != item) {
            others.push_back(other->width);
        }
    }
    const DropPlace place = nearestPlace(others, item->width, drag_->pointerX - drag_->grip,
                                         window_.frame().width, housing_);
    items_.moveAmongShown(*item, place.index);
}

void MenuBar::endDrag(bool keep) {
    dragInput_.end();
    if (keep) {
        followDrag();
    } else {
        dragInput_.releasePointer();
    }
    DockedItem* item = lifted();
    drag_.reset();
    if (item == nullptr) {
        return;
    }
    // The plate goes with the drag.
    painter_.invalidate(item->x - painter_.plateReach(),
                        item->x + item->width + painter_.plateReach());
    if (keep) {
        order_.move(items_.identities(), items_.indexOf(*item));
        positionsDue_ = true;
        return;
    }
    std::unique_ptr<DockedItem> taken = items_.take(item->client);
    const std::size_t index = order_.place(taken->identity, items_.identities(), std::nullopt);
    items_.insert(index, std::move(taken));
}

void MenuBar::settle() {
    followDesktop();
    followScreen();
    docking_.settle(metrics_);
    itemsChanged_ =
        notifiers_.settle({.metrics = metrics_,
                           .palette = paletteFor(options_.theme, desktopThemes_.desktop),
                           .iconTheme = desktopThemes_.icons,
                           .display = options_.display}) ||
        itemsChanged_;
    layOutItems();
    if (std::exchange(activeWindowStale_, false)) {
        activeWindow_.refresh();
    }
    showTitle();
    painter_.paint(items_.shown(), lifted());
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
    if (lifted() == nullptr || publisher_.publishedItems() != items_.shown().size()) {
        changed = publisher_.publishItems(items_) || changed;
    }
    if (changed) {
        publisher_.publishDetails(items_, window_.frame());
        publisher_.publishChange();
    }
    if (std::exchange(positionsDue_, false)) {
        publisher_.publishPositions(items_);
    }
}

void MenuBar::followDesktop() {
    if (std::exchange(settingsStale_, false)) {
        desktopThemes_ = settings_.readThemes();
    }
    if (std::exchange(resourcesStale_, false)) {
        const auto resources = readProperty(
            server_->connection(),
            requestProperty(server_->connection(), server_->root(), XCB_ATOM_RESOURCE_MANAGER));
        const double scale = options_.scale.value_or(
            scaleFromResources(resources ? resources->text() : std::string()));
        monitorsStale_ = monitorsStale_ || Metrics(scale) != metrics_;
        metrics_ = Metrics(scale);
    }
}

void MenuBar::followScreen() {
    if (std::exchange(monitorsStale_, false)) {
        const std::vector<Monitor> monitors = queryMonitors(*server_);
        PixelRect frame = barMonitor(monitors);
        const bool reserve = canReserveTop(monitors, frame);
        frame.height = metrics_.barHeight();
        window_.place(frame, reserve);
        itemsChanged_ = true;
    }
    const PixelRect& frame = window_.frame();
    std::optional<Gap> drawn;
    if (options_.housing) {
        drawn =
            Gap{.begin = std::clamp(metrics_.pixels(options_.housing->x), 0, frame.width),
                .end = std::clamp(metrics_.pixels(options_.housing->x + options_.housing->width), 0,
                                  frame.width)};
        if (drawn->begin == drawn->end) {
            drawn.reset();
        }
    }
    housing_ = drawn;
    if (housing_) {
        const int margin = metrics_.pixels(housingMarginInPoints);
        housing_->begin -= margin;
        housing_->end += margin;
    }
    const Palette& palette = paletteFor(options_.theme, desktopThemes_.desktop);
    if (painter_.setLook(
            {.width = frame.width, .metrics = metrics_, .palette = palette, .housing = drawn})) {
        publisher_.publishColors(palette);
        publisher_.publishScale(metrics_);
        publisher_.publishAreas(frame, drawn);
        publisher_.publishWindow(window_.id());
        for (const auto& item : items_.all()) {
            painter_.setBackground(*item);
        }
    }
}

void MenuBar::layOutItems() {
    followDrag();
    const std::vector<DockedItem*> shown = items_.shown();
    std::vector<int> widths;
    widths.reserve(shown.size());
    for (const DockedItem* item : shown) {
        widths.push_back(grantedWidth(item->wish, metrics_));
    }
    const std::vector<int> positions = layOut(widths, window_.frame().width, housing_);
    const DockedItem* held = lifted();
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const int x = drag_ && shown[i] == held ? boundedDragX(drag_->pointerX - drag_->grip,
                                                               widths[i], window_.frame().width)
                                                : positions[i];
        placeItem(*shown[i], std::max(x, leastX), widths[i]);
    }
    for (const auto& item : items_.all()) {
        if (item->occupiesSlot != item->hasSlot()) {
            item->occupiesSlot = item->hasSlot();
            painter_.invalidate(*item);
        }
        if (std::exchange(item->replyDue, false)) {
            tellPlace(*item);
        }
    }
}

void MenuBar::placeItem(DockedItem& item, int x, int width) {
    const int height = metrics_.barHeight();
    const bool resized =
        std::exchange(item.strayed, false) || item.width != width || item.height != height;
    if (item.x == x && !resized) {
        return;
    }
    const int reach = &item == lifted() ? painter_.plateReach() : 0;
    painter_.invalidate(item.x - reach, item.x + item.width + reach);
    itemsChanged_ = true;
    item.x = x;
    item.width = width;
    item.height = height;
    painter_.invalidate(item.x - reach, item.x + item.width + reach);
    constexpr std::uint16_t all = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                  XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    std::array<std::uint32_t, 4> place{static_cast<std::uint32_t>(x), 0,
                                       static_cast<std::uint32_t>(width),
                                       static_cast<std::uint32_t>(height)};
    xcb_configure_window(server_->xcb(), item.container.id(), all, place.data());
    if (resized) {
        place[0] = 0;
        item.placeSequence =
            xcb_configure_window(server_->xcb(), item.client, all, place.data()).sequence;
        item.picture.renew();
    }
    // Inside its container it did not move; toolkits place menus by what they believe.
    item.replyDue = true;
}

void MenuBar::tellPlace(const DockedItem& item) const {
    xcb_configure_notify_event_t notice{};
    notice.response_type = XCB_CONFIGURE_NOTIFY;
    notice.event = item.client;
    notice.window = item.client;
    notice.x = static_cast<std::int16_t>(window_.frame().x + item.x);
    notice.y = static_cast<std::int16_t>(window_.frame().y);
    notice.width = static_cast<std::uint16_t>(item.width);
    notice.height = static_cast<std::uint16_t>(item.height);
    xcb_send_event(server_->xcb(), 0, item.client, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&notice)); // NOLINT(*-reinterpret-cast)
}

void MenuBar::showTitle() {
    int limit = housing_ ? housing_->begin : window_.frame().width;
    for (const DockedItem* item : items_.shown()) {
        if (item->x >= 0) {
            limit = std::min(limit, item->x);
        } else if (item->x + item->width > 0) {
            limit = 0;
        }
    }
    painter_.setTitle(activeWindow_.title(), limit);
}

} // namespace pelistra::menubar

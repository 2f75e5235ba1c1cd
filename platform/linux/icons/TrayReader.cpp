#include "platform/linux/icons/TrayReader.h"

#include "platform/linux/icons/PresentableText.h"
#include "platform/linux/screens/ScreenLayout.h"
#include "platform/posix/Environment.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/PublishedItems.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <ranges>
#include <span>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include <xcb/randr.h>
#include <xcb/res.h>

namespace pelistra::linux {

namespace {

// Names of a few words fit; what is longer is cut anyway, so it need not travel.
constexpr std::uint32_t nameByteLimit = 1024;
// Two looks at one moment, as one refresh takes them, are one look. The bar needs longer to react
// to anything.
constexpr std::chrono::milliseconds oneMoment{1};

// The primary monitor; the first one when none is marked as primary.
RootRect primaryOf(const xcb_randr_get_monitors_reply_t& monitors) {
    const xcb_randr_monitor_info_t* primary = nullptr;
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(&monitors); monitor.rem != 0;
         xcb_randr_monitor_info_next(&monitor)) {
        if (primary == nullptr || (monitor.data->primary != 0 && primary->primary == 0)) {
            primary = monitor.data;
        }
    }
    return primary == nullptr ? RootRect{}
                              : RootRect{.x = primary->x,
                                         .y = primary->y,
                                         .width = primary->width,
                                         .height = primary->height};
}

// A window that moves between two containers during a look can be seen in both.
std::vector<WindowId> withoutDuplicates(std::vector<WindowId> windows) {
    std::unordered_set<WindowId> seen;
    std::erase_if(windows, [&](WindowId window) { return !seen.insert(window).second; });
    return windows;
}

// Process ids by the client that a resource belongs to.
std::unordered_map<std::uint32_t, ProcessId>
processesOf(const xcb_res_query_client_ids_reply_t* reply) {
    std::unordered_map<std::uint32_t, ProcessId> processes;
    if (reply == nullptr) {
        return processes;
    }
    for (auto id = xcb_res_query_client_ids_ids_iterator(reply); id.rem != 0;
         xcb_res_client_id_value_next(&id)) {
        if (id.data->spec.mask == XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID &&
            xcb_res_client_id_value_value_length(id.data) > 0) {
            processes[id.data->spec.client] =
                static_cast<ProcessId>(*xcb_res_client_id_value_value(id.data));
        }
    }
    return processes;
}

std::optional<TrayIcon> iconFrom(const x11::PublishedItem& item) {
    return TrayIcon{.window = item.window,
                    .frame = {.x = item.x, .y = item.y, .width = item.width, .height = item.height},
                    .kind = item.process ? IconKind::Lent : IconKind::Window,
                    .pid = item.process.value_or(0),
                    .name = presentableText(item.title),
                    .instanceName = presentableText(item.instance),
                    .className = presentableText(item.className)};
}

} // namespace

struct TrayReader::Tray {
    WindowId owner = 0;
    double scale = 1;
    RootRect primaryMonitor;
    // What our own bar says is in it; empty under any other tray.
    std::optional<std::vector<WindowId>> items;
    // What it says of each of them; empty when it says nothing that can be understood, and under
    // any other tray.
    std::optional<std::vector<x11::PublishedItem>> details;
    // Its count of changes.
    std::optional<std::uint32_t> serial;
};

struct TrayReader::FrameRequest {
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t place;
};

struct TrayReader::IconRequest {
    WindowId window;
    FrameRequest frame;
    x11::PropertyRequest name;
    x11::PropertyRequest wmClass;
};

struct TrayReader::Batch {
    std::vector<xcb_query_tree_cookie_t> trees;
    // None where the tray has told.
    std::vector<IconRequest> icons;
    xcb_res_query_client_ids_cookie_t processes{};
};

TrayReader::TrayReader(const x11::Connection& connection, ChangesHeard changesHeard,
                       std::chrono::milliseconds longestTrust)
    : connection_(&connection), changesHeard_(std::move(changesHeard)), longestTrust_(longestTrust),
      replies_(connection), hostName_(posix::hostName()) {
    const std::string selection = "_NET_SYSTEM_TRAY_S" + std::to_string(connection.screenNumber());
    const std::array<std::string_view, static_cast<std::size_t>(Name::Count)> names{
        selection,
        "_PELISTRA_MENUBAR_ITEMS",
        "_PELISTRA_MENUBAR_ITEM_DETAILS",
        "_PELISTRA_MENUBAR_SCALE",
        "_PELISTRA_MENUBAR_SERIAL",
        "_NET_WM_NAME",
        "_NET_WM_PID",
        "ShapeEvent"};
    atoms_ = x11::internAtoms(connection, names);

    if (!replies_.begin(patience)) {
        return;
    }
    constexpr std::uint16_t randrMinor = 5;
    constexpr std::uint16_t resourceMinor = 2;
    if (connection.extension(xcb_randr_id) != nullptr) {
        const auto version = replies_.take<xcb_randr_query_version_reply_t>(
            xcb_randr_query_version(connection.get(), 1, randrMinor));
        hasMonitors_ =
            version && (version->major_version > 1 || version->minor_version >= randrMinor);
    }
    if (connection.extension(xcb_res_id) != nullptr) {
        const auto version = replies_.take<xcb_res_query_version_reply_t>(
            xcb_res_query_version(connection.get(), 1, resourceMinor));
        hasResource_ =
            version && (version->server_major > 1 || version->server_minor >= resourceMinor);
    }
}

std::uint32_t TrayReader::clientOf(WindowId window) const {
    return window & ~xcb_get_setup(connection_->get())->resource_id_mask;
}

TrayReader::FrameRequest TrayReader::requestFrame(WindowId window) const {
    return {.geometry = xcb_get_geometry(connection_->get(), window),
            .place =
                xcb_translate_coordinates(connection_->get(), window, connection_->root(), 0, 0)};
}

std::optional<RootRect> TrayReader::takeFrame(const FrameRequest& request) {
    const auto geometry = replies_.take<xcb_get_geometry_reply_t>(request.geometry);
    const auto place = replies_.take<xcb_translate_coordinates_reply_t>(request.place);
    if (!geometry || !place || place->same_screen == 0) {
        return std::nullopt;
    }
    return RootRect{
        .x = place->dst_x, .y = place->dst_y, .width = geometry->width, .height = geometry->height};
}

std::string TrayReader::takeText(x11::PropertyRequest request) {
    const auto value =
        x11::propertyValue(replies_.take<xcb_get_property_reply_t>(request.cookie).get());
    if (!value) {
        return {};
    }
    return presentableText(value->utf8());
}

TrayReader::Tray TrayReader::findTray() {
    xcb_connection_t* const server = connection_->get();
    const auto owner = xcb_get_selection_owner(server, atom(Name::Selection));
    const auto resources =
        x11::requestProperty(*connection_, connection_->root(), XCB_ATOM_RESOURCE_MANAGER);
    // Of the bar that was seen last: if it is still there, no second question is needed.
    std::optional<x11::PropertyRequest> serial;
    if (known_) {
        serial = x11::requestProperty(*connection_, known_->view.owner, atom(Name::Serial));
    }
    xcb_randr_get_monitors_cookie_t monitors{};
    if (hasMonitors_) {
        monitors = xcb_randr_get_monitors(server, connection_->root(), 1);
    }
    Tray tray;
    if (const auto reply = replies_.take<xcb_get_selection_owner_reply_t>(owner)) {
        tray.owner = reply->owner;
    }
    const auto text =
        x11::propertyValue(replies_.take<xcb_get_property_reply_t>(resources.cookie).get());
    tray.scale = text ? resourceScaleIn(text->text()).value_or(1) : 1;
    if (serial) {
        tray.serial = takeSerial(*serial);
    }
    if (hasMonitors_) {
        if (const auto reply = replies_.take<xcb_randr_get_monitors_reply_t>(monitors)) {
            tray.primaryMonitor = primaryOf(*reply);
        }
    }
    return tray;
}

std::optional<std::uint32_t> TrayReader::takeSerial(x11::PropertyRequest request) {
    const auto value =
        x11::propertyValue(replies_.take<xcb_get_property_reply_t>(request.cookie).get());
    const auto words = value ? value->words() : std::vector<std::uint32_t>{};
    return words.empty() ? std::nullopt : std::optional(words.front());
}

bool TrayReader::isOf(const Known& known, const Tray& tray) {
    return tray.owner == known.view.owner && tray.serial == known.serial &&
           tray.primaryMonitor == known.primaryMonitor;
}

std::optional<std::uint64_t> TrayReader::changesOf(WindowId owner) const {
    return changesHeard_ && owner != XCB_NONE ? changesHeard_(owner) : std::nullopt;
}

bool TrayReader::isTrue(const Known& known) const {
    const auto age = std::chrono::steady_clock::now() - known.confirmed;
    return age < oneMoment ||
           (age < longestTrust_ && known.changes && changesOf(known.view.owner) == known.changes);
}

void TrayReader::readOwner(Tray& tray) {
    // Asked for first: what comes after it is at least as new as the number says.
    const auto serial = x11::requestProperty(*connection_, tray.owner, atom(Name::Serial));
    const auto items = x11::requestProperty(*connection_, tray.owner, atom(Name::Items));
    const auto details =
        x11::requestProperty(*connection_, tray.owner, atom(Name::Details),
                             XCB_GET_PROPERTY_TYPE_ANY, x11::publishedItemsByteLimit);
    const auto scale = requestScale(tray);
    tray.serial = takeSerial(serial);
    if (const auto value =
            x11::propertyValue(replies_.take<xcb_get_property_reply_t>(items.cookie).get());
        value && value->type == XCB_ATOM_WINDOW) {
        tray.items = value->words();
    }
    if (const auto value =
            x11::propertyValue(replies_.take<xcb_get_property_reply_t>(details.cookie).get());
        value && tray.items) {
        tray.details = x11::publishedItemsIn(*value);
    }
    takeScale(scale, tray);
}

x11::PropertyRequest TrayReader::requestScale(const Tray& tray) const {
    return x11::requestProperty(*connection_, tray.owner, atom(Name::Scale));
}

void TrayReader::takeScale(x11::PropertyRequest request, Tray& tray) {
    if (const auto value =
            x11::propertyValue(replies_.take<xcb_get_property_reply_t>(request.cookie).get())) {
        tray.scale = scaleIn(value->words()).value_or(tray.scale);
    }
}

std::vector<WindowId> TrayReader::windowsOfClient(std::uint32_t client) {
    if (!hasResource_) {
        return {};
    }
    // Asks for everything: the server finds nothing when it is asked for one type only.
    const xcb_res_resource_id_spec_t everything{.resource = XCB_NONE, .type = XCB_NONE};
    const auto reply = replies_.take<xcb_res_query_resource_bytes_reply_t>(
        xcb_res_query_resource_bytes(connection_->get(), client, 1, &everything));
    std::vector<WindowId> result;
    if (!reply) {
        return result;
    }
    for (auto size = xcb_res_query_resource_bytes_sizes_iterator(reply.get()); size.rem != 0;
         xcb_res_resource_size_value_next(&size)) {
        // The server tells one type for each id; a window whose shape its program watches goes by
        // that.
        const xcb_atom_t type = size.data->size.spec.type;
        if (type == XCB_ATOM_WINDOW || type == atom(Name::ShapeEvent)) {
            result.push_back(size.data->size.spec.resource);
        }
    }
    return result;
}

std::vector<WindowId> TrayReader::embeddedWindows(const Tray& tray) {
    const std::uint32_t trayClient = clientOf(tray.owner);
    std::vector<xcb_query_tree_cookie_t> trees;
    for (const WindowId window : windowsOfClient(trayClient)) {
        trees.push_back(xcb_query_tree(connection_->get(), window));
    }
    std::vector<WindowId> result;
    for (const auto cookie : trees) {
        const auto tree = replies_.take<xcb_query_tree_reply_t>(cookie);
        if (!tree) {
            continue;
        }
        const auto* const children = xcb_query_tree_children(tree.get());
        const std::span<const xcb_window_t> embedded(
            children, static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
        std::ranges::copy_if(embedded, std::back_inserter(result),
                             [&](xcb_window_t child) { return clientOf(child) != trayClient; });
    }
    return result;
}

xcb_res_query_client_ids_cookie_t
TrayReader::requestProcesses(const std::vector<WindowId>& windows) const {
    // One question per client, since a client may have any number of icons.
    std::map<std::uint32_t, xcb_res_client_id_spec_t> clients;
    for (const WindowId window : windows) {
        clients[clientOf(window)] = {.client = window,
                                     .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    }
    std::vector<xcb_res_client_id_spec_t> specs;
    std::ranges::copy(std::views::values(clients), std::back_inserter(specs));
    return xcb_res_query_client_ids(connection_->get(), static_cast<std::uint32_t>(specs.size()),
                                    specs.data());
}

std::vector<WindowId> TrayReader::windowsIn(const Tray& tray) {
    if (!tray.items) {
        return withoutDuplicates(embeddedWindows(tray));
    }
    if (!tray.details) {
        return withoutDuplicates(*tray.items);
    }
    std::vector<WindowId> windows;
    windows.reserve(tray.details->size());
    std::ranges::transform(*tray.details, std::back_inserter(windows), &x11::PublishedItem::window);
    return windows;
}

TrayReader::Batch TrayReader::requestIcons(const Tray& tray,
                                           const std::vector<WindowId>& windows) const {
    Batch batch;
    batch.trees.reserve(windows.size());
    for (const WindowId window : windows) {
        batch.trees.push_back(xcb_query_tree(connection_->get(), window));
    }
    if (!tray.details) {
        std::ranges::transform(windows, std::back_inserter(batch.icons),
                               [this](WindowId window) { return requestIcon(window); });
    }
    if (hasResource_) {
        batch.processes = requestProcesses(windows);
    }
    return batch;
}

std::vector<TrayIcon> TrayReader::describe(const Tray& tray) {
    const std::vector<WindowId> windows = windowsIn(tray);
    if (windows.empty()) {
        return {};
    }
    const Batch batch = requestIcons(tray, windows);
    std::vector<bool> embedded;
    embedded.reserve(windows.size());
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const bool isLent = tray.details && (*tray.details)[i].process.has_value();
        embedded.push_back(takeEmbedding(batch.trees[i], windows[i], clientOf(tray.owner),
                                         isLent ? IconKind::Lent : IconKind::Window));
    }
    std::vector<TrayIcon> icons;
    icons.reserve(windows.size());
    for (std::size_t i = 0; i < windows.size(); ++i) {
        auto icon = tray.details ? iconFrom((*tray.details)[i]) : takeIcon(batch.icons[i]);
        if (icon && embedded[i]) {
            icons.push_back(*std::move(icon));
        }
    }
    if (hasResource_) {
        const auto processes =
            processesOf(replies_.take<xcb_res_query_client_ids_reply_t>(batch.processes).get());
        for (TrayIcon& icon : icons) {
            if (icon.kind == IconKind::Lent) {
                continue;
            }
            const auto process = processes.find(clientOf(icon.window));
            icon.pid = process == processes.end() ? 0 : process->second;
        }
    }
    return icons;
}

TrayReader::IconRequest TrayReader::requestIcon(WindowId window) const {
    return {.window = window,
            .frame = requestFrame(window),
            .name = x11::requestProperty(*connection_, window, atom(Name::NetWmName),
                                         XCB_GET_PROPERTY_TYPE_ANY, nameByteLimit),
            .wmClass = x11::requestProperty(*connection_, window, XCB_ATOM_WM_CLASS,
                                            XCB_ATOM_STRING, nameByteLimit)};
}

// An icon on its way into the tray or out of it lies in somebody else's window. Anybody may write
// what the tray publishes; the tray's own windows are no icons but those that it says it has lent,
// and no others are lent.
bool TrayReader::takeEmbedding(xcb_query_tree_cookie_t request, WindowId window,
                               std::uint32_t trayClient, IconKind kind) {
    const auto tree = replies_.take<xcb_query_tree_reply_t>(request);
    return tree && clientOf(tree->parent) == trayClient &&
           (clientOf(window) == trayClient) == (kind == IconKind::Lent);
}

std::optional<TrayIcon> TrayReader::takeIcon(const IconRequest& request) {
    const auto frame = takeFrame(request.frame);
    std::string name = takeText(request.name);
    const auto wmClass =
        x11::propertyValue(replies_.take<xcb_get_property_reply_t>(request.wmClass.cookie).get());
    if (!frame) {
        return std::nullopt;
    }
    auto texts = wmClass ? wmClass->texts() : std::vector<std::string>{};
    texts.resize(2);
    return TrayIcon{.window = request.window,
                    .frame = *frame,
                    .kind = IconKind::Window,
                    .pid = 0,
                    .name = std::move(name),
                    .instanceName = presentableLatin1(texts[0]),
                    .className = presentableLatin1(texts[1])};
}

void TrayReader::complete(std::vector<TrayIcon>& icons, bool titlesKnown) {
    struct Claim {
        TrayIcon* icon;
        x11::PropertyRequest pid;
        x11::PropertyRequest machine;
    };
    struct Title {
        TrayIcon* icon;
        x11::PropertyRequest name;
    };
    std::vector<Claim> claims;
    std::vector<Title> titles;
    for (TrayIcon& icon : icons) {
        if (icon.pid < 1 && icon.kind == IconKind::Window) {
            claims.push_back(
                {.icon = &icon,
                 .pid = x11::requestProperty(*connection_, icon.window, atom(Name::NetWmPid)),
                 .machine =
                     x11::requestProperty(*connection_, icon.window, XCB_ATOM_WM_CLIENT_MACHINE,
                                          XCB_GET_PROPERTY_TYPE_ANY, nameByteLimit)});
        }
        if (icon.name.empty() && !titlesKnown) {
            titles.push_back(
                {.icon = &icon,
                 .name = x11::requestProperty(*connection_, icon.window, XCB_ATOM_WM_NAME,
                                              XCB_GET_PROPERTY_TYPE_ANY, nameByteLimit)});
        }
    }
    for (const Claim& claim : claims) {
        const auto pid =
            x11::propertyValue(replies_.take<xcb_get_property_reply_t>(claim.pid.cookie).get());
        const std::string machine = takeText(claim.machine);
        const auto words = pid ? pid->words() : std::vector<std::uint32_t>{};
        const bool isOurs = !machine.empty() && machine == hostName_;
        claim.icon->pid = isOurs && !words.empty() ? static_cast<ProcessId>(words[0]) : 0;
    }
    for (const Title& title : titles) {
        title.icon->name = takeText(title.name);
    }
}

std::optional<TrayView> TrayReader::look() {
    if (known_ && isTrue(*known_)) {
        known_->view.roundTrips = 0;
        return known_->view;
    }
    if (!replies_.begin(patience)) {
        return std::nullopt;
    }
    // Counted before the questions: what comes after it is a change to their answers.
    const auto changes = known_ ? changesOf(known_->view.owner) : std::nullopt;
    Tray tray = findTray();
    if (known_ && isOf(*known_, tray) && !replies_.failed()) {
        known_->changes = changes;
        known_->confirmed = std::chrono::steady_clock::now();
        known_->view.roundTrips = replies_.roundTrips();
        return known_->view;
    }
    known_.reset();
    TrayView view;
    view.owner = tray.owner;
    if (tray.owner != XCB_NONE) {
        readOwner(tray);
        const bool ours = tray.items.has_value();
        view.isMenuBar = ours;
        view.icons = describe(tray);
        complete(view.icons, tray.details.has_value());
        if (!ours) {
            // Icons in one column, as trays of several rows have them: from top to bottom.
            std::ranges::sort(view.icons, {}, [](const TrayIcon& icon) {
                return std::tuple(icon.frame.x, icon.frame.y, icon.window);
            });
        }
    }
    view.coordinates = Coordinates(tray.scale, tray.primaryMonitor);
    view.roundTrips = replies_.roundTrips();
    if (replies_.failed()) {
        return std::nullopt;
    }
    if (view.isMenuBar && tray.serial) {
        known_ = Known{.view = view,
                       .serial = *tray.serial,
                       .primaryMonitor = tray.primaryMonitor,
                       .confirmed = std::chrono::steady_clock::now(),
                       .changes = std::nullopt};
    }
    return view;
}

std::optional<Coordinates> TrayReader::coordinates() {
    if (!replies_.begin(patience)) {
        return std::nullopt;
    }
    Tray tray = findTray();
    if (tray.owner != XCB_NONE) {
        takeScale(requestScale(tray), tray);
    }
    return replies_.failed() ? std::nullopt
                             : std::optional(Coordinates(tray.scale, tray.primaryMonitor));
}

std::optional<Rect> TrayReader::frameOf(WindowId window) {
    if (!replies_.begin(patience)) {
        return std::nullopt;
    }
    const FrameRequest request = requestFrame(window);
    Tray tray = findTray();
    const auto frame = takeFrame(request);
    if (frame && tray.owner != XCB_NONE) {
        takeScale(requestScale(tray), tray);
    }
    if (!frame || replies_.failed()) {
        return std::nullopt;
    }
    return Coordinates(tray.scale, tray.primaryMonitor).toGlobal(*frame);
}

} // namespace pelistra::linux

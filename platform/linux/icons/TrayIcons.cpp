#include "platform/linux/icons/TrayIcons.h"

#include "platform/linux/icons/PresentableText.h"
#include "platform/linux/screens/RootFrame.h"
#include "platform/posix/Environment.h"
#include "platform/x11/Clients.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace pelistra::linux {

namespace {

using Name = TrayQuestions::Name;

// Names of a few words fit; what is longer is cut anyway, so it need not travel.
constexpr std::uint32_t nameByteLimit = 1024;

// A window that moves between two containers during a look can be seen in both.
std::vector<WindowId> withoutDuplicates(std::vector<WindowId> windows) {
    std::unordered_set<WindowId> seen;
    std::erase_if(windows, [&](WindowId window) { return !seen.insert(window).second; });
    return windows;
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

class Reading {
public:
    Reading(TrayQuestions& questions, const TrayFacts& tray)
        : questions_(questions), connection_(questions.connection()), replies_(questions.replies()),
          tray_(tray), trayClient_(clientOf(tray.owner)) {}

    [[nodiscard]] std::vector<TrayIcon> icons();

private:
    struct IconRequest {
        WindowId window;
        FrameRequest frame;
        x11::PropertyRequest name;
        x11::PropertyRequest wmClass;
    };
    // What the server is asked about every window that may be an icon: whether it is embedded, and
    // what the tray has not told.
    struct Batch {
        std::vector<xcb_query_tree_cookie_t> trees;
        // None where the tray has told.
        std::vector<IconRequest> icons;
        x11::ProcessesRequest processes;
    };

    [[nodiscard]] std::uint32_t clientOf(WindowId window) const {
        return x11::clientOf(connection_, window);
    }
    [[nodiscard]] x11::PropertyRequest requestText(WindowId window, xcb_atom_t property) const {
        return x11::requestProperty(connection_, window, property, XCB_GET_PROPERTY_TYPE_ANY,
                                    nameByteLimit);
    }
    [[nodiscard]] std::string takeText(x11::PropertyRequest request);
    [[nodiscard]] std::vector<WindowId> windows();
    [[nodiscard]] std::vector<WindowId> embeddedWindows();
    [[nodiscard]] std::vector<WindowId> windowsOfTray();
    [[nodiscard]] Batch request(const std::vector<WindowId>& windows) const;
    [[nodiscard]] std::vector<TrayIcon> describe(const std::vector<WindowId>& windows);
    [[nodiscard]] bool takeEmbedding(xcb_query_tree_cookie_t request, WindowId window,
                                     IconKind kind);
    [[nodiscard]] std::optional<TrayIcon> takeIcon(const IconRequest& request);
    void addProcesses(const x11::ProcessesRequest& request, std::vector<TrayIcon>& icons);
    // Asks for what programs claim of themselves where nobody else knows better: the process, and
    // the title in its old form.
    void complete(std::vector<TrayIcon>& icons);

    TrayQuestions& questions_;
    const x11::Connection& connection_;
    x11::Replies& replies_;
    const TrayFacts& tray_;
    std::uint32_t trayClient_;
};

std::vector<TrayIcon> Reading::icons() {
    const auto all = windows();
    if (all.empty()) {
        return {};
    }
    auto icons = describe(all);
    complete(icons);
    if (!tray_.items) {
        // Icons in one column, as trays of several rows have them: from top to bottom.
        std::ranges::sort(icons, {}, [](const TrayIcon& icon) {
            return std::tuple(icon.frame.x, icon.frame.y, icon.window);
        });
    }
    return icons;
}

std::string Reading::takeText(x11::PropertyRequest request) {
    const auto value = x11::readProperty(replies_, request);
    return value ? presentableText(value->utf8()) : std::string();
}

std::vector<WindowId> Reading::windows() {
    if (!tray_.items) {
        return withoutDuplicates(embeddedWindows());
    }
    if (!tray_.details) {
        return withoutDuplicates(*tray_.items);
    }
    std::vector<WindowId> windows;
    windows.reserve(tray_.details->size());
    std::ranges::transform(*tray_.details, std::back_inserter(windows),
                           &x11::PublishedItem::window);
    return windows;
}

std::vector<WindowId> Reading::windowsOfTray() {
    if (connection_.extension(xcb_res_id) == nullptr) {
        return {};
    }
    // Asks for everything: the server finds nothing when it is asked for one type only.
    const xcb_res_resource_id_spec_t everything{.resource = XCB_NONE, .type = XCB_NONE};
    const auto reply = replies_.take<xcb_res_query_resource_bytes_reply_t>(
        xcb_res_query_resource_bytes(connection_.get(), trayClient_, 1, &everything));
    std::vector<WindowId> result;
    if (!reply) {
        return result;
    }
    for (auto size = xcb_res_query_resource_bytes_sizes_iterator(reply.get()); size.rem != 0;
         xcb_res_resource_size_value_next(&size)) {
        // The server tells one type for each id; a window whose shape its program watches goes by
        // that.
        const xcb_atom_t type = size.data->size.spec.type;
        if (type == XCB_ATOM_WINDOW || type == questions_.atom(Name::ShapeEvent)) {
            result.push_back(size.data->size.spec.resource);
        }
    }
    return result;
}

std::vector<WindowId> Reading::embeddedWindows() {
    std::vector<xcb_query_tree_cookie_t> trees;
    for (const WindowId window : windowsOfTray()) {
        trees.push_back(xcb_query_tree(connection_.get(), window));
    }
    std::vector<WindowId> result;
    for (const auto cookie : trees) {
        const auto tree = replies_.take<xcb_query_tree_reply_t>(cookie);
        if (!tree) {
            continue;
        }
        const std::span<const xcb_window_t> children(
            xcb_query_tree_children(tree.get()),
            static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
        std::ranges::copy_if(children, std::back_inserter(result),
                             [&](xcb_window_t child) { return clientOf(child) != trayClient_; });
    }
    return result;
}

Reading::Batch Reading::request(const std::vector<WindowId>& windows) const {
    Batch batch;
    batch.trees.reserve(windows.size());
    for (const WindowId window : windows) {
        batch.trees.push_back(xcb_query_tree(connection_.get(), window));
    }
    if (!tray_.details) {
        for (const WindowId window : windows) {
            batch.icons.push_back(
                {.window = window,
                 .frame = requestFrame(connection_, window),
                 .name = requestText(window, questions_.atom(Name::NetWmName)),
                 .wmClass = x11::requestProperty(connection_, window, XCB_ATOM_WM_CLASS,
                                                 XCB_ATOM_STRING, nameByteLimit)});
        }
    }
    batch.processes = x11::requestProcesses(connection_, windows);
    return batch;
}

std::vector<TrayIcon> Reading::describe(const std::vector<WindowId>& windows) {
    const Batch batch = request(windows);
    std::vector<bool> embedded;
    embedded.reserve(windows.size());
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const bool isLent = tray_.details && (*tray_.details)[i].process.has_value();
        embedded.push_back(
            takeEmbedding(batch.trees[i], windows[i], isLent ? IconKind::Lent : IconKind::Window));
    }
    std::vector<TrayIcon> icons;
    icons.reserve(windows.size());
    for (std::size_t i = 0; i < windows.size(); ++i) {
        auto icon = tray_.details ? iconFrom((*tray_.details)[i]) : takeIcon(batch.icons[i]);
        if (icon && embedded[i]) {
            icons.push_back(*std::move(icon));
        }
    }
    addProcesses(batch.processes, icons);
    return icons;
}

// An icon on its way into the tray or out of it lies in somebody else's window. Anybody may write
// what the tray publishes; the tray's own windows are no icons but those that it says it has lent,
// and no others are lent.
bool Reading::takeEmbedding(xcb_query_tree_cookie_t request, WindowId window, IconKind kind) {
    const auto tree = replies_.take<xcb_query_tree_reply_t>(request);
    return tree && clientOf(tree->parent) == trayClient_ &&
           (clientOf(window) == trayClient_) == (kind == IconKind::Lent);
}

std::optional<TrayIcon> Reading::takeIcon(const IconRequest& request) {
    const auto frame = takeFrame(replies_, request.frame);
    std::string name = takeText(request.name);
    const auto wmClass = x11::readProperty(replies_, request.wmClass);
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

void Reading::addProcesses(const x11::ProcessesRequest& request, std::vector<TrayIcon>& icons) {
    const auto processes = x11::takeProcesses(replies_, request).value_or(x11::Processes{});
    for (TrayIcon& icon : icons) {
        const auto process = processes.find(clientOf(icon.window));
        if (icon.kind == IconKind::Window && process != processes.end()) {
            icon.pid = process->second;
        }
    }
}

void Reading::complete(std::vector<TrayIcon>& icons) {
    struct Claim {
        TrayIcon* icon;
        x11::PropertyRequest pid;
        x11::PropertyRequest machine;
    };
    std::vector<Claim> claims;
    std::vector<std::pair<TrayIcon*, x11::PropertyRequest>> titles;
    for (TrayIcon& icon : icons) {
        if (icon.pid < 1 && icon.kind == IconKind::Window) {
            claims.push_back({.icon = &icon,
                              .pid = x11::requestProperty(connection_, icon.window,
                                                          questions_.atom(Name::NetWmPid)),
                              .machine = requestText(icon.window, XCB_ATOM_WM_CLIENT_MACHINE)});
        }
        if (icon.name.empty() && !tray_.details) {
            titles.emplace_back(&icon, requestText(icon.window, XCB_ATOM_WM_NAME));
        }
    }
    const std::string host = claims.empty() ? std::string() : posix::hostName();
    for (const Claim& claim : claims) {
        const auto pid = x11::readProperty(replies_, claim.pid);
        const std::string machine = takeText(claim.machine);
        const auto words = pid ? pid->words() : std::vector<std::uint32_t>{};
        const bool isOurs = !machine.empty() && machine == host;
        claim.icon->pid = isOurs && !words.empty() ? static_cast<ProcessId>(words[0]) : 0;
    }
    for (const auto& [icon, request] : titles) {
        icon->name = takeText(request);
    }
}

} // namespace

std::vector<TrayIcon> readIcons(TrayQuestions& questions, const TrayFacts& tray) {
    return Reading(questions, tray).icons();
}

} // namespace pelistra::linux

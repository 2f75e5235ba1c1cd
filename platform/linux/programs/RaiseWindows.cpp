#include "platform/linux/programs/RaiseWindows.h"

#include "platform/x11/Atoms.h"
#include "platform/x11/Clients.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Properties.h"
#include "platform/x11/Replies.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace pelistra::linux {

namespace {

constexpr std::chrono::milliseconds patience{1000};
// What EWMH calls a request that a pager makes for the user.
constexpr std::uint32_t sourcePager = 2;
constexpr std::uint32_t everyDesktop = 0xffffffff;

// One conversation with the window manager on a connection of its own, so that the events it waits
// for are nobody else's.
class WindowRaiser {
public:
    explicit WindowRaiser(const x11::Connection& connection)
        : connection_(connection), replies_(connection),
          atoms_(x11::internAtoms(connection, names)) {}

    [[nodiscard]] bool raise(const std::function<bool(ProcessId)>& isWanted) {
        if (!replies_.begin(patience)) {
            return false;
        }
        const auto active = requestRoot(ActiveWindow);
        const auto currentDesktop = requestRoot(CurrentDesktop);
        const std::vector<WindowId> windows = managedWindows();
        const std::vector<WindowId> found = wantedAmong(windows, isWanted);
        const auto activeWords = take(active);
        const auto currentWords = take(currentDesktop);
        if (found.empty()) {
            return false;
        }
        const auto desktopWords =
            take(x11::requestProperty(connection_, found.back(), atoms_[WmDesktop]));
        const std::uint32_t time = serverTime();
        // The newest comes last, above the others.
        for (const WindowId window : found) {
            sendToRoot(RestackWindow, window, {sourcePager, 0, XCB_STACK_MODE_ABOVE, 0, 0});
        }
        // Not every window manager goes to the window's desktop by itself, so a pager does.
        if (!desktopWords.empty() && desktopWords[0] != everyDesktop &&
            desktopWords != currentWords) {
            sendToRoot(CurrentDesktop, connection_.root(), {desktopWords[0], time, 0, 0, 0});
        }
        sendToRoot(ActiveWindow, found.back(),
                   {sourcePager, time, activeWords.empty() ? 0 : activeWords[0], 0, 0});
        return synchronise() && connection_.isAlive();
    }

private:
    enum Name : std::uint8_t {
        ActiveWindow,
        CurrentDesktop,
        WmDesktop,
        ClientListStacking,
        ClientList,
        RestackWindow,
        WmPid,
        WmState,
        SkipTaskbar,
        WindowType,
        Dock,
        Desktop,
        Count
    };
    static constexpr std::array<std::string_view, Count> names{"_NET_ACTIVE_WINDOW",
                                                               "_NET_CURRENT_DESKTOP",
                                                               "_NET_WM_DESKTOP",
                                                               "_NET_CLIENT_LIST_STACKING",
                                                               "_NET_CLIENT_LIST",
                                                               "_NET_RESTACK_WINDOW",
                                                               "_NET_WM_PID",
                                                               "_NET_WM_STATE",
                                                               "_NET_WM_STATE_SKIP_TASKBAR",
                                                               "_NET_WM_WINDOW_TYPE",
                                                               "_NET_WM_WINDOW_TYPE_DOCK",
                                                               "_NET_WM_WINDOW_TYPE_DESKTOP"};

    [[nodiscard]] x11::PropertyRequest requestRoot(Name name) const {
        return x11::requestProperty(connection_, connection_.root(), atoms_.at(name));
    }
    [[nodiscard]] std::vector<std::uint32_t> take(x11::PropertyRequest request) {
        const auto value = x11::readProperty(replies_, request);
        return value ? value->words() : std::vector<std::uint32_t>{};
    }

    [[nodiscard]] std::vector<WindowId> managedWindows() {
        const auto stacking = requestRoot(ClientListStacking);
        const auto list = requestRoot(ClientList);
        auto windows = take(stacking);
        auto unstacked = take(list);
        return windows.empty() ? unstacked : windows;
    }

    [[nodiscard]] std::vector<WindowId>
    wantedAmong(const std::vector<WindowId>& windows,
                const std::function<bool(ProcessId)>& isWanted) {
        struct Request {
            WindowId window;
            x11::PropertyRequest pid;
            x11::PropertyRequest state;
            x11::PropertyRequest type;
        };
        std::vector<Request> requests;
        requests.reserve(windows.size());
        for (const WindowId window : windows) {
            requests.push_back(
                {.window = window,
                 .pid = x11::requestProperty(connection_, window, atoms_[WmPid]),
                 .state = x11::requestProperty(connection_, window, atoms_[WmState]),
                 .type = x11::requestProperty(connection_, window, atoms_[WindowType])});
        }
        const auto processes =
            x11::takeProcesses(replies_, x11::requestProcesses(connection_, windows))
                .value_or(x11::Processes{});
        std::vector<WindowId> wanted;
        for (const Request& request : requests) {
            const auto claimed = take(request.pid);
            const auto state = take(request.state);
            const auto type = take(request.type);
            const auto known = processes.find(x11::clientOf(connection_, request.window));
            const ProcessId process =
                known != processes.end()
                    ? known->second
                    : (claimed.empty() ? 0 : static_cast<ProcessId>(claimed[0]));
            const auto has = [&](const std::vector<std::uint32_t>& list, Name name) {
                return std::ranges::find(list, atoms_.at(name)) != list.end();
            };
            if (process > 0 && !has(state, SkipTaskbar) && !has(type, Dock) &&
                !has(type, Desktop) && isWanted(process)) {
                wanted.push_back(request.window);
            }
        }
        return wanted;
    }

    // The server's time: it stands in the event of a property that changes. 0 (now) without an
    // answer.
    [[nodiscard]] std::uint32_t serverTime() {
        const xcb_window_t own = connection_.newId();
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, own, connection_.root(), -1, -1,
                          1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                          XCB_CW_EVENT_MASK, &events);
        xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, own, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, 0, nullptr);
        xcb_destroy_window(connection_.get(), own);
        if (!synchronise()) {
            return XCB_CURRENT_TIME;
        }
        while (const auto event = connection_.pollEvent()) {
            if (x11::typeOf(*event) == XCB_PROPERTY_NOTIFY) {
                return x11::eventAs<xcb_property_notify_event_t>(*event).time;
            }
        }
        return XCB_CURRENT_TIME;
    }

    [[nodiscard]] bool synchronise() {
        return replies_.take<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_.get())) !=
               nullptr;
    }

    void sendToRoot(Name message, WindowId window,
                    const std::array<std::uint32_t, 5>& words) const {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = atoms_.at(message);
        std::ranges::copy(words, event.data.data32);
        xcb_send_event(connection_.get(), 0, connection_.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       // Every event travels as 32 bytes.
                       reinterpret_cast<const char*>(&event));
    }

    const x11::Connection& connection_;
    x11::Replies replies_;
    std::array<xcb_atom_t, Count> atoms_;
};

} // namespace

bool raiseWindows(const std::string& display, const std::function<bool(ProcessId)>& isWanted) {
    x11::Connection::Failure failure;
    const auto connection = x11::Connection::open(display, failure);
    return connection != nullptr && WindowRaiser(*connection).raise(isWanted);
}

} // namespace pelistra::linux

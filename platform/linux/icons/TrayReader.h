#pragma once

#include "base/Geometry.h"
#include "platform/Application.h"
#include "platform/WindowList.h"
#include "platform/linux/screens/Coordinates.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Properties.h"
#include "platform/x11/Replies.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <xcb/res.h>

namespace pelistra::linux {

// What an icon is to the server.
enum class IconKind : std::uint8_t {
    // A window of its program.
    Window,
    // A window that our menu bar has lent to a program that shows its icon over the session bus.
    Lent,
};

// One icon that is embedded in the tray at the moment of the look.
struct TrayIcon {
    WindowId window = 0;
    RootRect frame;
    IconKind kind = IconKind::Window;
    // The process behind the window: what the server knows of the client's connection, or, of a
    // lent window, what the bar knows of the program's; only when it knows nothing, the client's
    // own claim, provided that it is made for this machine. 0 when there is neither.
    ProcessId pid = 0;
    // The window's title, presentable; empty when it has none.
    std::string name;
    // The two texts of WM_CLASS, presentable.
    std::string instanceName;
    std::string className;
};

// The tray as it was at one moment.
struct TrayView {
    // The owner of the tray selection; 0 when there is no tray.
    WindowId owner = 0;
    // Our own menu bar, which pushes what does not fit off its left end.
    bool isMenuBar = false;
    Coordinates coordinates{1, {}};
    // In the bar's order from left to right.
    std::vector<TrayIcon> icons;
    // How often the look waited for the server.
    int roundTrips = 0;
};

// Looks at the system tray, whoever runs it. Our own bar publishes its items in their order; under
// any other tray the embedded windows are found among the children of the tray's own windows and
// ordered by their place. A look sends its requests in batches, so that it waits for the server a
// fixed number of times whatever the number of icons: at most mostRoundTrips. Of its items our own
// bar also tells what would have to be asked one by one. It counts the changes, so a look at an
// unchanged bar waits once and asks about no icon; with somebody who hears of changes it need not
// even wait. A window that goes away during a look is missing in it, nothing else.
class TrayReader {
public:
    static constexpr int mostRoundTrips = 6;
    // How long one look may wait for the server altogether. A user notices a longer halt, and a
    // server that does not answer for so long is grabbed or stopped.
    static constexpr std::chrono::milliseconds patience{1000};

    // For how long looks may rest on what others have heard, without asking the server: there are
    // servers that do not tell of everything.
    static constexpr std::chrono::milliseconds usualTrust{10'000};

    // How many changes of the tray with that owner, and of what its place depends on, have been
    // heard of until now; empty when they are not heard.
    using ChangesHeard = std::function<std::optional<std::uint64_t>(WindowId owner)>;

    // Asks the server once for what does not change while it runs. The connection must outlive this
    // object, and nobody else waits on it meanwhile.
    explicit TrayReader(const x11::Connection& connection, ChangesHeard changesHeard = {},
                        std::chrono::milliseconds longestTrust = usualTrust);

    // Empty when the server did not answer in time or the tray went away during the look.
    [[nodiscard]] std::optional<TrayView> look();

    // The live frame of one window, whether or not it is in the tray, in points of the global
    // space; empty when there is no such window.
    [[nodiscard]] std::optional<Rect> frameOf(WindowId window);

    // How root pixels become points now; empty when the server did not answer in time.
    [[nodiscard]] std::optional<Coordinates> coordinates();

private:
    enum class Name : std::uint8_t {
        Selection,
        Items,
        Details,
        Scale,
        Serial,
        NetWmName,
        NetWmPid,
        ShapeEvent,
        Count
    };
    struct Tray;
    // A view of our own bar, and what has to be the same for it to be true still.
    struct Known {
        TrayView view;
        std::uint32_t serial = 0;
        RootRect primaryMonitor;
        std::chrono::steady_clock::time_point confirmed;
        // What had been heard of when the server was asked.
        std::optional<std::uint64_t> changes;
    };
    struct FrameRequest;
    struct IconRequest;
    struct Batch;

    [[nodiscard]] xcb_atom_t atom(Name name) const {
        return atoms_[static_cast<std::size_t>(name)];
    }
    [[nodiscard]] std::uint32_t clientOf(WindowId window) const;
    [[nodiscard]] FrameRequest requestFrame(WindowId window) const;
    [[nodiscard]] std::optional<RootRect> takeFrame(const FrameRequest& request);
    [[nodiscard]] std::string takeText(x11::PropertyRequest request);
    [[nodiscard]] Tray findTray();
    void readOwner(Tray& tray);
    [[nodiscard]] x11::PropertyRequest requestScale(const Tray& tray) const;
    void takeScale(x11::PropertyRequest request, Tray& tray);
    [[nodiscard]] std::optional<std::uint64_t> changesOf(WindowId owner) const;
    // Whether what is known is true without a question.
    [[nodiscard]] bool isTrue(const Known& known) const;
    // Whether what is known is what another whole look would show.
    [[nodiscard]] static bool isOf(const Known& known, const Tray& tray);
    [[nodiscard]] std::optional<std::uint32_t> takeSerial(x11::PropertyRequest request);
    // What the server is asked about every window that may be an icon: whether it is embedded, and
    // what the tray has not told.
    [[nodiscard]] Batch requestIcons(const Tray& tray, const std::vector<WindowId>& windows) const;
    [[nodiscard]] std::vector<WindowId> windowsIn(const Tray& tray);
    [[nodiscard]] std::vector<WindowId> embeddedWindows(const Tray& tray);
    [[nodiscard]] std::vector<WindowId> windowsOfClient(std::uint32_t client);
    [[nodiscard]] std::vector<TrayIcon> describe(const Tray& tray);
    [[nodiscard]] xcb_res_query_client_ids_cookie_t
    requestProcesses(const std::vector<WindowId>& windows) const;
    [[nodiscard]] IconRequest requestIcon(WindowId window) const;
    [[nodiscard]] bool takeEmbedding(xcb_query_tree_cookie_t request, WindowId window,
                                     std::uint32_t trayClient, IconKind kind);
    [[nodiscard]] std::optional<TrayIcon> takeIcon(const IconRequest& request);
    void complete(std::vector<TrayIcon>& icons, bool titlesKnown);

    const x11::Connection* connection_;
    ChangesHeard changesHeard_;
    std::chrono::milliseconds longestTrust_;
    x11::Replies replies_;
    std::array<xcb_atom_t, static_cast<std::size_t>(Name::Count)> atoms_{};
    std::string hostName_;
    bool hasResource_ = false;
    bool hasMonitors_ = false;
    std::optional<Known> known_;
};

} // namespace pelistra::linux

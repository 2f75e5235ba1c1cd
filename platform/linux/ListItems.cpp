#include "platform/linux/ListItems.h"

#include "overflow/OverflowItem.h"
#include "platform/linux/ListItemsText.h"
#include "platform/linux/TrayLook.h"
#include "platform/linux/X11RunningApplications.h"
#include "platform/x11/Connection.h"

#include <ostream>
#include <utility>

namespace pelistra::desktop {

namespace {

// Derived texts are the organiser's own, so that the list says what the second row would show.
ListedItem describe(const TrayIcon& icon, const TrayView& view,
                    X11RunningApplications& applications) {
    PrivateMenuBarWindow window{.id = icon.window,
                                .ownerPID = icon.pid,
                                .ownerName = applications.ownerName(icon).value_or("菜单栏项目"),
                                .windowName = icon.name,
                                .bundleIdentifier = {},
                                .frame = view.coordinates.toGlobal(icon.frame),
                                .applicationIcon = nullptr};
    if (const auto application = applications.runningApplication(icon.pid)) {
        window.bundleIdentifier = application->bundleIdentifier();
    }
    const OverflowItem item = OverflowItem::from(std::move(window), nullptr);
    return {.id = item.id,
            .process = item.ownerPID,
            .owner = item.ownerName,
            .windowName = item.windowName,
            .desktopId = item.bundleIdentifier,
            .frame = item.lastKnownFrame,
            .hidden = view.isMenuBar ? item.lastKnownFrame.maxX() <= 0 : icon.frame.right() <= 0,
            .displayName = item.displayName(),
            .fallbackSymbol = item.fallbackSymbol()};
}

} // namespace

int listItems(std::ostream& out, std::ostream& err, bool json, const std::string& display) {
    x11::Connection::Failure failure;
    const auto connection = x11::Connection::open(display, failure);
    if (!connection) {
        err << "pelistra: " << failure.message << '\n';
        return 1;
    }
    const auto view = TrayLook(*connection).look();
    if (!view || view->owner == 0) {
        err << "pelistra: "
            << (view ? "there is no system tray on this display" : "the X server does not answer")
            << '\n';
        return 1;
    }
    X11RunningApplications applications(display);
    std::vector<ListedItem> items;
    for (const TrayIcon& icon : view->icons) {
        items.push_back(describe(icon, *view, applications));
    }
    (json ? writeJson : writeTable)(out, items);
    return 0;
}

} // namespace pelistra::desktop

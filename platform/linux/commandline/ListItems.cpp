#include "platform/linux/commandline/ListItems.h"

#include "overflow/OverflowItem.h"
#include "platform/linux/commandline/ListItemsText.h"
#include "platform/linux/icons/TrayReader.h"
#include "platform/linux/programs/X11RunningApplications.h"
#include "platform/posix/Translation.h"
#include "platform/x11/Connection.h"

#include <future>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace pelistra::linux {

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
            .kind = icon.kind == IconKind::Lent ? "StatusNotifierItem" : "XEmbed",
            .owner = item.ownerName,
            .windowName = item.windowName,
            .desktopId = item.bundleIdentifier,
            .frame = item.lastKnownFrame,
            .hidden = view.isMenuBar ? item.lastKnownFrame.maxX() <= 0 : icon.frame.right() <= 0,
            .displayName = item.displayName(),
            .fallbackSymbol = item.fallbackSymbol()};
}

// What is to be printed, or why there is nothing to print.
struct Listing {
    std::vector<ListedItem> items;
    std::string complaint;
};

Listing makeListing(const std::string& display) {
    x11::Connection::Failure failure;
    const auto connection = x11::Connection::open(display, failure);
    if (!connection) {
        return {.items = {}, .complaint = failure.message};
    }
    const auto view = TrayReader(*connection).read();
    if (!view) {
        return {.items = {}, .complaint = x11::Connection::noAnswer()};
    }
    if (view->owner == 0) {
        return {.items = {},
                .complaint = posix::translated("there is no system tray on this display")};
    }
    X11RunningApplications applications(display);
    Listing listing;
    for (const TrayIcon& icon : view->icons) {
        listing.items.push_back(describe(icon, *view, applications));
    }
    return listing;
}

} // namespace

int listItems(std::ostream& out, std::ostream& err, bool json, const std::string& display) {
    // A server that is stopped or grabbed lets even the opening of a connection wait for ever, and
    // nothing can end that wait: the thread goes with the process.
    std::packaged_task<Listing()> task([display] { return makeListing(display); });
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    const Listing listing = result.wait_for(longestListing) == std::future_status::ready
                                ? result.get()
                                : Listing{.items = {}, .complaint = x11::Connection::noAnswer()};
    if (!listing.complaint.empty()) {
        err << "pelistra: " << listing.complaint << '\n';
        return 1;
    }
    (json ? writeJson : writeTable)(out, listing.items);
    return 0;
}

} // namespace pelistra::linux

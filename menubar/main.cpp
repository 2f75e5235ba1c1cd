#include "menubar/Log.h"
#include "menubar/MenuBar.h"
#include "menubar/Options.h"
#include "menubar/OrderFile.h"
#include "menubar/Server.h"
#include "menubar/TraySelection.h"
#include "platform/posix/StopSignals.h"
#include "platform/posix/Translation.h"
#include "platform/x11/Connection.h"

#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace {

using namespace pelistra;
using namespace pelistra::menubar;

constexpr int cannotRun = 1;
// For as long as it takes, or until it is told to stop: without an answer the bar has nothing to
// do, and it must not take an icon for gone about which it could not ask.
constexpr std::chrono::hours patience{24};
constexpr std::chrono::milliseconds lastPatience{1000};

int fail(const std::string& why) {
    log(why);
    return cannotRun;
}

int failWithoutServer() {
    return fail(posix::translated("the X server went away"));
}

int failFor(const std::string& reason, const x11::Connection& connection) {
    // Nothing that the server did not answer says anything.
    if (connection.isStalled()) {
        return fail(x11::Connection::noAnswer());
    }
    return connection.isAlive() ? fail(reason) : failWithoutServer();
}

int serve(const Options& options) {
    posix::StopSignals signals;
    x11::Connection::Failure failure;
    const std::unique_ptr<x11::Connection> connection =
        x11::Connection::open(options.display, failure);
    if (!connection) {
        return fail(failure.message);
    }
    std::string reason;
    const std::optional<Server> server = Server::prepare(*connection, reason);
    if (!server) {
        return failFor(reason, *connection);
    }
    std::unique_ptr<TraySelection> tray = TraySelection::acquire(*server, options.replace, reason);
    if (!tray) {
        return failFor(reason, *connection);
    }
    signals.begin();
    connection->setPatience(patience, signals.fileDescriptor());
    MenuBar bar(*server, std::move(tray), options, OrderFile(OrderFile::defaultPath()));
    const MenuBar::End end = bar.run(signals.fileDescriptor());
    // Whoever waits for the end of this process finds all icons released.
    connection->setPatience(lastPatience);
    connection->sync();
    switch (end) {
    case MenuBar::End::ServerGone:
        return failWithoutServer();
    case MenuBar::End::TrayTaken:
        log("another program took the system tray over; all icons are released");
        break;
    case MenuBar::End::Stopped:
        break;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const auto parsed = parseOptions(arguments);
    if (const auto* end = std::get_if<EarlyEnd>(&parsed)) {
        std::fputs(end->text.c_str(), end->status == 0 ? stdout : stderr);
        return end->status;
    }
    return serve(std::get<Options>(parsed));
}

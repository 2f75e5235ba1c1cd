#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/AbsentServices.h"
#include "platform/linux/application/MenuBarStarter.h"
#include "platform/linux/application/SingleInstance.h"
#include "platform/linux/application/SystemLog.h"
#include "platform/linux/application/X11Application.h"
#include "platform/linux/clicks/ClickDelivery.h"
#include "platform/linux/clicks/X11EventPosting.h"
#include "platform/linux/clicks/X11GlobalClicks.h"
#include "platform/linux/commandline/CommandLine.h"
#include "platform/linux/icons/TrayReader.h"
#include "platform/linux/icons/X11ScreenCapture.h"
#include "platform/linux/icons/X11WindowServer.h"
#include "platform/linux/images/CairoImages.h"
#include "platform/linux/loop/EventPump.h"
#include "platform/linux/loop/GlibMainQueue.h"
#include "platform/linux/programs/X11RunningApplications.h"
#include "platform/linux/screens/DisplayScale.h"
#include "platform/linux/screens/X11Screens.h"
#include "platform/linux/settings/AutostartLoginItem.h"
#include "platform/linux/settings/FileUserDefaults.h"
#include "platform/linux/statusitem/StatusToolTip.h"
#include "platform/linux/statusitem/TrayAdvice.h"
#include "platform/linux/statusitem/TrayHost.h"
#include "platform/linux/statusitem/TrayStatusBar.h"
#include "platform/linux/statusitem/WindowCanvas.h"
#include "platform/linux/windows/LoadedWindows.h"
#include "platform/posix/OwnProgram.h"
#include "platform/posix/StopSignals.h"
#include "platform/posix/UnusedMemory.h"

#include <cstdlib>
#include <string>
#include <utility>

namespace pelistra::linux {

namespace {

// Clicks on other programs' icons, on a connection of their own.
struct Clicks {
    Clicks(std::unique_ptr<x11::Connection> ownConnection, TrayReader& reader, MainQueue& mainQueue,
           LogSink& log)
        : connection(std::move(ownConnection)), pump(*connection, log),
          delivery(*connection, mainQueue, log), posting(reader, delivery),
          events(pump.addHandler([this](const auto& event) { delivery.handle(event); })) {}

    std::unique_ptr<x11::Connection> connection;
    EventPump pump;
    ClickDelivery delivery;
    X11EventPosting posting;
    SubscriptionPtr events;
};

} // namespace

struct LinuxPlatform::Services {
    Services(x11::Connection& connection, SingleInstance& instance,
             std::vector<std::string> arguments)
        : mainConnection(connection), pump(connection, log),
          defaults(defaultsPath(), mainQueue, log), trayHost(connection, pump, log),
          screens(connection, pump, trayHost, mainQueue),
          application(connection, screens, std::move(arguments)), trayAdvice(connection),
          windows(windowServices(connection), windowsModuleFor(posix::ownProgram()), log),
          iconAtoms(connection), canvas(connection), toolTip(connection, mainQueue, windows),
          statusBar({.connection = connection,
                     .trayHost = trayHost,
                     .screens = screens,
                     .application = application,
                     .defaults = defaults,
                     .atoms = iconAtoms,
                     .canvas = canvas,
                     .toolTip = toolTip},
                    pump, mainQueue,
                    [this] {
                        if (const auto& tray = trayHost.tray()) {
                            trayAdvice.give(tray->owner);
                        }
                    }),
          trayReader(connection, [this](WindowId owner) { return trayHost.changesOf(owner); }),
          windowServer(
              trayReader,
              [this](const TrayIcon& icon) { return runningApplications.ownerName(icon); }),
          screenCapture(connection), clicks(makeClicks()),
          globalClicks(connection, pump, ownWindows()),
          loginItem(AutostartPlaces::ofEnvironment(), posix::ownProgram()),
          menuBarStarter(trayHost, mainQueue, log),
          stop(readableSource(stopSignals.fileDescriptor(), [this] { application.terminate(); })),
          instanceEvents(
              pump.addHandler([&instance](const auto& event) { instance.handle(event); })) {
        pump.setConnectionLostHandler([this] { endWithoutDisplay(); });
        mainQueue.asyncAfter(posix::afterStart, posix::giveBackUnusedMemory);
        trayHost.start();
        if (hasArgument(application, startMenuBarSwitch)) {
            menuBarStarter.startUnlessTrayComes(menuBarBeside(posix::ownProgram()));
        }
    }

    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;
    // What a window has shown may hold the last of the core's objects, which need the others.
    ~Services() { windows.unload(); }

    // Null when the server takes no further connection.
    std::unique_ptr<Clicks> makeClicks() {
        x11::Connection::Failure failure;
        auto own = x11::Connection::open({}, failure);
        if (own == nullptr) {
            Logger(log, "x11").error("Icons cannot be clicked: " + failure.message);
            return nullptr;
        }
        own->setPatience(x11::Connection::startPatience);
        return std::make_unique<Clicks>(std::move(own), trayReader, mainQueue, log);
    }

    [[nodiscard]] WindowServices windowServices(x11::Connection& connection) {
        return {
            .connection = connection,
            .observeEvents =
                [this](EventPump::Handler handler) { return pump.addHandler(std::move(handler)); },
            .observeRecoveries =
                [this](std::function<void()> handler) {
                    return pump.addRecoveryHandler(std::move(handler));
                },
            .barIsDark = [this] { return trayHost.barIsDark(); },
            .observeBar =
                [this](std::function<void()> handler) {
                    return trayHost.observe(
                        [handler = std::move(handler)](TrayHost::Change) { handler(); });
                },
            .mainQueue = mainQueue,
            .application = application,
            .handleEvent =
                [this](const Event& event, const std::function<void()>& block) {
                    application.handleEvent(event, block);
                },
            .coordinates = [this] { return screens.coordinates(); },
            .scaleBeyondResources =
                [this, &connection] {
                    return trayHost.scale() / resourceScale(connection).value_or(1);
                }};
    }

    [[nodiscard]] OwnWindows ownWindows() {
        return {.hasMade =
                    [this](xcb_window_t window) {
                        return windows.loaded() != nullptr && windows.loaded()->hasMade(window);
                    },
                .shown =
                    [this] {
                        return windows.loaded() != nullptr ? windows.loaded()->shownWindows()
                                                           : std::vector<xcb_window_t>();
                    }};
    }

    [[nodiscard]] EventPosting& eventPosting() {
        return clicks ? static_cast<EventPosting&>(clicks->posting) : noEventPosting;
    }

    // Nothing can be shown or cleaned up any more, and Qt's own connection is as dead as ours.
    [[noreturn]] void endWithoutDisplay() {
        Logger(log, "x11").error("The X display has gone");
        defaults.synchronize();
        std::_Exit(EXIT_FAILURE);
    }

    x11::Connection& mainConnection;
    // Before all that may wait for the server when it goes.
    posix::StopSignals stopSignals;
    SystemLog log;
    GlibMainQueue mainQueue;
    EventPump pump;
    FileUserDefaults defaults;
    TrayHost trayHost;
    X11Screens screens;
    X11Application application;
    CairoImages images;
    TrayAdvice trayAdvice;
    LoadedWindows windows;
    TrayIconAtoms iconAtoms;
    WindowCanvas canvas;
    StatusToolTip toolTip;
    TrayStatusBar statusBar;
    X11RunningApplications runningApplications;
    TrayReader trayReader;
    X11WindowServer windowServer;
    X11ScreenCapture screenCapture;
    AbsentEventPosting noEventPosting;
    std::unique_ptr<Clicks> clicks;
    X11GlobalClicks globalClicks;
    AutostartLoginItem loginItem;
    MenuBarStarter menuBarStarter;
    SourcePtr stop;
    SubscriptionPtr instanceEvents;
};

LinuxPlatform::LinuxPlatform(x11::Connection& connection, SingleInstance& instance,
                             std::vector<std::string> arguments)
    : services_(std::make_unique<Services>(connection, instance, std::move(arguments))) {}

LinuxPlatform::~LinuxPlatform() = default;

Platform LinuxPlatform::platform() {
    return {.application = services_->application,
            .mainQueue = services_->mainQueue,
            .log = services_->log,
            .defaults = services_->defaults,
            .statusBar = services_->statusBar,
            .screens = services_->screens,
            .images = services_->images,
            .windowList = services_->windowServer,
            .privateLibrary = services_->windowServer,
            .runningApplications = services_->runningApplications,
            .screenCapture = services_->screenCapture,
            .eventPosting = services_->eventPosting(),
            .windows = services_->windows,
            .panels = services_->windows,
            .globalClicks = services_->globalClicks,
            .loginItem = services_->loginItem};
}

void LinuxPlatform::run() {
    const int stopDescriptor = services_->stopSignals.fileDescriptor();
    services_->stopSignals.begin();
    services_->mainConnection.setPatience(x11::Connection::usualPatience, stopDescriptor);
    if (services_->clicks) {
        services_->clicks->connection->setPatience(x11::Connection::usualPatience, stopDescriptor);
    }
    services_->application.run();
}

} // namespace pelistra::linux

#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/AbsentServices.h"
#include "platform/linux/AutostartLoginItem.h"
#include "platform/linux/ClickDelivery.h"
#include "platform/linux/CommandLine.h"
#include "platform/linux/DisplayScale.h"
#include "platform/linux/FileUserDefaults.h"
#include "platform/linux/MenuBarStarter.h"
#include "platform/linux/PanelLook.h"
#include "platform/linux/QtApplication.h"
#include "platform/linux/QtImages.h"
#include "platform/linux/QtPanels.h"
#include "platform/linux/QtWindows.h"
#include "platform/linux/SingleInstance.h"
#include "platform/linux/StatusToolTip.h"
#include "platform/linux/SystemLog.h"
#include "platform/linux/TrayHost.h"
#include "platform/linux/TrayLook.h"
#include "platform/linux/TrayStatusBar.h"
#include "platform/linux/WindowCanvas.h"
#include "platform/linux/X11EventPosting.h"
#include "platform/linux/X11RunningApplications.h"
#include "platform/linux/X11ScreenCapture.h"
#include "platform/linux/X11WindowList.h"
#include "platform/linux/XInputGlobalClicks.h"
#include "platform/linux/XcbScreens.h"
#include "platform/linux/XcbWindowServer.h"
#include "platform/linux/loop/EventPump.h"
#include "platform/linux/loop/GlibMainQueue.h"
#include "platform/linux/views/ContentWidget.h"
#include "platform/linux/views/DesktopLook.h"
#include "platform/posix/StopSignals.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include <QAccessible>
#include <QApplication>
#include <QIcon>

namespace pelistra::desktop {

namespace {

// The QApplication, with the arguments that it keeps references to. Platform themes of desktops
// load whole toolkits of their own; the generic one is enough for what is shown here.
class QtRuntime {
public:
    explicit QtRuntime(const x11::Connection& connection)
        : scale_(std::in_place, connection), application_(count_, arguments_.data()) {
        scale_.reset();
        QApplication::setQuitOnLastWindowClosed(false);
        // Also the class of its windows, by which a desktop finds their desktop entry.
        QApplication::setApplicationName("Pelistra");
        QApplication::setApplicationVersion(PELISTRA_VERSION);
        QApplication::setDesktopFileName("pelistra");
        QApplication::setWindowIcon(QIcon::fromTheme("pelistra"));
        // QApplication::exec() would do so.
        QAccessible::setRootObject(qApp);
    }

private:
    // What is to be deleted later goes before the loop sleeps: Qt itself waits for the end of a
    // loop of its own, and there is none.
    [[nodiscard]] static SourcePtr deferredDeletion() {
        static GSourceFuncs functions{
            .prepare = [](GSource* /*source*/, gint* /*timeout*/) -> gboolean {
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                return FALSE;
            },
            .check = nullptr,
            .dispatch = nullptr,
            .finalize = nullptr,
            .closure_callback = nullptr,
            .closure_marshal = nullptr};
        return attached(g_source_new(&functions, sizeof(GSource)));
    }

    std::array<std::string, 3> texts_{"pelistra", "-platformtheme", "generic"};
    std::array<char*, 4> arguments_{texts_[0].data(), texts_[1].data(), texts_[2].data(), nullptr};
    int count_ = static_cast<int>(texts_.size());
    // In force while the next member is made.
    std::optional<QtScaleFactor> scale_;
    QApplication application_;
    SourcePtr deferredDeletion_ = deferredDeletion();
};

// Clicks on other programs' icons, on a connection of their own.
struct Clicks {
    Clicks(std::unique_ptr<x11::Connection> ownConnection, TrayLook& look, MainQueue& mainQueue,
           LogSink& log)
        : connection(std::move(ownConnection)), pump(*connection, log),
          delivery(*connection, mainQueue, log), posting(look, delivery),
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
        : mainConnection(connection), qt(connection), pump(connection, log),
          defaults(defaultsPath(), mainQueue, log), trayHost(connection, pump, log),
          screens(connection, pump, trayHost, mainQueue),
          application(connection, screens, std::move(arguments)),
          desktopLook(connection, pump, look), windows(viewServices(look), connection),
          iconAtoms(connection), canvas(connection), toolTip(connection),
          statusBar({.connection = connection,
                     .trayHost = trayHost,
                     .screens = screens,
                     .application = application,
                     .defaults = defaults,
                     .atoms = iconAtoms,
                     .canvas = canvas,
                     .toolTip = toolTip},
                    pump, mainQueue),
          trayLook(connection, [this](WindowId owner) { return trayHost.changesOf(owner); }),
          windowList(trayLook,
                     [this](const TrayIcon& icon) { return runningApplications.ownerName(icon); }),
          windowServer(trayLook, windowList), screenCapture(connection), clicks(makeClicks()),
          panels(panelServices(connection)), globalClicks(connection, pump),
          loginItem(AutostartPlaces::ofEnvironment(), ownProgram()),
          menuBarStarter(trayHost, mainQueue, log),
          stop(readableSource(stopSignals.fileDescriptor(), [this] { application.terminate(); })),
          instanceEvents(
              pump.addHandler([&instance](const auto& event) { instance.handle(event); })) {
        pump.setConnectionLostHandler([this] { endWithoutDisplay(); });
        trayHost.start();
        if (hasArgument(application, startMenuBarSwitch)) {
            menuBarStarter.startUnlessTrayComes(menuBarBeside(ownProgram()));
        }
    }

    // Null when the server takes no further connection.
    std::unique_ptr<Clicks> makeClicks() {
        x11::Connection::Failure failure;
        auto own = x11::Connection::open({}, failure);
        if (own == nullptr) {
            Logger(log, "x11").error("Icons cannot be clicked: " + failure.message);
            return nullptr;
        }
        own->setPatience(x11::Connection::startPatience);
        return std::make_unique<Clicks>(std::move(own), trayLook, mainQueue, log);
    }

    [[nodiscard]] ViewServices viewServices(Published<Look>& shownIn) {
        return {.mainQueue = mainQueue,
                .application = application,
                .handleEvent =
                    [this](const Event& event, const std::function<void()>& block) {
                        application.handleEvent(event, block);
                    },
                .look = shownIn};
    }

    [[nodiscard]] PanelServices panelServices(const x11::Connection& connection) {
        return {.connection = connection,
                .coordinates = [this] { return screens.coordinates(); },
                .contentWidget =
                    [this](std::shared_ptr<ui::Content> content, bool translucent) {
                        auto widget = std::make_unique<ContentWidget>(std::move(content),
                                                                      viewServices(barLook));
                        widget->setMaterialTranslucent(translucent);
                        return widget;
                    },
                .look = barLook};
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
    QtRuntime qt;
    SystemLog log;
    GlibMainQueue mainQueue;
    EventPump pump;
    FileUserDefaults defaults;
    TrayHost trayHost;
    XcbScreens screens;
    QtApplication application;
    QtImages images;
    Published<Look> look;
    DesktopLook desktopLook;
    Published<Look> barLook;
    PanelLook panelLook{trayHost, look, barLook};
    QtWindows windows;
    TrayIconAtoms iconAtoms;
    WindowCanvas canvas;
    StatusToolTip toolTip;
    TrayStatusBar statusBar;
    X11RunningApplications runningApplications;
    TrayLook trayLook;
    X11WindowList windowList;
    XcbWindowServer windowServer;
    X11ScreenCapture screenCapture;
    AbsentEventPosting noEventPosting;
    std::unique_ptr<Clicks> clicks;
    QtPanels panels;
    XInputGlobalClicks globalClicks;
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
            .windowList = services_->windowList,
            .privateLibrary = services_->windowServer,
            .runningApplications = services_->runningApplications,
            .screenCapture = services_->screenCapture,
            .eventPosting = services_->eventPosting(),
            .windows = services_->windows,
            .panels = services_->panels,
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

} // namespace pelistra::desktop

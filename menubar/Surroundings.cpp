#include "menubar/Surroundings.h"

#include "platform/x11/Properties.h"

#include <utility>

namespace pelistra::menubar {

Surroundings::Surroundings(const Server& server, const Options& options)
    : server_(&server), options_(&options), settings_(server) {
    x11::watchMonitors(server.connection());
}

void Surroundings::note(const xcb_generic_event_t& event) {
    monitorsStale_ = monitorsStale_ || x11::isMonitorChange(server_->connection(), event);
    switch (x11::typeOf(event)) {
    case XCB_CONFIGURE_NOTIFY:
        monitorsStale_ =
            monitorsStale_ ||
            x11::eventAs<xcb_configure_notify_event_t>(event).window == server_->root();
        break;
    case XCB_CLIENT_MESSAGE:
        settingsStale_ = settingsStale_ || settings_.isManagerMessage(
                                               x11::eventAs<xcb_client_message_event_t>(event));
        break;
    case XCB_DESTROY_NOTIFY:
        settingsStale_ =
            settingsStale_ ||
            settings_.isManagerWindow(x11::eventAs<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_PROPERTY_NOTIFY:
        noteProperty(x11::eventAs<xcb_property_notify_event_t>(event));
        break;
    default:
        break;
    }
}

void Surroundings::noteProperty(const xcb_property_notify_event_t& event) {
    settingsStale_ = settingsStale_ || settings_.isManagerWindow(event.window);
    resourcesStale_ = resourcesStale_ ||
                      (event.window == server_->root() && event.atom == XCB_ATOM_RESOURCE_MANAGER);
}

bool Surroundings::refresh() {
    if (std::exchange(settingsStale_, false)) {
        themes_ = settings_.readThemes();
    }
    if (std::exchange(resourcesStale_, false)) {
        const auto resources = readProperty(
            server_->connection(),
            requestProperty(server_->connection(), server_->root(), XCB_ATOM_RESOURCE_MANAGER));
        const double scale = options_->scale.value_or(
            scaleFromResources(resources ? resources->text() : std::string()));
        monitorsStale_ = monitorsStale_ || Metrics(scale) != metrics_;
        metrics_ = Metrics(scale);
    }
    if (!std::exchange(monitorsStale_, false)) {
        return false;
    }
    const std::vector<Monitor> monitors = queryMonitors(*server_);
    place_ = barMonitor(monitors);
    canReserve_ = canReserveTop(monitors, place_);
    place_.height = metrics_.barHeight();
    return true;
}

const Palette& Surroundings::palette() const {
    return paletteFor(options_->theme, themes_.desktop);
}

} // namespace pelistra::menubar

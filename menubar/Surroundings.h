#pragma once

#include "menubar/Metrics.h"
#include "menubar/Monitors.h"
#include "menubar/Options.h"
#include "menubar/Server.h"
#include "menubar/Theme.h"
#include "menubar/XSettingsWatch.h"

#include <string>

namespace pelistra::menubar {

// What the bar finds around it: the monitors, the resource database, the desktop's settings. Events
// only note that something may be new; refresh() asks.
class Surroundings {
public:
    // Both must outlive this.
    Surroundings(const Server& server, const Options& options);

    void note(const xcb_generic_event_t& event);

    // Asks for what may be new. Returns whether the bar's place was computed anew.
    bool refresh();

    [[nodiscard]] const Metrics& metrics() const { return metrics_; }
    [[nodiscard]] const Palette& palette() const;
    [[nodiscard]] const std::string& iconTheme() const { return themes_.icons; }
    // Where the bar belongs, in root coordinates, and whether space can be reserved for it there.
    [[nodiscard]] const PixelRect& place() const { return place_; }
    [[nodiscard]] bool canReserve() const { return canReserve_; }

private:
    void noteProperty(const xcb_property_notify_event_t& event);

    const Server* server_;
    const Options* options_;
    XSettingsWatch settings_;
    DesktopThemes themes_;
    Metrics metrics_;
    PixelRect place_;
    bool canReserve_ = false;
    bool monitorsStale_ = true;
    bool settingsStale_ = true;
    bool resourcesStale_ = true;
};

} // namespace pelistra::menubar

#pragma once

#include "base/Published.h"
#include "platform/Panel.h"
#include "platform/linux/screens/Coordinates.h"
#include "platform/linux/views/Look.h"
#include "platform/linux/windows/CompositorWatch.h"
#include "platform/linux/windows/PanelWindow.h"
#include "platform/x11/Connection.h"

#include <functional>
#include <memory>

class QWidget;

namespace pelistra::linux {

// What panels need of the rest of the front end; all of it outlives them.
struct PanelServices {
    const x11::Connection& connection;
    CompositorWatch::ObserveEvents observeEvents;
    // The translation between root pixels and points that holds now.
    std::function<Coordinates()> coordinates;
    // A new widget that shows a content; `translucent` says whether what lies behind shines through
    // its materials. The caller owns it.
    std::function<std::unique_ptr<QWidget>(std::shared_ptr<ui::Content> content, bool translucent)>
        contentWidget;
    // The look that contents are drawn in.
    Published<Look>& look;
};

// Floating panels on Qt Widgets. A panel costs nothing until it is first shown; then its window is
// kept for the next time. One that is on the screen follows compositors that come and go. Every
// panel floats above all windows, on every desktop, whoever is active, and its outline is what the
// content draws: there is no other kind on this system.
class QtPanels final : public Panels {
public:
    explicit QtPanels(PanelServices services);
    QtPanels(const QtPanels&) = delete;
    QtPanels& operator=(const QtPanels&) = delete;
    ~QtPanels() override;

    [[nodiscard]] std::unique_ptr<Panel> panel(const PanelConfiguration& configuration) override;

private:
    friend class QtPanel;

    PanelServices services_;
    PanelAtoms atoms_;
    CompositorWatch compositor_;
};

} // namespace pelistra::linux

#include "platform/linux/views/ContentWidget.h"
#include "platform/linux/views/DesktopLook.h"
#include "platform/linux/windows/PanelLook.h"
#include "platform/linux/windows/QtConnection.h"
#include "platform/linux/windows/QtPanels.h"
#include "platform/linux/windows/QtRuntime.h"
#include "platform/linux/windows/QtWindows.h"
#include "platform/linux/windows/ToolTip.h"
#include "platform/linux/windows/WindowsModule.h"

#include <QLabel>

namespace pelistra::linux {

namespace {

// The module on Qt 6 Widgets.
class QtWindowsModule final : public WindowsModule {
public:
    explicit QtWindowsModule(const WindowServices& services)
        : qt_(services.scaleBeyondResources()), desktopLook_(services, look_),
          panelLook_(services, look_, barLook_),
          windows_(viewServices(services, look_), services.connection),
          panels_({.connection = services.connection,
                   .observeEvents = services.observeEvents,
                   .coordinates = services.coordinates,
                   .contentWidget =
                       [views = viewServices(services, barLook_)](
                           std::shared_ptr<ui::Content> content, bool translucent) {
                           auto widget = std::make_unique<ContentWidget>(std::move(content), views);
                           widget->setMaterialTranslucent(translucent);
                           return widget;
                       },
                   .look = barLook_}) {}

    [[nodiscard]] Windows& windows() override { return windows_; }
    [[nodiscard]] Panels& panels() override { return panels_; }

    void showToolTip(std::string_view text, const RootRect& item, bool onDark) override {
        toolTip_ = shownToolTip(text, item, onDark);
    }
    void hideToolTip() override { toolTip_.reset(); }

    [[nodiscard]] bool hasMade(xcb_window_t window) const override { return isQtWindow(window); }
    [[nodiscard]] std::vector<xcb_window_t> shownWindows() const override {
        return shownQtWindows();
    }

private:
    static ViewServices viewServices(const WindowServices& services, Published<Look>& look) {
        return {.mainQueue = services.mainQueue,
                .application = services.application,
                .handleEvent = services.handleEvent,
                .look = look};
    }

    QtRuntime qt_;
    Published<Look> look_;
    DesktopLook desktopLook_;
    // Of what hangs below the menu bar.
    Published<Look> barLook_;
    PanelLook panelLook_;
    QtWindows windows_;
    QtPanels panels_;
    std::unique_ptr<QLabel> toolTip_;
};

} // namespace

extern "C" WindowsModule* pelistraWindowsModule(const WindowServices& services,
                                                std::string& failure) {
    failure = QtRuntime::obstacle();
    return failure.empty() ? std::make_unique<QtWindowsModule>(services).release() : nullptr;
}

} // namespace pelistra::linux

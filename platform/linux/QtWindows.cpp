#include "platform/linux/QtWindows.h"

#include "platform/linux/WindowFrame.h"
#include "platform/linux/views/ContentWidget.h"
#include "ui/Palette.h"

#include <memory>
#include <string_view>
#include <utility>

#include <QPalette>

namespace pelistra::desktop {

namespace {

class QtWindow final : public Window {
public:
    QtWindow(Size contentSize, std::uint32_t styleMask, ViewServices services,
             const x11::Connection& connection)
        : services_(std::move(services)), frame_(contentSize, styleMask, connection) {
        applyLook(services_.look.get());
        lookChanges_ = services_.look.observe([this](const Look& look) { applyLook(look); });
    }

    void setTitle(std::string_view title) override {
        frame_.setWindowTitle(
            QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
    }
    void setTitleVisibility(TitleVisibility visibility) override {
        frame_.setTitleHidden(visibility == TitleVisibility::Hidden);
    }
    void setTitlebarAppearsTransparent(bool transparent) override {
        frame_.setTitlebarTransparent(transparent);
    }
    void setMovableByWindowBackground(bool movable) override {
        frame_.setMovableByBackground(movable);
    }
    // The window lives as long as this object, whatever its close button does.
    void setReleasedWhenClosed(bool /*released*/) override {}
    void setContentMinSize(Size size) override { frame_.setContentMinimum(size); }
    void setContent(std::shared_ptr<ui::Content> content) override {
        frame_.setContentWidget(std::make_unique<ContentWidget>(std::move(content), services_));
    }
    void center() override { frame_.centre(); }
    void showWindow() override { frame_.bringUp(); }
    void close() override { frame_.close(); }

private:
    void applyLook(const Look& look) {
        QPalette palette;
        palette.setColor(QPalette::Window, resolved(ui::palette::window, look));
        palette.setColor(QPalette::WindowText, resolved(ui::Role::Primary, look));
        frame_.setPalette(palette);
    }

    ViewServices services_;
    WindowFrame frame_;
    SubscriptionPtr lookChanges_;
};

} // namespace

std::unique_ptr<Window> QtWindows::window(Size contentSize, std::uint32_t styleMask) {
    return std::make_unique<QtWindow>(contentSize, styleMask, services_, connection_);
}

} // namespace pelistra::desktop

#include "platform/linux/windows/QtWindows.h"

#include "platform/linux/views/ContentWidget.h"
#include "platform/linux/windows/WindowFrame.h"
#include "ui/Palette.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include <QPalette>

namespace pelistra::linux {

namespace {

class QtWindow final : public Window {
public:
    QtWindow(Size contentSize, std::uint32_t styleMask, ViewServices services,
             const x11::Connection& connection, UnusedMemory& unusedMemory)
        : services_(std::move(services)), frame_(contentSize, styleMask, connection) {
        frame_.setPutAwayHandler([&unusedMemory] { unusedMemory.giveBackAfterWindow(); });
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
    void setContentMinSize(Size size) override { setLeastSize(size); }
    void setContent(std::shared_ptr<ui::Content> content) override {
        auto widget = std::make_unique<ContentWidget>(std::move(content), services_);
        const QSize least = widget->leastSize();
        frame_.setContentWidget(std::move(widget));
        setLeastSize({.width = static_cast<double>(least.width()),
                      .height = static_cast<double>(least.height())});
    }
    void center() override { frame_.centre(); }
    void showWindow() override { frame_.bringUp(); }
    void close() override { frame_.close(); }

private:
    // The window's own bound and its content's hold both.
    void setLeastSize(Size size) {
        least_ = {.width = std::max(least_.width, size.width),
                  .height = std::max(least_.height, size.height)};
        frame_.setContentMinimum(least_);
    }
    void applyLook(const Look& look) {
        QPalette palette;
        palette.setColor(QPalette::Window, resolved(ui::palette::window, look));
        palette.setColor(QPalette::WindowText, resolved(ui::Role::Primary, look));
        frame_.setPalette(palette);
    }

    ViewServices services_;
    WindowFrame frame_;
    Size least_;
    SubscriptionPtr lookChanges_;
};

} // namespace

std::unique_ptr<Window> QtWindows::window(Size contentSize, std::uint32_t styleMask) {
    return std::make_unique<QtWindow>(contentSize, styleMask, services_, connection_,
                                      unusedMemory_);
}

} // namespace pelistra::linux

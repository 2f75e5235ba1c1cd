#include "platform/linux/QtWindows.h"

#include "platform/linux/WindowFrame.h"

#include <string_view>

namespace pelistra::desktop {

namespace {

class QtWindow final : public Window {
public:
    QtWindow(Size contentSize, std::uint32_t styleMask) : frame_(contentSize, styleMask) {}

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
        content_ = std::move(content);
    }
    void center() override { frame_.centre(); }
    void showWindow() override { frame_.bringUp(); }
    void close() override { frame_.close(); }

private:
    std::shared_ptr<ui::Content> content_;
    WindowFrame frame_;
};

} // namespace

std::unique_ptr<Window> QtWindows::window(Size contentSize, std::uint32_t styleMask) {
    return std::make_unique<QtWindow>(contentSize, styleMask);
}

} // namespace pelistra::desktop

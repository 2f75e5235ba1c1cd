// pelistra-menubar-menu: shows the menus of icons on the session bus, under the icon, with the
// toolkit's own means. The bar starts it when the pointer comes near such an icon, tells it on its
// standard input which menu to show, and closes that when it is needed no more.

#include "menubar/menu/ShownMenu.h"
#include "menubar/notifier/SessionBus.h"

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>
#include <QSocketNotifier>

#include <sys/socket.h>

namespace {

using namespace pelistra::menubar;

// The bar's own colours.
QPalette paletteFor(bool dark) {
    const QColor window(dark ? 0x2B2B2E : 0xF6F6F8);
    const QColor text(dark ? 0xF2F2F4 : 0x1D1D1F);
    const QColor quiet(dark ? 0x7E7E86 : 0x9A9AA2);
    QPalette palette(window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, quiet);
    }
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, window);
    palette.setColor(QPalette::Button, window);
    palette.setColor(QPalette::Highlight, QColor(0x2F7CF6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

// Room around the entries.
class MenuStyle : public QProxyStyle {
public:
    MenuStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override {
        constexpr int margin = 4;
        return metric == PM_MenuVMargin || metric == PM_MenuHMargin
                   ? margin
                   : QProxyStyle::pixelMetric(metric, option, widget);
    }

    // Without the shadow that makes disabled texts look doubled; never several columns.
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* result) const override {
        if (hint == SH_Menu_Scrollable) {
            return 1;
        }
        return hint == SH_EtchDisabledText ? 0
                                           : QProxyStyle::styleHint(hint, option, widget, result);
    }
};

class Program {
public:
    Program() : bus_([this](sd_bus* bus) { busChanged(bus); }) {
        QObject::connect(&requests_, &QSocketNotifier::activated, [this] { readRequest(); });
        QObject::connect(&timer_, &QTimer::timeout, [this] { work(); });
        timer_.setSingleShot(true);
        work();
    }

private:
    void busChanged(sd_bus* bus) {
        connected_ = bus;
        shown_.reset();
        if (bus == nullptr) {
            return;
        }
        if (auto request = std::exchange(asked_, std::nullopt)) {
            open(*std::move(request));
        }
    }

    // Handles what the bus has to say, and sees to it that it is called when there is more.
    void work() {
        while (bus_.process()) {
        }
        const pollfd waiting = bus_.descriptor();
        if (!notifier_ || notifier_->socket() != waiting.fd) {
            notifier_.reset();
            if (waiting.fd >= 0) {
                notifier_ = std::make_unique<QSocketNotifier>(waiting.fd, QSocketNotifier::Read);
                QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { work(); });
            }
        }
        if (const auto due = bus_.due()) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(*due - SessionBus::Clock::now());
            timer_.start(std::max(left, std::chrono::milliseconds(0)));
        }
        if ((waiting.events & POLLOUT) != 0) {
            timer_.start(std::chrono::milliseconds(1));
        }
    }

    void readRequest() {
        std::vector<char> packet(menuRequestLimit);
        const ssize_t length = ::recv(menuSocket, packet.data(), packet.size(), MSG_DONTWAIT);
        if (length <= 0) {
            requests_.setEnabled(false);
            ending_ = true;
            endIfDone();
            return;
        }
        auto request = MenuRequest::parse({packet.data(), static_cast<std::size_t>(length)});
        if (!request) {
            return;
        }
        if (connected_ == nullptr) {
            asked_ = std::move(request);
            return;
        }
        open(*std::move(request));
        work();
    }

    void open(MenuRequest request) {
        QApplication::setPalette(paletteFor(request.dark));
        shown_.reset();
        shown_ = std::make_unique<ShownMenu>(*connected_, std::move(request), [this] {
            shown_.reset();
            work();
            endIfDone();
        });
    }

    void endIfDone() const {
        if (ending_ && shown_ == nullptr) {
            QApplication::quit();
        }
    }

    QSocketNotifier requests_{menuSocket, QSocketNotifier::Read};
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer timer_;
    sd_bus* connected_ = nullptr;
    std::optional<MenuRequest> asked_;
    bool ending_ = false;
    SessionBus bus_;
    std::unique_ptr<ShownMenu> shown_;
};

// What the first menu would otherwise wait for: fonts, the style, a window.
void warmUp() {
    QMenu menu;
    menu.addAction(QStringLiteral("A"));
    menu.ensurePolished();
    static_cast<void>(menu.sizeHint());
    static_cast<void>(menu.winId());
}

} // namespace

int main(int argc, char** argv) {
    QApplication::setDesktopSettingsAware(false);
    QApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argc, argv);
    QApplication::setStyle(std::make_unique<MenuStyle>().release());
    warmUp();
    const Program program;
    return QApplication::exec();
}

#include "menubar/menu/MenuIcons.h"

#include <algorithm>
#include <utility>

#include <QGuiApplication>
#include <QPalette>

namespace pelistra::menubar {

namespace {

constexpr int sideInPoints = 16;
constexpr std::size_t mostIcons = 256;

std::string nameOf(const QColor& color) {
    return color.name().toStdString();
}

QIcon iconOf(const ArgbImage& image) {
    QPixmap pixmap(QSize(sideInPoints, sideInPoints) * qGuiApp->devicePixelRatio());
    pixmap.fill(Qt::transparent);
    if (!image.pixels.empty()) {
        const QImage shared(reinterpret_cast<const uchar*>(image.pixels.data()), // NOLINT(*-cast)
                            image.width, image.height, QImage::Format_ARGB32_Premultiplied);
        pixmap = QPixmap::fromImage(shared.copy());
    }
    pixmap.setDevicePixelRatio(qGuiApp->devicePixelRatio());
    return {pixmap};
}

} // namespace

MenuIcons::MenuIcons(Place place, std::function<void(const std::string&)> read)
    : place_(std::move(place)), read_(std::move(read)) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, [this] { work(); });
}

QIcon MenuIcons::named(const std::string& name) {
    const auto known = icons_.find(name);
    if (known != icons_.end()) {
        return known->second;
    }
    QIcon nothing = iconOf({});
    if (icons_.size() < mostIcons) {
        icons_.emplace(name, nothing);
        reader_.ask(icons_.size(), requestFor(name));
        timer_.start(0);
    }
    return nothing;
}

IconRequest MenuIcons::requestFor(const std::string& name) const {
    const QPalette palette = QGuiApplication::palette();
    const std::string text = nameOf(palette.color(QPalette::WindowText));
    return {.side = std::min(qRound(sideInPoints * qGuiApp->devicePixelRatio()), longestIconSide),
            .theme = place_.theme,
            .foreground = text,
            .error = text,
            .warning = text,
            .success = text,
            .themePath = place_.themePath,
            .name = name};
}

// Takes what has been read, and sees to it that it is called when there is more.
void MenuIcons::work() {
    reader_.process();
    for (const IconReader::Answer& answer : reader_.takeAnswers()) {
        icons_[answer.request.name] = iconOf(answer.image);
        read_(answer.request.name);
    }
    const int socket = reader_.descriptor().fd;
    if (!notifier_ || notifier_->socket() != socket) {
        notifier_.reset();
        if (socket >= 0) {
            notifier_ = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
            QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { work(); });
        }
    }
    if (const auto due = reader_.due()) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(*due - IconReader::Clock::now());
        timer_.start(std::max(left, std::chrono::milliseconds(0)));
    }
}

} // namespace pelistra::menubar

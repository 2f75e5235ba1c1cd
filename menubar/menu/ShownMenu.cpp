#include "menubar/menu/ShownMenu.h"

#include <chrono>
#include <utility>

#include <QActionGroup>
#include <QBuffer>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QImageReader>
#include <QMouseEvent>
#include <QScreen>
#include <QSignalBlocker>

namespace pelistra::menubar {

namespace {

constexpr auto menuInterface = "com.canonical.dbusmenu";
// A user takes it for a click that did nothing after that.
constexpr std::chrono::milliseconds longestSilence{1000};
// What changes again and again is read so often.
constexpr std::chrono::milliseconds refreshPause{100};
constexpr std::size_t mostPrepared = 64;
constexpr std::size_t mostAddedWhileOpen = 50;
constexpr int longestPictureSide = 256;
constexpr int ownId = -1;
// In points.
constexpr int widestLabel = 480;
// What an action's icon is called, until it has been read.
constexpr auto iconNameProperty = "iconName";

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

// Qt counts in its own pixels from each screen's corner.
QPoint logical(int x, int y) {
    for (const QScreen* const screen : QGuiApplication::screens()) {
        const QRect frame = screen->geometry();
        const double factor = screen->devicePixelRatio();
        const QRectF native(frame.topLeft(), QSizeF(frame.size()) * factor);
        if (native.contains(x, y)) {
            return frame.topLeft() +
                   QPoint(qRound((x - native.x()) / factor), qRound((y - native.y()) / factor));
        }
    }
    return {x, y};
}

// Newer versions of Qt close a menu that is clicked before the pointer has moved a few times in it,
// or far from where it was when the menu opened; and that they do not know of the first menu.
class Menu final : public QMenu {
protected:
    void enterEvent(QEnterEvent* event) override {
        QMenu::enterEvent(event);
        constexpr int enough = 8;
        QMouseEvent movement(QEvent::MouseMove, event->position(), event->globalPosition(),
                             Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        for (int i = 0; i < enough; ++i) {
            QMenu::mouseMoveEvent(&movement);
        }
    }
};

} // namespace

ShownMenu::ShownMenu(sd_bus& bus, MenuRequest request, std::function<void()> closed)
    : bus_(&bus), request_(std::move(request)), closed_(std::move(closed)),
      menu_(std::make_unique<Menu>()),
      icons_({.theme = request_.iconTheme, .themePath = request_.iconThemePath},
             [this](const std::string& name) { showIcon(name); }) {
    QObject::connect(menu_.get(), &QMenu::aboutToHide, menu_.get(), [this] {
        tell(0, "closed");
        // What was chosen is told after the menu has hidden itself.
        QTimer::singleShot(0, menu_.get(), [this] { closed_(); });
    });
    silence_.setSingleShot(true);
    QObject::connect(&silence_, &QTimer::timeout, menu_.get(), [this] { showSilence(); });
    silence_.start(longestSilence);
    refresh_.setSingleShot(true);
    QObject::connect(&refresh_, &QTimer::timeout, menu_.get(), [this] { askForLayout(); });
    changes_ = BusListener::match(*bus_,
                                  "type='signal',sender='" + request_.service + "',path='" +
                                      request_.menu + "',interface='" + menuInterface + "'",
                                  [this](sd_bus_message&) {
                                      if (!refresh_.isActive()) {
                                          refresh_.start(refreshPause);
                                      }
                                  });
    // The layout is asked for at once: a program answers in the order of the questions.
    aboutToShow(0);
    askForLayout();
}

ShownMenu::~ShownMenu() {
    QObject::disconnect(menu_.get(), nullptr, menu_.get(), nullptr);
}

MessagePtr ShownMenu::newMenuCall(const char* member) const {
    return newCall(*bus_, request_.service, request_.menu, menuInterface, member);
}

void ShownMenu::askForLayout() {
    const MessagePtr call = newMenuCall("GetLayout");
    sd_bus_message_append(call.get(), "iias", 0, -1, 0);
    layout_ =
        BusListener::call(*bus_, call, [this](sd_bus_message& message) { answered(message); });
}

void ShownMenu::answered(sd_bus_message& message) {
    const auto root = readLayout(message);
    silence_.stop();
    if (!root || isEmptyMenu(*root)) {
        if (!menu_->isVisible()) {
            askProgramItself();
        }
        return;
    }
    fill(*menu_, root->children);
    if (!menu_->isVisible()) {
        show();
    }
}

void ShownMenu::show() {
    tell(0, "opened");
    menu_->popup(logical(request_.x, request_.y));
}

void ShownMenu::showSilence() {
    QAction* const action = menu_->addAction(QStringLiteral("程序没有响应"));
    action->setData(ownId);
    action->setEnabled(false);
    show();
}

void ShownMenu::askProgramItself() {
    const MessagePtr call = newCall(*bus_, request_.service, request_.item,
                                    "org.kde.StatusNotifierItem", "ContextMenu");
    if (call != nullptr) {
        sd_bus_message_append(call.get(), "ii", request_.x, request_.y);
        sd_bus_message_set_expect_reply(call.get(), 0);
        sd_bus_send(bus_, call.get(), nullptr);
    }
    QTimer::singleShot(0, menu_.get(), [this] { closed_(); });
}

// As deep as the menu, which is bounded.
void ShownMenu::fill(QMenu& menu, const std::vector<MenuEntry>& entries) {
    const QList<QAction*> actions = menu.actions();
    bool same = actions.size() == static_cast<qsizetype>(entries.size());
    for (std::size_t i = 0; same && i < entries.size(); ++i) {
        const QAction* const action = actions[static_cast<qsizetype>(i)];
        same = action->data().toInt() == entries[i].id &&
               action->isSeparator() == entries[i].separator &&
               (action->menu() != nullptr) == entries[i].submenu;
    }
    // An open menu is laid out anew for every entry that comes.
    const bool reopens =
        !same && menu.isVisible() && &menu == menu_.get() && entries.size() > mostAddedWhileOpen;
    if (reopens) {
        const QSignalBlocker quiet(&menu);
        menu.hide();
    }
    if (!same) {
        qDeleteAll(menu.findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
        menu.clear();
        for (const MenuEntry& entry : entries) {
            addEntry(menu, entry);
        }
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        update(*menu.actions()[static_cast<qsizetype>(i)], entries[i]);
    }
    if (reopens) {
        menu.popup(logical(request_.x, request_.y));
    }
}

void ShownMenu::addEntry(QMenu& menu, const MenuEntry& entry) {
    if (entry.submenu) {
        QMenu* const below = menu.addMenu(QString());
        below->menuAction()->setData(entry.id);
        QObject::connect(below, &QMenu::aboutToShow, below, [this, id = entry.id] {
            tell(id, "opened");
            aboutToShow(id);
        });
        QObject::connect(below, &QMenu::aboutToHide, below,
                         [this, id = entry.id] { tell(id, "closed"); });
        if (entry.children.empty()) {
            // Qt opens no menu without entries.
            aboutToShow(entry.id);
        }
        return;
    }
    QAction* const action = menu.addAction(QString());
    action->setData(entry.id);
    action->setSeparator(entry.separator);
    QObject::connect(action, &QAction::triggered, action,
                     [this, id = entry.id] { tell(id, "clicked"); });
}

// As deep as the menu, which is bounded.
void ShownMenu::update(QAction& action, const MenuEntry& entry) {
    const QString label = menu_->fontMetrics().elidedText(text(entry.label), Qt::ElideRight,
                                                          widestLabel, Qt::TextShowMnemonic);
    action.setText(entry.shortcut.empty() ? label : label + '\t' + text(entry.shortcut));
    action.setEnabled(entry.enabled);
    action.setVisible(entry.visible);
    action.setCheckable(entry.toggle != MenuEntry::Toggle::None);
    action.setChecked(entry.checked);
    if (entry.toggle == MenuEntry::Toggle::Radio && action.actionGroup() == nullptr) {
        // A group of its own: the program alone decides which of several is on.
        auto* const group = new QActionGroup(&action); // NOLINT(*-owning-memory): the action's
        group->setExclusionPolicy(QActionGroup::ExclusionPolicy::Exclusive);
        action.setActionGroup(group);
    }
    action.setProperty(iconNameProperty, text(entry.iconName));
    // Every icon that is set has an open menu laid out anew.
    if (const QIcon icon = iconOf(entry); icon.cacheKey() != action.icon().cacheKey()) {
        action.setIcon(icon);
    }
    if (QMenu* const below = action.menu()) {
        fill(*below, entry.children);
    }
}

QIcon ShownMenu::iconOf(const MenuEntry& entry) {
    if (!entry.iconData.empty()) {
        QByteArray bytes(reinterpret_cast<const char*>(entry.iconData.data()),
                         static_cast<qsizetype>(entry.iconData.size())); // NOLINT(*-cast)
        QBuffer buffer(&bytes);
        QImageReader reader(&buffer, "png");
        const QSize size = reader.size();
        if (size.width() <= longestPictureSide && size.height() <= longestPictureSide) {
            return {QPixmap::fromImage(reader.read())};
        }
    }
    // The name of a theme's icon, never a file's.
    const bool isName = !entry.iconName.empty() && entry.iconName.find('/') == std::string::npos;
    return isName ? icons_.named(entry.iconName) : QIcon();
}

void ShownMenu::showIcon(const std::string& name) {
    for (QAction* const action : menu_->findChildren<QAction*>()) {
        if (action->property(iconNameProperty).toString() == text(name)) {
            action->setIcon(icons_.named(name));
        }
    }
}

void ShownMenu::aboutToShow(int id) {
    if (prepared_.size() >= mostPrepared) {
        prepared_.erase(prepared_.begin());
    }
    const MessagePtr call = newMenuCall("AboutToShow");
    sd_bus_message_append(call.get(), "i", id);
    prepared_.push_back(BusListener::call(*bus_, call, [this](sd_bus_message& message) {
        int needsUpdate = 0;
        if (sd_bus_message_is_method_error(&message, nullptr) == 0 &&
            sd_bus_message_read_basic(&message, SD_BUS_TYPE_BOOLEAN, &needsUpdate) > 0 &&
            needsUpdate != 0 && !refresh_.isActive()) {
            refresh_.start(++questions_ > 1 ? refreshPause : std::chrono::milliseconds(0));
        }
    }));
}

void ShownMenu::tell(int id, const char* event) {
    const MessagePtr call = newMenuCall("Event");
    if (call == nullptr) {
        return;
    }
    sd_bus_message_append(call.get(), "isvu", id, event, "i", 0, std::uint32_t{0});
    sd_bus_message_set_expect_reply(call.get(), 0);
    sd_bus_send(bus_, call.get(), nullptr);
}

} // namespace pelistra::menubar

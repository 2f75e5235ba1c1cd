#include "platform/linux/statusitem/TrayStatusItem.h"

#include "platform/linux/application/X11Application.h"
#include "platform/linux/clicks/Buttons.h"
#include "platform/linux/screens/RootFrame.h"
#include "platform/linux/screens/X11Screens.h"
#include "platform/linux/settings/FileUserDefaults.h"
#include "platform/linux/statusitem/StatusToolTip.h"
#include "platform/linux/statusitem/TrayHost.h"
#include "platform/linux/statusitem/WindowCanvas.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelistra::linux {

namespace {

// The height of an icon under a tray that does not say how high it is, in points.
constexpr double usualIconHeight = 24;
// The longest side of an X window.
constexpr double longestSide = 32767;

} // namespace

TrayStatusItem::TrayStatusItem(const StatusItemServices& services, Callbacks callbacks,
                               double length)
    : services_(services), callbacks_(std::move(callbacks)),
      button_(std::make_shared<TrayStatusButton>(TrayStatusButton::Callbacks{
          .redraw = [this] { redraw(); }, .frame = [this] { return frame(); }})),
      length_(length) {}

TrayStatusItem::~TrayStatusItem() {
    button_->detach();
    undock();
    services_.connection.flush();
    callbacks_.destroyed(*this);
}

void TrayStatusItem::setAutosaveName(std::string_view name) {
    if (name_ == name) {
        return;
    }
    name_ = name;
    // A tray knows an icon by the name that it had when it came.
    undock();
    callbacks_.scheduleDocking();
}

void TrayStatusItem::setVisible(bool visible) {
    visible_ = visible;
    if (visible_) {
        callbacks_.scheduleDocking();
    } else {
        undock();
        services_.connection.flush();
    }
}

void TrayStatusItem::setLength(double length) {
    const double before = std::exchange(length_, length);
    if (before != length) {
        requestLength();
    }
    if (before < length && window_ != nullptr) {
        callbacks_.grown(*this);
    }
}

void TrayStatusItem::dock(std::optional<int> rank) {
    const auto& tray = services_.trayHost.tray();
    if (!visible_ || window_ != nullptr || !tray) {
        return;
    }
    const auto position = services_.defaults.numberForKey(positionKey());
    constexpr double mostItems = 100000;
    width_ = askedWidth_ = pixelLength();
    height_ = askedHeight_ = pixelHeight();
    window_ = std::make_unique<TrayIconWindow>(
        services_.connection, services_.atoms,
        TrayIconWindow::Traits{
            .visual = tray->visual,
            .width = width_,
            .height = height_,
            .name = name_,
            .sortingName = rank ? "Pelistra " + std::to_string(*rank) : name_,
            .preferredPosition = position ? std::optional(static_cast<std::uint32_t>(
                                                std::lround(std::clamp(*position, 0.0, mostItems))))
                                          : std::nullopt});
    services_.trayHost.requestDock(window_->id());
}

void TrayStatusItem::undock() {
    if (window_ == nullptr) {
        return;
    }
    setHovered(false);
    window_.reset();
    embedded_ = false;
    mapped_ = false;
    pressed_ = 0;
    altClickIsElsewhere_ = false;
    heldBack_ = false;
}

xcb_window_t TrayStatusItem::window() const {
    return window_ ? window_->id() : xcb_window_t{XCB_WINDOW_NONE};
}

std::optional<RootRect> TrayStatusItem::rootFrame() const {
    return embedded_ ? rootFrameOf(services_.connection, window()) : std::nullopt;
}

bool TrayStatusItem::needsRoom() const {
    return isDocked() && askedWidth_ > 2 * pixelHeight();
}

bool TrayStatusItem::lacksRoom() const {
    return needsRoom() && width_ < askedWidth_ / 2;
}

void TrayStatusItem::holdBack() {
    heldBack_ = true;
    requestLength();
}

void TrayStatusItem::refreshLook() {
    requestLength();
    redraw();
}

void TrayStatusItem::requestLength() {
    const int width = pixelLength();
    const int height = pixelHeight();
    // What it has not got, the tray has refused or not yet seen: then it asks again.
    const bool isAsked = askedWidth_ == width && askedHeight_ == height;
    const bool isGranted = width_ == width && height_ == height;
    if (window_ != nullptr && !(isAsked && isGranted)) {
        requestSize(width, height);
        services_.connection.flush();
    }
}

void TrayStatusItem::requestSize(int width, int height) {
    askedWidth_ = width;
    askedHeight_ = height;
    window_->requestSize(width, height);
}

void TrayStatusItem::handle(const xcb_generic_event_t& event) {
    switch (x11::typeOf(event)) {
    case XCB_REPARENT_NOTIFY:
        handleReparent(x11::eventAs<xcb_reparent_notify_event_t>(event));
        break;
    case XCB_DESTROY_NOTIFY:
        if (x11::eventAs<xcb_destroy_notify_event_t>(event).window == window()) {
            undock();
            callbacks_.ejected(*this);
        }
        break;
    case XCB_MAP_NOTIFY:
        if (x11::eventAs<xcb_map_notify_event_t>(event).window == window()) {
            mapped_ = true;
        }
        break;
    case XCB_UNMAP_NOTIFY:
        if (x11::eventAs<xcb_unmap_notify_event_t>(event).window == window()) {
            mapped_ = false;
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
        handleConfigure(x11::eventAs<xcb_configure_notify_event_t>(event));
        break;
    case XCB_EXPOSE: {
        const auto& expose = x11::eventAs<xcb_expose_event_t>(event);
        if (expose.window == window() && expose.count == 0) {
            redraw();
        }
        break;
    }
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        handleCrossing(x11::eventAs<xcb_enter_notify_event_t>(event),
                       x11::typeOf(event) == XCB_ENTER_NOTIFY);
        break;
    case XCB_BUTTON_PRESS:
        handlePress(x11::eventAs<xcb_button_press_event_t>(event));
        break;
    case XCB_BUTTON_RELEASE:
        handleRelease(x11::eventAs<xcb_button_release_event_t>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
        handleProperty(x11::eventAs<xcb_property_notify_event_t>(event));
        break;
    default:
        break;
    }
}

void TrayStatusItem::handleReparent(const xcb_reparent_notify_event_t& event) {
    if (event.window != window()) {
        return;
    }
    embedded_ = event.parent != services_.connection.root();
    if (!embedded_) {
        // The tray has died or has let go of the icon. On the root, it would be an ordinary window.
        undock();
        services_.connection.flush();
        callbacks_.ejected(*this);
    }
}

void TrayStatusItem::handleConfigure(const xcb_configure_notify_event_t& event) {
    // What a window manager or embedder sends without having changed anything says nothing new.
    if (event.window != window() || (width_ == event.width && height_ == event.height)) {
        return;
    }
    const bool isSquare = length_ == squareLength;
    const bool isHigher = height_ != event.height;
    width_ = event.width;
    height_ = event.height;
    // Under a tray that decides the height itself, a square item follows it.
    const std::optional<Tray>& tray = services_.trayHost.tray();
    if (isSquare && isHigher && tray && !tray->barHeight) {
        requestSize(height_, height_);
    }
    redraw();
}

void TrayStatusItem::handlePress(const xcb_button_press_event_t& event) {
    if (event.event != window() || pressed_ != 0) {
        return;
    }
    if (const auto type = buttonEventType(event.detail, true)) {
        services_.toolTip.hide();
        pressed_ = event.detail;
        redraw();
        trigger(*type, event.state);
    }
}

void TrayStatusItem::handleRelease(const xcb_button_release_event_t& event) {
    if (event.event != window() || pressed_ != event.detail) {
        return;
    }
    pressed_ = 0;
    redraw();
    const bool isInside = event.event_x >= 0 && event.event_x < width_ && event.event_y >= 0 &&
                          event.event_y < height_;
    if (const auto type = buttonEventType(event.detail, false); type && isInside) {
        trigger(*type, event.state);
    }
}

void TrayStatusItem::trigger(EventType type, std::uint16_t state) {
    if (const auto action = button_->actionFor(type)) {
        const bool withAlt = (state & XCB_MOD_MASK_1) != 0;
        services_.application.handleEvent(
            {.type = type, .modifierFlags = withAlt ? modifierOption : 0}, action);
    }
}

// Many window managers take every click with Alt to move windows by it, ours included: their grab
// is on a window around the bar, so it comes before anything that the item could ask for. What the
// item still sees is that the pointer was grabbed away with the button down, and given back with it
// up.
void TrayStatusItem::handleCrossing(const xcb_enter_notify_event_t& event, bool enters) {
    if (event.event != window()) {
        return;
    }
    setHovered(enters);
    constexpr unsigned otherModifiers = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_4;
    constexpr unsigned buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    const bool withAltOnly = (event.state & (XCB_MOD_MASK_1 | otherModifiers)) == XCB_MOD_MASK_1;
    if (!enters) {
        altClickIsElsewhere_ = event.mode == XCB_NOTIFY_MODE_GRAB && withAltOnly &&
                               (event.state & buttons) == XCB_BUTTON_MASK_1;
    } else if (std::exchange(altClickIsElsewhere_, false) && event.mode == XCB_NOTIFY_MODE_UNGRAB &&
               (event.state & buttons) == 0) {
        trigger(EventType::LeftMouseUp, XCB_MOD_MASK_1);
    }
}

void TrayStatusItem::setHovered(bool hovered) {
    if (std::exchange(hovered_, hovered) == hovered) {
        return;
    }
    redraw();
    if (hovered) {
        services_.toolTip.schedule(button_, window(), foreground());
    } else {
        services_.toolTip.hide();
    }
}

void TrayStatusItem::handleProperty(const xcb_property_notify_event_t& event) {
    if (event.window == window() && event.atom == services_.atoms[TrayIconAtoms::Position] &&
        event.state == XCB_PROPERTY_NEW_VALUE) {
        savePosition();
    }
}

void TrayStatusItem::savePosition() {
    if (window_ == nullptr) {
        return;
    }
    const auto value = x11::readProperty(
        services_.connection,
        x11::requestProperty(services_.connection, window(),
                             services_.atoms[TrayIconAtoms::Position], XCB_ATOM_CARDINAL));
    const auto words = value ? value->words() : std::vector<std::uint32_t>();
    if (words.size() == 1) {
        services_.defaults.setNumber(words.front(), positionKey());
    }
}

void TrayStatusItem::redraw() {
    if (window_ == nullptr || !mapped_) {
        return;
    }
    auto feedback = StatusItemLook::Feedback::None;
    if (!button_->isInert() && pressed_ != 0) {
        feedback = StatusItemLook::Feedback::Pressed;
    } else if (!button_->isInert() && hovered_) {
        feedback = StatusItemLook::Feedback::Hovered;
    }
    const auto picture = pictureOf({.width = width_,
                                    .height = height_,
                                    .scale = services_.trayHost.scale(),
                                    .image = button_->image(),
                                    .foreground = foreground(),
                                    .feedback = feedback});
    services_.canvas.show(window_->id(), window_->visual(), picture.pixels, picture.x, picture.y);
    services_.connection.flush();
}

// Trays that say nothing are bright, as a rule.
ui::Rgb TrayStatusItem::foreground() const {
    const auto& tray = services_.trayHost.tray();
    return tray && tray->foreground ? *tray->foreground : ui::Rgb{};
}

int TrayStatusItem::pixelHeight() const {
    const auto& tray = services_.trayHost.tray();
    if (tray && tray->barHeight) {
        return std::max(1, *tray->barHeight);
    }
    return static_cast<int>(std::lround(usualIconHeight * services_.trayHost.scale()));
}

int TrayStatusItem::pixelLength() const {
    if (length_ == squareLength) {
        const auto& tray = services_.trayHost.tray();
        return isDocked() && tray && !tray->barHeight ? height_ : pixelHeight();
    }
    const double longest = heldBack_ ? pixelHeight() : longestSide;
    return static_cast<int>(
        std::lround(std::clamp(length_ * services_.trayHost.scale(), 1.0, longest)));
}

std::optional<ScreenRect> TrayStatusItem::frame() const {
    const auto pixels = rootFrame();
    return pixels ? std::optional(services_.screens.coordinates().toScreen(*pixels)) : std::nullopt;
}

std::string TrayStatusItem::positionKey() const {
    return "NSStatusItem Preferred Position " + name_;
}

} // namespace pelistra::linux

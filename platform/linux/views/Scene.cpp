#include "platform/linux/views/Scene.h"

#include "platform/linux/views/ButtonElement.h"
#include "platform/linux/views/ContentWidget.h"
#include "platform/linux/views/RepresentedElement.h"
#include "platform/linux/views/Scroller.h"

#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>

#include <QGuiApplication>

namespace pelistra::linux {

namespace {

constexpr int frameMilliseconds = 16;

void collectFocusable(Element& element, std::vector<QWidget*>& found) {
    if (QWidget* widget = element.focusable()) {
        found.push_back(widget);
    }
    element.forEachChild([&found](Element& child) { collectFocusable(child, found); });
}

void tellLook(Element& element) {
    element.lookChanged();
    element.forEachChild(tellLook);
}

} // namespace

Scene::Scene(ContentWidget& widget, ViewServices services)
    : widget_(widget), services_(std::move(services)), ownMeasures_(services_.look),
      measures_(services_.measures != nullptr ? *services_.measures : ownMeasures_),
      arranger_(measures_) {
    ticks_.setInterval(frameMilliseconds);
    ticks_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticks_, &QTimer::timeout, &ticks_, [this] { advance(); });
}

Scene::~Scene() = default;

void Scene::update(const ui::View& body) {
    body_ = body;
    layout();
}

void Scene::layout() {
    const auto& arrangement =
        arranger_.arrange(body_, {.size = {.width = static_cast<double>(widget_.width()),
                                           .height = static_cast<double>(widget_.height())},
                                  .scale = scale()});
    alert_ = arrangement.alert;
    elements_.update(arrangement.elements, *this, nullptr, {.host = &widget_});
    if (std::exchange(structureHasChanged_, false)) {
        chainFocus();
    }
}

void Scene::paint(QPainter& painter, const QRectF& dirty) {
    elements_.paint(
        painter,
        {.look = look(), .foreground = resolved(ui::Role::Primary, look()), .dirty = dirty});
}

Size Scene::measure(const ui::Proposal& offered) const {
    return ui::measured(body_, offered, scale(), measures_);
}

void Scene::lookChanged() {
    elements_.forEach(tellLook);
    arranger_.forget();
    layout();
    widget_.update();
}

void Scene::focusCame(const QWidget& widget) {
    for (Scroller* scroller : scrollers_) {
        if (scroller->content()->isAncestorOf(&widget)) {
            scroller->bringIntoView(widget, look().reduceMotion);
        }
    }
}

double Scene::scale() const {
    return widget_.devicePixelRatioF();
}

double Scene::snapped(double points) const {
    return std::round(points * scale()) / scale();
}

void Scene::invalidate(const QRectF& area) {
    widget_.update(area.toAlignedRect());
}

void Scene::requestRefresh() {
    widget_.requestRefresh();
}

void Scene::act(EventType type, const std::function<void()>& action) const {
    // Copies: the action may take this scene down.
    const auto run = services_.handleEvent;
    const auto called = action;
    const bool option = QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
    run({.type = type, .modifierFlags = option ? modifierOption : 0}, called);
}

void Scene::adopt(QWidget& widget) {
    widget.installEventFilter(&widget_);
}

std::shared_ptr<Motion> Scene::begin(const ui::Animation& animation) {
    auto motion = std::make_shared<Motion>(animation, Motion::Clock::now());
    motions_.push_back(motion);
    ticks_.start();
    return motion;
}

void Scene::inMotion(const std::shared_ptr<Motion>& motion, const std::function<void()>& block) {
    const auto outer = std::exchange(currentMotion_, motion);
    block();
    currentMotion_ = outer;
}

void Scene::advance() {
    const auto now = Motion::Clock::now();
    for (const auto& motion : motions_) {
        motion->advanceTo(now);
    }
    std::erase_if(motions_, [](const auto& motion) { return motion->hasEnded(); });
    if (motions_.empty()) {
        ticks_.stop();
    }
    widget_.update();
}

void Scene::chainFocus() {
    std::vector<QWidget*> widgets;
    elements_.forEach([&widgets](Element& element) { collectFocusable(element, widgets); });
    for (std::size_t place = 1; place < widgets.size(); ++place) {
        QWidget::setTabOrder(widgets[place - 1], widgets[place]);
    }
}

void Scene::add(ButtonElement& button) {
    buttons_.push_back(&button);
}

void Scene::remove(ButtonElement& button) {
    std::erase(buttons_, &button);
}

bool Scene::pressDefaultButton() {
    const auto found = std::ranges::find_if(buttons_, &ButtonElement::isDefaultAction);
    if (found == buttons_.end()) {
        return false;
    }
    (*found)->press();
    return true;
}

bool Scene::pressCancelButton() {
    const auto found = std::ranges::find_if(buttons_, &ButtonElement::isCancel);
    if (found == buttons_.end()) {
        return false;
    }
    (*found)->press();
    return true;
}

void Scene::add(RepresentedElement& element) {
    represented_.push_back(&element);
}

void Scene::remove(RepresentedElement& element) {
    std::erase(represented_, &element);
}

bool Scene::offer(EventType type, const QPointF& point) {
    for (RepresentedElement* element : represented_ | std::views::reverse) {
        if (element->contains(widget_, point)) {
            return element->offer(type, widget_, point);
        }
    }
    return false;
}

} // namespace pelistra::linux

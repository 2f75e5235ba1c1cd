#include "tests/platform/ViewProbe.h"

#include "platform/Application.h"
#include "ui/Nodes.h"
#include "ui/Representable.h"
#include "ui/Walk.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace pelistra::testing {
namespace {

using ui::View;

void collect(const View& view, std::vector<View>& into) {
    into.push_back(view);
    for (const View& child : ui::childrenOf(view)) {
        collect(child, into);
    }
}

const ui::Button* firstButtonIn(const View& root) {
    for (const View& view : allViews(root)) {
        if (const auto* button = view.as<ui::Button>()) {
            return button;
        }
    }
    return nullptr;
}

const ui::Button* buttonNamed(const View& root, std::string_view name) {
    for (const View& view : allViews(root)) {
        if (const auto* help = view.as<ui::Help>(); help != nullptr && help->text == name) {
            return firstButtonIn(view);
        }
        const auto* button = view.as<ui::Button>();
        if (button != nullptr && showsText(button->label, name)) {
            return button;
        }
    }
    return nullptr;
}

} // namespace

std::vector<View> allViews(const View& root) {
    std::vector<View> views;
    collect(root, views);
    return views;
}

bool showsText(const View& root, std::string_view text) {
    return std::ranges::any_of(allViews(root), [&](const View& view) {
        const auto* shown = view.as<ui::Text>();
        return shown != nullptr && shown->text == text;
    });
}

void press(const View& root, std::string_view named) {
    const auto* button = buttonNamed(root, named);
    if (button == nullptr) {
        throw std::out_of_range("no button named " + std::string(named));
    }
    button->action();
}

void rightClick(const View& root, std::size_t number, const Application& application) {
    std::vector<View> areas;
    for (const View& view : allViews(root)) {
        if (view.as<ui::Represented>() != nullptr) {
            areas.push_back(view);
        }
    }
    const auto view = areas.at(number).as<ui::Represented>()->value->makeView(application);
    view->rightMouseDown({.type = EventType::RightMouseDown});
}

} // namespace pelistra::testing

#include "tests/platform/ViewProbe.h"

#include "platform/Application.h"
#include "tests/ui/ViewQueries.h"
#include "ui/Representable.h"

#include <algorithm>

namespace pelistra::testing {

bool showsText(const ui::View& root, std::string_view text) {
    return std::ranges::count(texts(root), text) > 0;
}

void press(const ui::View& root, std::string_view named) {
    for (const auto& help : all<ui::Help>(root)) {
        if (help.text == named) {
            all<ui::Button>(help.content).at(0).action();
            return;
        }
    }
    buttonNamed(root, named).action();
}

void rightClick(const ui::View& root, std::size_t number, const Application& application) {
    const auto view = all<ui::Represented>(root).at(number).value->makeView(application);
    view->rightMouseDown({.type = EventType::RightMouseDown});
}

} // namespace pelistra::testing

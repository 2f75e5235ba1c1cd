#include "tests/desktop/tour/ItemList.h"

#include <stdexcept>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace pelistra::testing {

namespace {

ListedIcon iconOf(const QJsonObject& object) {
    const QJsonObject frame = object.value("frame").toObject();
    return {.id = static_cast<xcb_window_t>(object.value("id").toInteger()),
            .process = static_cast<pid_t>(object.value("process").toInteger()),
            .frame = {.x = frame.value("x").toInt(),
                      .y = frame.value("y").toInt(),
                      .width = frame.value("width").toInt(),
                      .height = frame.value("height").toInt()},
            .isHidden = object.value("hidden").toBool(),
            .displayName = object.value("displayName").toString().toStdString()};
}

} // namespace

std::vector<ListedIcon> listItems(Desktop& desktop) {
    const auto program = desktop.display().start(
        {(builtPrograms() / "pelistra").string(), "--list-items", "--json"});
    const bool ended = program->waitForExit() == ExitStatus{.status = 0};
    const std::string text = program->output();
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    if (!ended || !document.isArray()) {
        throw std::runtime_error("pelistra --list-items --json wrote: " + text);
    }
    std::vector<ListedIcon> icons;
    for (const auto& value : document.array()) {
        icons.push_back(iconOf(value.toObject()));
    }
    return icons;
}

} // namespace pelistra::testing

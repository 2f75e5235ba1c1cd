#include "tests/desktop/tour/ItemList.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

namespace pelistra::testing {

namespace {

ListedIcon iconOf(const nlohmann::json& object) {
    const nlohmann::json& frame = object.at("frame");
    return {.id = object.at("id"),
            .process = object.at("process"),
            .frame = {.x = frame.at("x"),
                      .y = frame.at("y"),
                      .width = frame.at("width"),
                      .height = frame.at("height")},
            .isHidden = object.at("hidden"),
            .displayName = object.at("displayName")};
}

} // namespace

std::vector<ListedIcon> listItems(Desktop& desktop) {
    const auto program = desktop.display().start(
        {(builtPrograms() / "pelistra").string(), "--list-items", "--json"});
    const bool ended = program->waitForExit() == ExitStatus{.status = 0};
    const std::string text = program->output();
    const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    if (!ended || !document.is_array()) {
        throw std::runtime_error("pelistra --list-items --json wrote: " + text);
    }
    std::vector<ListedIcon> icons;
    for (const nlohmann::json& object : document) {
        icons.push_back(iconOf(object));
    }
    return icons;
}

} // namespace pelistra::testing

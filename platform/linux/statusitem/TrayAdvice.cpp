#include "platform/linux/statusitem/TrayAdvice.h"

#include "platform/linux/icons/PresentableText.h"
#include "platform/linux/programs/ProcessFacts.h"
#include "platform/x11/Clients.h"

#include <iostream>
#include <memory>
#include <utility>

#include <glib.h>

namespace pelistra::linux {

namespace {

bool userReadsChinese() {
    return std::string_view(*g_get_language_names()).starts_with("zh");
}

// The name that a process gives itself; that of an executable may be a mere helper's.
std::string programBehind(const x11::Connection& connection, xcb_window_t window) {
    const auto process = x11::processOf(connection, window);
    const std::string name = process ? factsOf(*process).shortName : std::string();
    // Newer versions of this panel have their plugins in processes of this name.
    return name == "wrapper-2.0" ? "xfce4-panel" : presentableText(name);
}

std::string asMarkup(const std::string& text) {
    const std::unique_ptr<char, decltype(&g_free)> escaped(g_markup_escape_text(text.c_str(), -1),
                                                           g_free);
    return escaped.get();
}

} // namespace

AdviceText adviceAbout(std::string_view trayProgram, bool inChinese) {
    const std::string name(trayProgram);
    if (inChinese) {
        return {.summary = "Pelistra 无法在这个托盘里隐藏图标",
                .body = "系统托盘属于" + (name.empty() ? "另一个程序" : " " + name) +
                        "，它不会为隐藏的图标让出位置。请关闭它的托盘，或者运行：pelistra-menubar "
                        "--replace"};
    }
    return {.summary = "Pelistra cannot hide icons in this tray",
            .body = "The system tray belongs to " + (name.empty() ? "another program" : name) +
                    ", which makes no room for what is to be hidden. Switch its tray off, or run: "
                    "pelistra-menubar --replace"};
}

void TrayAdvice::give(xcb_window_t trayOwner) {
    if (std::exchange(isGiven_, true)) {
        return;
    }
    const AdviceText advice =
        adviceAbout(programBehind(connection_, trayOwner), userReadsChinese());
    std::cerr << "pelistra: " << advice.body << "\n";
    notification_.emplace(advice.summary, asMarkup(advice.body));
}

} // namespace pelistra::linux

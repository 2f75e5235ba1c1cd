#include "tests/macos/LaunchedApplication.h"

#include "tests/macos/standins/MenuBar.h"

#include <gmock/gmock.h>

#include <iostream>

namespace pelistra::appkit {
namespace {

using namespace pelistra::testing::standins;

class RoadOfUseTest : public LaunchedApplication {};

TEST_F(RoadOfUseTest, Probe) {
    fillMenuBar();
    launch();
    clickArrow();
    runFor(0.3);
    clickArrow();
    runFor(0.1);
    takePicture(panel(), "panel");
    for (const auto& line : world().journal) std::cout << line << "\n";
    for (const auto& line : world().log) std::cout << line.category << ": " << line.message << "\n";
    std::cout << panelIsVisible() << "\n";
    rightClickArrow();
    runFor(0.1);
    NSWindow* settings = windowTitled(@"Pelistra Settings");
    takePicture(settings, "settings");
    for (const auto& text : textsIn([settings contentView])) std::cout << text << "\n";
}

} // namespace
} // namespace pelistra::appkit

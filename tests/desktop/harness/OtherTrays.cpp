#include "tests/desktop/harness/OtherTrays.h"

#include <ostream>

namespace pelistra::testing {

namespace {

constexpr const char* xfceBegin = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray">
)";
constexpr const char* xfceHide =
    "      <property name=\"hide-new-items\" type=\"bool\" value=\"true\"/>\n";
constexpr const char* xfceEnd = "    </property>\n  </property>\n</channel>\n";

} // namespace

SettingsFile xfcePanelSettings(XfceIcons icons) {
    std::string content = xfceBegin;
    if (icons == XfceIcons::Hidden) {
        content += xfceHide;
    }
    return {.path = "config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml",
            .content = content + xfceEnd};
}

void PrintTo(const OtherTray& tray, std::ostream* stream) {
    *stream << tray.name;
}

const std::vector<OtherTray>& otherTrays() {
    static const std::vector<OtherTray> trays{
        {.name = "trayer",
         .command = {"trayer", "--edge", "top", "--align", "right", "--widthtype", "pixel",
                     "--width", "400"}},
        {.name = "xfce4-panel",
         .command = {"xfce4-panel"},
         .settings = {xfcePanelSettings(XfceIcons::Shown)}},
    };
    return trays;
}

std::unique_ptr<ChildProcess> startOtherTray(PrivateDisplay& display, const OtherTray& tray) {
    writeSettings(display, tray.settings);
    return display.start(tray.command);
}

} // namespace pelistra::testing

#include "benchmarks/Product.h"

#include "benchmarks/Measuring.h"
#include "tests/desktop/harness/OtherTrays.h"

#include <array>
#include <cstdio>
#include <utility>

namespace pelistra::testing {

namespace {

constexpr const char* tint2 = R"(panel_items = S
panel_size = 100% 28
panel_position = top center horizontal
systray_icon_size = 24
systray_padding = 0 2 2
)";

constexpr const char* lxpanel = R"(Global {
  edge=top
  align=left
  margin=0
  widthtype=percent
  width=100
  height=28
  setdocktype=1
  setpartialstrut=1
  iconsize=24
}
Plugin {
  type=tray
}
)";

constexpr const char* lxqt = R"([General]
__userfile__=true
panels=panel1
[panel1]
alignment=-1
animation-duration=0
desktop=0
hidable=false
iconSize=22
lineCount=1
panelSize=28
plugins=tray
position=Top
width=100
width-percent=true
[tray]
type=tray
)";

// With the plugin that is another one.
std::string lxqtNotifiers() {
    std::string settings = lxqt;
    const std::string plugins = "plugins=tray";
    settings.insert(settings.find(plugins) + plugins.size(), ", statusnotifier");
    return settings + "[statusnotifier]\ntype=statusnotifier\n";
}

// The hide button of xfce4-panel is the last thing in its tray.
RootPoint xfceButton(int endOfTray) {
    constexpr int fromEnd = 7;
    constexpr int middle = 14;
    return {.x = endOfTray - fromEnd, .y = middle};
}

std::string firstLineOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    std::array<char, 256> line{};
    if (pipe == nullptr || std::fgets(line.data(), line.size(), pipe.get()) == nullptr) {
        return "";
    }
    const std::string text = line.data();
    return text.substr(0, text.find('\n'));
}

} // namespace

bool Product::isInstalled() const {
    return isOurs() || firstLineOf("dpkg-query -W -f '${db:Status-Status}' " + package +
                                   " 2>/dev/null") == "installed";
}

std::string Product::fullName() const {
    return isOurs() ? name : name + " " + firstLineOf("dpkg-query -W -f '${Version}' " + package);
}

const std::vector<Product>& products() {
    static const std::vector<Product> all{
        {.name = "Pelistra",
         .package = "",
         .settings = {},
         .command = {},
         .icons = Product::Icons::Both},
        {.name = "xfce4-panel",
         .package = "xfce4-panel",
         .settings = {xfcePanelSettings(XfceIcons::Shown)},
         .command = {"xfce4-panel"},
         .settingsForHiding = {xfcePanelSettings(XfceIcons::Hidden)},
         .settingsForNotifiers = {xfcePanelSettings(XfceIcons::Shown)},
         .icons = Product::Icons::Both},
        {.name = "trayer",
         .package = "trayer",
         .settings = {},
         .command = {"trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                     "--height", "28"}},
        {.name = "tint2",
         .package = "tint2",
         .settings = {{.path = "config/tint2/tint2rc", .content = tint2}},
         .command = {"tint2"}},
        {.name = "lxpanel",
         .package = "lxpanel",
         .settings = {{.path = "config/lxpanel/default/panels/panel", .content = lxpanel}},
         .command = {"lxpanel"}},
        {.name = "lxqt-panel",
         .package = "lxqt-panel",
         .settings = {{.path = "config/lxqt/panel.conf", .content = lxqt}},
         .command = {"lxqt-panel"},
         .settingsForNotifiers = {{.path = "config/lxqt/panel.conf", .content = lxqtNotifiers()}},
         .icons = Product::Icons::Both},
        {.name = "gtk-sni-tray",
         .package = "haskell-gtk-sni-tray-utils",
         .settings = {},
         .command = {"gtk-sni-tray-standalone", "--top", "--end", "--watcher", "--size", "28"},
         .icons = Product::Icons::Notifiers},
    };
    return all;
}

RunningProduct::RunningProduct(Desktop& desktop, const Product& product, Purpose purpose)
    : desktop_(desktop), product_(product) {
    if (product.isOurs()) {
        desktop.startBar({}, purpose == Purpose::Notifiers ? Desktop::Icons::All
                                                           : Desktop::Icons::Windows);
        desktop.startOrganiser({}, purpose == Purpose::Start
                                       ? OrganiserUnderTest::WaitForItems::No
                                       : OrganiserUnderTest::WaitForItems::Yes);
        return;
    }
    writeSettings(desktop.display(), purpose == Purpose::Hide        ? product.settingsForHiding
                                     : purpose == Purpose::Notifiers ? product.settingsForNotifiers
                                                                     : product.settings);
    process_ = desktop.display().start(product.command);
    require(purpose == Purpose::Notifiers ||
                waitFor([&] { return desktop.x().trayOwner() != XCB_WINDOW_NONE; }),
            product.name + " shows no tray: " + process_->output());
}

std::vector<pid_t> RunningProduct::groups() {
    if (product_.isOurs()) {
        return {desktop_.bar().process().pid(), desktop_.organiser().process().pid()};
    }
    return {process_->pid()};
}

Memory RunningProduct::memory() {
    Memory sum;
    for (const pid_t group : groups()) {
        const Memory memory = memoryOfGroup(group);
        sum.proportional += memory.proportional;
        sum.own += memory.own;
    }
    return sum;
}

double RunningProduct::wakeUps() {
    double sum = 0;
    for (const pid_t group : groups()) {
        sum += costOfGroup(group).wakeUps;
    }
    return sum;
}

double RunningProduct::processorMilliseconds() {
    double sum = 0;
    for (const pid_t group : groups()) {
        sum += costOfGroup(group).processorMilliseconds;
    }
    return sum;
}

void RunningProduct::press(bool toHide, int endOfTray) {
    if (product_.isOurs() && !toHide) {
        desktop_.input().pressKey(keys::alt);
    }
    desktop_.input().moveTo(product_.isOurs() ? centre(desktop_.organiser().controlFrame().value())
                                              : xfceButton(endOfTray));
    desktop_.input().press();
}

void RunningProduct::release(bool toHide) {
    desktop_.input().release();
    if (product_.isOurs() && !toHide) {
        desktop_.input().releaseKey(keys::alt);
    }
}

} // namespace pelistra::testing

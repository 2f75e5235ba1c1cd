#include "tests/desktop/harness/PrivateDisplay.h"

#include "tests/desktop/harness/XClient.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <unistd.h>

namespace pelistra::testing {

namespace {

// What a program needs of the environment that the tests run in. All else would let the user's
// session leak in.
constexpr std::array inherited{"PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"};

constexpr std::chrono::seconds serverEndTime{5};

Environment baseEnvironment() {
    Environment environment{
        {"LANG", "C.UTF-8"},
        // No accessibility bus: nobody listens, and GTK would wait for it.
        {"NO_AT_BRIDGE", "1"},
        // Without an address, programs would start a bus that nobody ends.
        {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
        {"GSETTINGS_BACKEND", "memory"},
        {"XDG_CURRENT_DESKTOP", ""},
    };
    for (const char* name : inherited) {
        if (const char* value = std::getenv(name); value != nullptr) {
            environment[name] = value;
        }
    }
    return environment;
}

// The first whole line of a program's output that `isAnswer` accepts; empty while there is none.
// Servers mix warnings with it, for example about displays that others use.
std::string answerIn(const ChildProcess& program, bool (*isAnswer)(const std::string&)) {
    std::istringstream stream(program.output());
    for (std::string line; std::getline(stream, line) && !stream.eof();) {
        if (isAnswer(line)) {
            return line;
        }
    }
    return {};
}

// Far above those that servers pick by themselves.
std::string numberOfThisProcess() {
    constexpr int first = 1000;
    constexpr int count = 50'000;
    return std::to_string(first + (getpid() % count));
}

std::string sizeOf(const PrivateDisplay::Options& options) {
    return std::to_string(options.width) + "x" + std::to_string(options.height);
}

// Without a graphics card and without anybody's keyboard; the sizes are still to be named.
constexpr const char* withoutCard = R"(Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoEnableDevices" "false"
  Option "DontVTSwitch" "true"
EndSection
Section "Device"
  Identifier "None"
  Driver "dummy"
  VideoRam 65536
EndSection
Section "Monitor"
  Identifier "Any"
  HorizSync 5-1000
  VertRefresh 5-200
EndSection
Section "Screen"
  Identifier "Screen"
  Device "None"
  Monitor "Any"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
)";

std::string waitForAnswer(ChildProcess& program, bool (*isAnswer)(const std::string&)) {
    std::string answer;
    static_cast<void>(waitFor([&] {
        answer = answerIn(program, isAnswer);
        return !answer.empty() || !program.isRunning();
    }));
    if (answer.empty()) {
        throw std::runtime_error(program.name() + " did not come up: " + program.output());
    }
    return answer;
}

bool isDisplayNumber(const std::string& line) {
    return !line.empty() && line.find_first_not_of("0123456789") == std::string::npos;
}

bool isBusAddress(const std::string& line) {
    return line.starts_with("unix:");
}

// Shows a window and says whether the window manager has taken it. Its properties on the root come
// earlier than that, and openbox overlooks a window that is mapped in between.
bool managesWindows(XClient& client) {
    constexpr std::chrono::milliseconds answerTime{100};
    const xcb_window_t probe = client.connection().newId();
    xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, probe, client.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(client.get(), probe);
    client.sync();
    const auto isListed = [&] { return std::ranges::count(client.managedWindows(), probe) > 0; };
    const bool taken = waitFor(isListed, answerTime);
    xcb_destroy_window(client.get(), probe);
    client.sync();
    return taken && waitFor([&] { return !isListed(); });
}

} // namespace

PrivateDisplay::PrivateDisplay(const Options& options)
    : environment_(baseEnvironment()), managed_(options.windowManager),
      ownNumber_(options.ownNumber), composited_(options.compositor) {
    makeFolders();
    startServer(options);
    if (options.sessionBus || composited_ == Compositor::Xfwm4) {
        startSessionBus();
    }
    if (managed_ || composited_ == Compositor::Xfwm4) {
        startWindowManager();
    }
    startCompositor();
}

PrivateDisplay::~PrivateDisplay() {
    compositor_.reset();
    windowManager_.reset();
    sessionBus_.reset();
    if (server_) {
        // Asked to end, it removes its lock and its socket.
        server_->terminate(serverEndTime);
    }
    if (host_) {
        host_->terminate(serverEndTime);
    }
    if (ownNumber_) {
        removeTracesOfServer();
    }
}

// What a killed one leaves, and the next one with the same number would remove.
void PrivateDisplay::removeTracesOfServer() const {
    const std::string number = name_.substr(1);
    std::filesystem::remove("/tmp/.X" + number + "-lock");
    std::filesystem::remove("/tmp/.X11-unix/X" + number);
}

void PrivateDisplay::setEnvironment(const std::string& variable, const std::string& value) {
    environment_[variable] = value;
}

std::unique_ptr<ChildProcess> PrivateDisplay::start(const std::vector<std::string>& command) {
    return start(command, {});
}

std::unique_ptr<ChildProcess> PrivateDisplay::start(const std::vector<std::string>& command,
                                                    const Environment& additional) {
    Environment environment = additional;
    environment.insert(environment_.begin(), environment_.end());
    const std::filesystem::path program(command.front());
    const std::string log =
        std::to_string(++startedPrograms_) + "-" + program.filename().string() + ".log";
    return std::make_unique<ChildProcess>(command, environment, folder() / log);
}

void PrivateDisplay::makeFolders() {
    constexpr std::array<std::pair<const char*, const char*>, 7> folders{{
        {"HOME", "home"},
        {"XDG_CONFIG_HOME", "config"},
        {"XDG_STATE_HOME", "state"},
        {"XDG_CACHE_HOME", "cache"},
        {"XDG_DATA_HOME", "data"},
        {"XDG_RUNTIME_DIR", "runtime"},
        {"TMPDIR", "tmp"},
    }};
    for (const auto& [variable, name] : folders) {
        const std::filesystem::path path = folder() / name;
        std::filesystem::create_directory(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        environment_[variable] = path.string();
    }
}

void PrivateDisplay::startServer(const Options& options) {
    switch (options.server) {
    case Server::Virtual:
        server_ = startVirtual(options);
        break;
    case Server::Nested:
        server_ = startNested(options);
        break;
    case Server::Outputs:
        server_ = startWithOutputs(options);
        break;
    }
    name_ = ":" + waitForAnswer(*server_, isDisplayNumber);
    environment_["DISPLAY"] = name_;
}

// Each server writes its number to its standard output, and has picked a free one by itself unless
// it was given one.

std::unique_ptr<ChildProcess> PrivateDisplay::startVirtual(const Options& options) {
    std::vector<std::string> command{"Xvfb",      "-displayfd",
                                     "1",         "-screen",
                                     "0",         sizeOf(options) + "x24",
                                     "-dpi",      std::to_string(options.dpi),
                                     "-nolisten", "tcp",
                                     "-noreset",  "+extension",
                                     "RANDR",     "+extension",
                                     "Composite"};
    if (options.ownNumber) {
        command.push_back(":" + numberOfThisProcess());
    }
    for (const std::string& extension : options.withoutExtensions) {
        command.insert(command.end(), {"-extension", extension});
    }
    return start(command);
}

std::unique_ptr<ChildProcess> PrivateDisplay::startNested(const Options& options) {
    constexpr int largest = 1200;
    host_ = startVirtual({.width = largest, .height = largest});
    const std::string host = ":" + waitForAnswer(*host_, isDisplayNumber);
    return start({"Xephyr", "-displayfd", "1", "-screen", sizeOf(options), "-resizeable", "-dpi",
                  std::to_string(options.dpi), "-nolisten", "tcp", "-noreset"},
                 {{"DISPLAY", host}});
}

std::unique_ptr<ChildProcess> PrivateDisplay::startWithOutputs(const Options& options) {
    const std::filesystem::path settings = folder() / "xorg.conf";
    std::ofstream(settings) << withoutCard << "    Modes \"" << sizeOf(options)
                            << "\"\n  EndSubSection\nEndSection\n";
    return start({"/usr/lib/xorg/Xorg", "-displayfd", "1", "-config", settings.string(), "-logfile",
                  (folder() / "xorg.log").string(), "-dpi", std::to_string(options.dpi),
                  "-nolisten", "tcp", "-noreset", "-novtswitch", "-sharevts", "-keeptty"});
}

void PrivateDisplay::startSessionBus() {
    sessionBus_ = start({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
                         "--address=unix:path=" + (folder() / "runtime" / "bus").string()});
    const std::string address = waitForAnswer(*sessionBus_, isBusAddress);
    // Without what tells this bus from the next one in its place.
    environment_["DBUS_SESSION_BUS_ADDRESS"] = address.substr(0, address.find(','));
}

void PrivateDisplay::restartWindowManager() {
    windowManager_->kill();
    startWindowManager();
}

void PrivateDisplay::startWindowManager() {
    // Openbox as Debian delivers it: it takes every click with Alt on any window to move it by.
    windowManager_ = start(composited_ == Compositor::Xfwm4
                               ? commandOf(composited_)
                               : std::vector<std::string>{"openbox", "--sm-disable"});
    XClient client(name_);
    if (!waitFor([&] { return managesWindows(client); })) {
        throw std::runtime_error("no window manager came up: " + windowManager_->output());
    }
}

void PrivateDisplay::changeCompositor(Compositor compositor) {
    const bool managerChanges = composited_ == Compositor::Xfwm4 || compositor == Compositor::Xfwm4;
    if (compositor_) {
        compositor_->terminate();
        compositor_.reset();
    }
    if (managerChanges && windowManager_) {
        windowManager_->terminate();
        windowManager_.reset();
    }
    // The next one refuses to start while the server has not noticed.
    XClient client(name_);
    if (!waitFor([&] { return !isComposited(client); })) {
        throw std::runtime_error(nameOf(composited_) + " composites after its end");
    }
    composited_ = compositor;
    if (managerChanges && (managed_ || compositor == Compositor::Xfwm4)) {
        startWindowManager();
    }
    startCompositor();
}

void PrivateDisplay::startCompositor() {
    if (composited_ == Compositor::None) {
        return;
    }
    if (composited_ != Compositor::Xfwm4) {
        compositor_ = start(commandOf(composited_));
    }
    XClient client(name_);
    if (!waitFor([&] { return isComposited(client); })) {
        throw std::runtime_error(nameOf(composited_) + " does not composite");
    }
}

} // namespace pelistra::testing

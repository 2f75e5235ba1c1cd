#pragma once

#include "tests/desktop/harness/ChildProcess.h"
#include "tests/desktop/harness/Compositor.h"
#include "tests/desktop/harness/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace pelistra::testing {

// An X server on a free display, a session bus, and a home of their own for the programs that run
// on it. Everything ends with this object, or with this process.
class PrivateDisplay {
public:
    enum class Server : std::uint8_t {
        // Xvfb: one output, named "screen", that takes any size up to the first one.
        Virtual,
        // Xephyr in a window of an Xvfb: its output, named "default", can be turned. 1200 x 1200 at
        // most.
        Nested,
        // Xorg without a graphics card: outputs "DUMMY0" (on), "DUMMY1", ... that come and go.
        Outputs,
    };
    struct Options {
        int width = 1280;
        int height = 800;
        int dpi = 96;
        // Start openbox, the window manager of the desktop tests.
        bool windowManager = false;
        bool sessionBus = false;
        // Extensions that the server is to lack; Virtual only.
        std::vector<std::string> withoutExtensions = {};
        Server server = Server::Virtual;
        // A number that stays this process's when the server has been killed; else the lowest that
        // is free, which the next test takes at once. Virtual only, one at a time in a process.
        bool ownNumber = false;
        // Xfwm4 is the window manager, too, and has a session bus.
        Compositor compositor = Compositor::None;
    };

    // Throws std::runtime_error when a server does not come up in time.
    explicit PrivateDisplay(const Options& options);
    PrivateDisplay() : PrivateDisplay(Options{}) {}
    PrivateDisplay(const PrivateDisplay&) = delete;
    PrivateDisplay& operator=(const PrivateDisplay&) = delete;
    ~PrivateDisplay();

    // For example ":7".
    [[nodiscard]] const std::string& name() const { return name_; }
    // What a program started here gets: DISPLAY, HOME and the XDG folders inside folder(), the
    // session bus; nothing of the user's own session.
    [[nodiscard]] const Environment& environment() const { return environment_; }
    void setEnvironment(const std::string& variable, const std::string& value);
    [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }
    [[nodiscard]] std::filesystem::path configFolder() const { return folder() / "config"; }
    [[nodiscard]] std::filesystem::path stateFolder() const { return folder() / "state"; }

    // Starts a program on this display; its output goes to a file in folder().
    [[nodiscard]] std::unique_ptr<ChildProcess> start(const std::vector<std::string>& command);
    [[nodiscard]] std::unique_ptr<ChildProcess> start(const std::vector<std::string>& command,
                                                      const Environment& additional);
    // Ends the X server at once, as a crash would.
    void killServer() { server_->kill(); }
    // Ends the session bus with all that is on it; the next one has the same address. The display
    // must have one.
    void endSessionBus() { sessionBus_->kill(); }
    void startSessionBus();
    // Kills the window manager as a crash would, and starts it again; the display must have one.
    void restartWindowManager();
    // The display must have one.
    [[nodiscard]] pid_t windowManagerPid() const { return windowManager_->pid(); }
    // Asks the compositor to end, and starts that one; None only ends it. Xfwm4 takes the place of
    // the window manager and must have a session bus.
    void changeCompositor(Compositor compositor);
    [[nodiscard]] pid_t serverPid() const { return server_->pid(); }

private:
    void makeFolders();
    void startServer(const Options& options);
    [[nodiscard]] std::unique_ptr<ChildProcess> startVirtual(const Options& options);
    [[nodiscard]] std::unique_ptr<ChildProcess> startNested(const Options& options);
    [[nodiscard]] std::unique_ptr<ChildProcess> startWithOutputs(const Options& options);
    void startWindowManager();
    void startCompositor();
    void removeTracesOfServer() const;

    // The folder outlives the processes that write into it.
    TemporaryFolder folder_;
    Environment environment_;
    std::string name_;
    bool managed_ = false;
    bool ownNumber_ = false;
    Compositor composited_ = Compositor::None;
    int startedPrograms_ = 0;
    // The server in whose window a nested one shows itself.
    std::unique_ptr<ChildProcess> host_;
    std::unique_ptr<ChildProcess> server_;
    std::unique_ptr<ChildProcess> sessionBus_;
    std::unique_ptr<ChildProcess> windowManager_;
    // Empty for Xfwm4, which is the window manager.
    std::unique_ptr<ChildProcess> compositor_;
};

} // namespace pelistra::testing

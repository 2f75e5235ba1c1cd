// Our own items in our own menu bar.

#include "platform/linux/statusitem/TrayStatusBar.h"

#include "platform/linux/application/X11Application.h"
#include "platform/linux/icons/X11WindowServer.h"
#include "platform/linux/loop/GlibMainQueue.h"
#include "platform/linux/screens/X11Screens.h"
#include "platform/linux/settings/FileUserDefaults.h"
#include "platform/linux/statusitem/StatusToolTip.h"
#include "platform/linux/statusitem/WindowCanvas.h"
#include "platform/linux/windows/LoadedWindows.h"
#include "tests/contract/StatusItemContract.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/TemporaryFolder.h"
#include "tests/desktop/harness/WaitFor.h"
#include "tests/platform/FakeLogSink.h"

#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

namespace pelistra::testing {

namespace {

class TrayBackend {
public:
    TrayBackend() { trayHost_.start(); }

    [[nodiscard]] StatusBar& bar() { return statusBar_; }
    [[nodiscard]] WindowList& windows() { return windowServer_; }
    [[nodiscard]] static ProcessId ownPid() { return ::getpid(); }
    template <class Condition>
    [[nodiscard]] static bool runUntil(Condition condition) {
        return waitFor([&] {
            while (g_main_context_iteration(nullptr, FALSE) == TRUE) {
            }
            return condition();
        });
    }

private:
    PrivateDisplay display_;
    XClient client_{display_.name()};
    BarUnderTest ourBar_{display_, client_, {"--no-status-notifier"}};
    TemporaryFolder folder_;
    Journal journal_;
    FakeLogSink log_{journal_};
    linux::GlibMainQueue queue_;
    std::unique_ptr<x11::Connection> connection_ = connect(display_);
    linux::EventPump pump_{*connection_, log_};
    linux::FileUserDefaults defaults_{folder_.path() / "defaults", queue_, log_};
    linux::TrayHost trayHost_{*connection_, pump_, log_};
    linux::X11Screens screens_{*connection_, pump_, trayHost_, queue_};
    linux::X11Application application_{*connection_, screens_, {}};
    linux::LoadedWindows noWindows_{{.connection = *connection_,
                                     .observeEvents = {},
                                     .observeRecoveries = {},
                                     .barIsDark = {},
                                     .observeBar = {},
                                     .mainQueue = queue_,
                                     .application = application_,
                                     .handleEvent = {},
                                     .coordinates = {},
                                     .scaleBeyondResources = {}},
                                    {},
                                    log_};
    linux::TrayIconAtoms atoms_{*connection_};
    linux::WindowCanvas canvas_{*connection_};
    linux::StatusToolTip toolTip_{*connection_, queue_, noWindows_};
    linux::TrayStatusBar statusBar_{{.connection = *connection_,
                                     .trayHost = trayHost_,
                                     .screens = screens_,
                                     .application = application_,
                                     .defaults = defaults_,
                                     .atoms = atoms_,
                                     .canvas = canvas_,
                                     .toolTip = toolTip_},
                                    pump_,
                                    queue_,
                                    [] { FAIL() << "our bar has room"; }};
    linux::TrayReader reader_{*connection_};
    linux::X11WindowServer windowServer_{reader_, {}};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Tray, StatusItemContract, TrayBackend);

} // namespace

} // namespace pelistra::testing

#pragma once

#include "base/Logger.h"
#include "overflow/OverflowServices.h"
#include "overflow/PrivateMenuBarWindow.h"
#include "platform/PrivateLibrary.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace pelistra {

// The only place that talks to the window server's private functions. When they cannot be had, the
// bridge stays usable and knows no windows.
class PrivateMenuBarBridge {
public:
    // The bridge that the whole process shares, made by the first call and kept until the process
    // ends. The services count only in the call that makes it, and nobody uses the bridge once they
    // are gone.
    [[nodiscard]] static std::shared_ptr<PrivateMenuBarBridge>
    shared(const OverflowServices& services);

    // Loads the functions, once and for all; logs one error line when that fails.
    explicit PrivateMenuBarBridge(const OverflowServices& services);
    PrivateMenuBarBridge(const PrivateMenuBarBridge&) = delete;
    PrivateMenuBarBridge& operator=(const PrivateMenuBarBridge&) = delete;
    // Closes the library if it was loaded.
    ~PrivateMenuBarBridge();

    [[nodiscard]] bool hasSymbols() const { return symbols_.has_value(); }

    // The menu-bar windows of all processes that are there now, each once, in the window server's
    // order; empty when it gives no answer.
    [[nodiscard]] std::vector<PrivateMenuBarWindow> windows() const;

    // Where a window is now, in global coordinates; empty without the functions or when the window
    // server refuses.
    [[nodiscard]] std::optional<Rect> windowFrame(WindowId window) const;

private:
    struct Symbols {
        LibraryHandle handle = nullptr;
        MainConnectionFunction mainConnection;
        WindowCountFunction windowCount;
        MenuBarWindowListFunction menuBarWindowList;
        WindowFrameFunction windowFrame;
    };
    using InfoByNumber = std::unordered_map<WindowId, WindowInfo*>;

    [[nodiscard]] std::optional<Symbols> loadSymbols() const;
    [[nodiscard]] static InfoByNumber byNumber(std::vector<WindowInfo>& infos);
    [[nodiscard]] static std::vector<WindowId> listedIds(const Symbols& symbols,
                                                         ConnectionId connection);
    [[nodiscard]] static std::optional<Rect> frameOf(const Symbols& symbols,
                                                     ConnectionId connection, WindowId window);
    // Takes what it needs out of the window's entry, which is then gone from the map.
    [[nodiscard]] std::optional<PrivateMenuBarWindow> record(const Symbols& symbols,
                                                             ConnectionId connection,
                                                             WindowId window,
                                                             InfoByNumber& infos) const;

    PrivateLibrary& library_;
    WindowList& windowList_;
    RunningApplications& runningApplications_;
    Logger logger_;
    std::optional<Symbols> symbols_;
};

} // namespace pelistra

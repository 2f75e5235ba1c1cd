#pragma once

#include "platform/PrivateLibrary.h"
#include "platform/linux/icons/TrayReader.h"
#include "platform/linux/icons/X11WindowList.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace pelistra::linux {

// The window server's functions over X11. They are always there.
//
// A caller who lists windows asks for the connection, the count, the list, the window descriptions
// and each window's frame in this order. One look at the tray serves all of it: asking for the
// connection begins a run and forgets the last one, asking for the count looks, and what follows
// describes that look. A frame asked for outside such a run is the live one.
class X11WindowServer final : public PrivateLibrary {
public:
    // What a function answers when the X server gave no answer or knows no such window.
    static constexpr WindowServerError noAnswer = 1;

    // Both must outlive this object and the functions it has resolved.
    X11WindowServer(TrayReader& look, X11WindowList& windowList);

    // The X server needs no library: every path opens.
    [[nodiscard]] LibraryHandle open(const std::string& path, int mode) override;
    void close(LibraryHandle handle) override;

    [[nodiscard]] MainConnectionFunction resolveMainConnection(LibraryHandle handle,
                                                               const std::string& symbol) override;
    [[nodiscard]] WindowCountFunction resolveWindowCount(LibraryHandle handle,
                                                         const std::string& symbol) override;
    [[nodiscard]] MenuBarWindowListFunction
    resolveMenuBarWindowList(LibraryHandle handle, const std::string& symbol) override;
    [[nodiscard]] WindowFrameFunction resolveWindowFrame(LibraryHandle handle,
                                                         const std::string& symbol) override;

private:
    void beginRun();
    [[nodiscard]] WindowServerError countWindows(std::int32_t& count);
    [[nodiscard]] WindowServerError listWindows(std::int32_t capacity, WindowId* list,
                                                std::int32_t& count);
    [[nodiscard]] std::optional<Rect> frameOf(WindowId window);

    TrayReader* look_;
    X11WindowList* windowList_;
    // What the run has seen; null outside a run.
    std::shared_ptr<const TrayView> view_;
    std::unordered_map<WindowId, Rect> frames_;
};

} // namespace pelistra::linux

#pragma once

#include "platform/PrivateLibrary.h"
#include "platform/WindowList.h"
#include "platform/linux/icons/TrayReader.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace pelistra::linux {

// The window list of the seam and the window server's functions over X11, which are always there.
//
// The list has one entry per icon that is really embedded in the tray now, in the bar's order, each
// on the layer of status items, its bounds in points of the global space. Windows outside the tray
// are not listed, since nobody asks about them: an item of ours that is not docked is absent.
//
// On a Mac these are two sources that have to be asked in turn. Here both show one tray, so one
// object keeps what was seen: a caller who lists windows asks for the connection, the count, the
// list, the window descriptions and each window's frame in this order, and one look serves all of
// it. Asking for the connection begins a run and forgets the last one, asking for the count looks,
// and what follows describes that look. A frame asked for outside such a run is the live one.
class X11WindowServer final : public WindowList, public PrivateLibrary {
public:
    // What a function answers when the X server gave no answer or knows no such window.
    static constexpr WindowServerError noAnswer = 1;

    // The name under which a user knows the process behind an icon; empty when there is none.
    using OwnerName = std::function<std::optional<std::string>(const TrayIcon& icon)>;

    // The reader must outlive this object, and this object the functions that it has resolved.
    X11WindowServer(TrayReader& reader, OwnerName ownerName);

    // Empty when the X server does not answer in time.
    [[nodiscard]] std::optional<std::vector<WindowInfo>> copyWindowInfo() override;

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

    TrayReader* reader_;
    OwnerName ownerName_;
    // What the run has seen; null outside a run.
    std::shared_ptr<const TrayView> view_;
    std::unordered_map<WindowId, Rect> frames_;
    // The list has been taken and its windows not been described yet.
    bool descriptionsAreDue_ = false;
};

} // namespace pelistra::linux

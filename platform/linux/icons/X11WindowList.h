#pragma once

#include "platform/WindowList.h"
#include "platform/linux/icons/TrayReader.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::linux {

// The window list of the seam: one entry per icon that is really embedded in the tray now, in the
// bar's order, each on the layer of status items, its bounds in points of the global space. Windows
// outside the tray are not listed, since nobody asks about them: an item of ours that is not docked
// is absent.
class X11WindowList final : public WindowList {
public:
    // The name under which a user knows the process behind an icon; empty when there is none.
    using OwnerName = std::function<std::optional<std::string>(const TrayIcon& icon)>;

    // The look must outlive this object.
    X11WindowList(TrayReader& look, OwnerName ownerName);

    // Empty when the X server does not answer in time.
    [[nodiscard]] std::optional<std::vector<WindowInfo>> copyWindowInfo() override;

    // Lets the next call of copyWindowInfo(), and only that, describe a look that has just been
    // taken instead of looking again. Null takes an offer back.
    void offer(std::shared_ptr<const TrayView> view) { offered_ = std::move(view); }

private:
    [[nodiscard]] static WindowInfo describe(const TrayIcon& icon,
                                             const std::optional<std::string>& ownerName,
                                             const Coordinates& coordinates);

    TrayReader* look_;
    OwnerName ownerName_;
    std::shared_ptr<const TrayView> offered_;
};

} // namespace pelistra::linux

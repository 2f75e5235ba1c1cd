#pragma once

#include "platform/x11/Connection.h"

#include <optional>

namespace pelistra::desktop {

// What resourceScaleIn() reads in the resource database that the root window holds now; one round
// trip. Empty when there is none, too.
[[nodiscard]] std::optional<double> resourceScale(const x11::Connection& connection);

// What the tray that owns the selection at the moment publishes as its scale; empty when there is
// none or it publishes none.
[[nodiscard]] std::optional<double> trayScale(const x11::Connection& connection);

// Makes Qt's windows as large as the menu bar's scale says, while a QGuiApplication is made: Qt
// itself goes by the resource database only. The environment is as before when this object dies, so
// that programs started from here find it so. A factor that the user has set is left alone.
class QtScaleFactor {
public:
    explicit QtScaleFactor(const x11::Connection& connection);
    QtScaleFactor(const QtScaleFactor&) = delete;
    QtScaleFactor& operator=(const QtScaleFactor&) = delete;
    ~QtScaleFactor();

private:
    bool isSet_ = false;
};

} // namespace pelistra::desktop

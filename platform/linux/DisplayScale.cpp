#include "platform/linux/DisplayScale.h"

#include "platform/linux/ScreenLayout.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/Properties.h"

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

namespace pelistra::desktop {

namespace {

constexpr auto factorVariable = "QT_SCALE_FACTOR";

} // namespace

std::optional<double> resourceScale(const x11::Connection& connection) {
    const auto resources = x11::readProperty(
        connection, x11::requestProperty(connection, connection.root(), XCB_ATOM_RESOURCE_MANAGER));
    return resources ? resourceScaleIn(resources->text()) : std::nullopt;
}

std::optional<double> trayScale(const x11::Connection& connection) {
    const std::string selection = "_NET_SYSTEM_TRAY_S" + std::to_string(connection.screenNumber());
    const auto atoms = x11::internAtoms(
        connection, std::array<std::string_view, 2>{selection, "_PELISTRA_MENUBAR_SCALE"});
    const auto owner = connection.take<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection.get(), atoms[0]));
    if (!owner || owner->owner == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    const auto value = x11::readProperty(
        connection, x11::requestProperty(connection, owner->owner, atoms[1], XCB_ATOM_CARDINAL));
    return value ? scaleIn(value->words()) : std::nullopt;
}

QtScaleFactor::QtScaleFactor(const x11::Connection& connection) {
    const auto wanted = trayScale(connection);
    const double fromResources = resourceScale(connection).value_or(1);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs before Qt
    if (wanted && *wanted != fromResources && std::getenv(factorVariable) == nullptr) {
        const std::string factor = std::to_string(*wanted / fromResources);
        isSet_ = ::setenv(factorVariable, factor.c_str(), 1) == 0;
    }
}

QtScaleFactor::~QtScaleFactor() {
    if (isSet_) {
        ::unsetenv(factorVariable);
    }
}

} // namespace pelistra::desktop

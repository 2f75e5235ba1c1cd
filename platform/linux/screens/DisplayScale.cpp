#include "platform/linux/screens/DisplayScale.h"

#include "platform/linux/screens/ScreenLayout.h"
#include "platform/x11/Properties.h"

namespace pelistra::linux {

std::optional<double> resourceScale(const x11::Connection& connection) {
    const auto resources = x11::readProperty(
        connection, x11::requestProperty(connection, connection.root(), XCB_ATOM_RESOURCE_MANAGER));
    return resources ? resourceScaleIn(resources->text()) : std::nullopt;
}

} // namespace pelistra::linux

#pragma once

#include "platform/x11/Connection.h"
#include "tests/desktop/harness/PrivateDisplay.h"

#include <memory>
#include <stdexcept>

namespace pelistra::testing {

// A connection of the product's own kind to a private display; throws when there is none.
[[nodiscard]] inline std::unique_ptr<x11::Connection> connect(const PrivateDisplay& display) {
    x11::Connection::Failure failure;
    auto connection = x11::Connection::open(display.name(), failure);
    if (!connection) {
        throw std::runtime_error(failure.message);
    }
    // A test waits as long as a busy machine needs.
    connection->setPatience(x11::Connection::startPatience);
    return connection;
}

} // namespace pelistra::testing

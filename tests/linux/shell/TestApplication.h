#pragma once

#include <array>
#include <string>

#include <QCoreApplication>

namespace pelistra::testing {

// The application object that Qt's event loop needs, without a window system.
class TestApplication {
private:
    int count_ = 1;
    std::string name_ = "test";
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    QCoreApplication application_{count_, arguments_.data()};
};

} // namespace pelistra::testing

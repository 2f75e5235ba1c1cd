#pragma once

#include "platform/linux/loop/EventPump.h"
#include "platform/linux/loop/GlibMainQueue.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/UserInput.h"
#include "tests/desktop/harness/XClient.h"
#include "tests/platform/FakeLogSink.h"

#include <array>
#include <memory>
#include <optional>
#include <string>

#include <QApplication>
#include <gtest/gtest.h>

namespace pelistra::testing {

// A QApplication of the test itself on an X server of its own.
class QtOnDisplay : public ::testing::Test {
protected:
    // `scaleFactor` is what Qt multiplies the resolution of the display with.
    explicit QtOnDisplay(const PrivateDisplay::Options& options = {},
                         const char* scaleFactor = "1");

    template <class Condition>
    [[nodiscard]] bool runUntil(Condition condition) {
        return waitFor([&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }
    template <class Condition>
    [[nodiscard]] bool staysTrueWhileRunning(Condition condition) {
        constexpr std::chrono::milliseconds bound{300};
        return staysTrue(
            [&] {
                QCoreApplication::processEvents();
                return condition();
            },
            bound);
    }

    PrivateDisplay display_;
    XClient client_{display_.name()};
    UserInput input_{client_};
    std::string name_ = "test";
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    int count_ = 1;
    std::unique_ptr<QApplication> application_;
    Journal journal_;
    FakeLogSink log_{journal_};
    std::unique_ptr<x11::Connection> connection_;
    std::optional<linux::GlibMainQueue> queue_;
    std::optional<linux::EventPump> pump_;
};

} // namespace pelistra::testing

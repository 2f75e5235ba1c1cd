#pragma once

#include <functional>

#include <QSocketNotifier>

#include <csignal>

namespace pelistra::desktop {

// Brings SIGINT and SIGTERM into Qt's event loop, as long as this object lives; there is at most
// one. Signals stay unblocked, so that programs started from here begin with their usual ones.
class TerminationSignals {
public:
    // Calls the handler on the main thread for each signal. Needs a QCoreApplication.
    explicit TerminationSignals(std::function<void()> handler);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    int descriptor_;
    QSocketNotifier notifier_;
    struct sigaction previousInterrupt_{};
    struct sigaction previousTerminate_{};
};

} // namespace pelistra::desktop

#pragma once

namespace pelistra::menubar {

// SIGINT, SIGTERM and SIGHUP as something to wait for beside the X connection, so that the bar can
// end in order. Make it before any other thread is.
class StopSignals {
public:
    StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    ~StopSignals();

    // Readable once a signal has come; -1 when the system could not make it.
    [[nodiscard]] int fileDescriptor() const { return descriptor_; }

private:
    int descriptor_ = -1;
};

} // namespace pelistra::menubar

#include "menubar/StopSignals.h"

#include <csignal>
#include <initializer_list>

#include <sys/signalfd.h>
#include <unistd.h>

namespace pelistra::menubar {

StopSignals::StopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    descriptor_ = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ >= 0) {
        ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    }
}

StopSignals::~StopSignals() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace pelistra::menubar

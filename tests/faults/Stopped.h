#pragma once

#include <csignal>

#include <sys/types.h>

namespace pelistra::testing {

// A process stands still as long as this object lives.
class Stopped {
public:
    explicit Stopped(pid_t process) : process_(process) { ::kill(process_, SIGSTOP); }
    Stopped(const Stopped&) = delete;
    Stopped& operator=(const Stopped&) = delete;
    ~Stopped() { ::kill(process_, SIGCONT); }

private:
    pid_t process_;
};

} // namespace pelistra::testing

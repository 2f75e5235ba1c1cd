#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace pelistra::menubar {

// Our end of a socket whose other end is the standard input of another program of this project.
// The program is expected to end when the socket closes.
class HelperProgram {
public:
    HelperProgram() = default;
    HelperProgram(const HelperProgram&) = delete;
    HelperProgram& operator=(const HelperProgram&) = delete;
    ~HelperProgram() { close(); }

    // Starts the program of that name, which lies beside this one or in ../libexec/pelistra, with
    // these variables ("NAME=value") beside those of the environment. False when it cannot be
    // started.
    bool start(const std::string& name, const std::vector<std::string>& variables = {});
    void close();

    [[nodiscard]] bool isRunning() const { return socket_ >= 0; }
    // Negative when it does not run. Messages keep their borders; nothing waits.
    [[nodiscard]] int socket() const { return socket_; }
    // False when the program does not take it.
    [[nodiscard]] bool send(const std::string& message) const;

private:
    int socket_ = -1;
};

} // namespace pelistra::menubar

#pragma once

#include "tests/faults/Bench.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pelistra::testing {

// One thing that goes wrong.
struct Fault {
    std::string name;
    // Part of the short form too.
    bool isInShortForm = false;
    // What it needs of the display.
    PrivateDisplay::Server server = PrivateDisplay::Server::Virtual;
    // Makes it go wrong and puts right what a user or a session manager would; throws
    // std::runtime_error when the product fails meanwhile.
    std::function<void(Bench& bench)> happen;
};

[[nodiscard]] std::vector<Fault> killFaults();
[[nodiscard]] std::vector<Fault> clientFaults();
[[nodiscard]] std::vector<Fault> stopFaults();
[[nodiscard]] std::vector<Fault> signalFaults();
[[nodiscard]] std::vector<Fault> clickFaults();
[[nodiscard]] std::vector<Fault> screenFaults();
[[nodiscard]] std::vector<Fault> fileFaults();
[[nodiscard]] std::vector<Fault> diskFaults();
[[nodiscard]] std::vector<Fault> clockFaults();

// Lets faults happen one after the other, checks the desktop after each, prints a line for each.
class Suite {
public:
    void tryOut(const std::vector<Fault>& faults);
    // Ends the desktop that is there.
    void clear() { bench_.reset(); }
    // What needs a desktop of its own; returns what is wrong afterwards.
    void tryAlone(const std::string& name,
                  const std::function<std::vector<std::string>()>& happenAndCheck);
    // Prints the sum; true when everything was survived.
    [[nodiscard]] bool finish() const;

private:
    std::unique_ptr<Bench> bench_;
    int tried_ = 0;
    int survived_ = 0;
    // What the system did not let happen; neither tried nor survived.
    int notPossible_ = 0;
};

// The X server ends; for tryAlone().
struct ServerEnd {
    std::string name;
    bool isInShortForm = false;
    std::function<std::vector<std::string>()> happenAndCheck;
};
[[nodiscard]] std::vector<ServerEnd> serverEnds();

} // namespace pelistra::testing

#pragma once

#include "base/Lifetime.h"
#include "platform/MainQueue.h"

namespace pelistra::linux {

// Gives back what the program keeps for a next use that may not come for days: fonts with their
// glyphs and the files behind them, cached pictures, freed memory that the C library holds. What is
// needed again is loaded again; for a window of ours that takes about ten milliseconds.
class UnusedMemory {
public:
    explicit UnusedMemory(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

    // Two seconds from now, what a window needed, unless an ordinary one shows then: its going
    // asks for this anew.
    void giveBackAfterWindow();

    // At once, whatever shows; what is in use stays. Asks Qt for its fonts, so it is not for a
    // program that has shown no text yet.
    static void giveBackWindowMemory();

private:
    MainQueue& mainQueue_;
    Lifetime lifetime_;
};

} // namespace pelistra::linux
